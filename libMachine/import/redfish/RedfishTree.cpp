/// Layouts of mirrors differ, so the path of a resource is what the resource says (`@odata.id`); only where it does not
/// say it, the file's name counts. A service may expand resources inside others: these count where no file has them.
///
/// Nothing is followed twice: a list names each part once, and pages of a collection are remembered, so circles end.

#include "libMachine/import/redfish/RedfishTree.h"

#include <algorithm>
#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <iterator>
#include <set>

#include "libMachine/import/mending/TextMending.h"
#include "libMachine/import/redfish/RedfishValues.h"

namespace vrx {

namespace {

namespace json = boost::json;

constexpr std::string_view ROOT = "/redfish/v1";
constexpr std::size_t DEEPEST_JSON = 64;
constexpr int MOST_PAGES = 1000;

/// Without a slash at its end, and without the server that some references name. Empty for a place inside a resource.
std::string canonicalPath(std::string_view path) {
    if (path.find('#') != std::string_view::npos || path.find("://") != std::string_view::npos) {
        return {};
    }
    while (path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return std::string(path);
}

std::string pathOfFile(std::string_view name) {
    for (const std::string_view end : {std::string_view("index.json"), std::string_view(".json")}) {
        if (name.ends_with(end)) {
            name.remove_suffix(end.size());
            break;
        }
    }
    const std::size_t root = name.find("redfish/v1");
    const std::string path = root == std::string_view::npos ? std::string(ROOT) + "/" + std::string(name)
                                                            : "/" + std::string(name.substr(root));
    return canonicalPath(path);
}

std::string ownPath(const json::object& resource) { return canonicalPath(redfishText(resource, "@odata.id")); }

/// A reference has its target and nothing else to say.
bool isReference(const json::object& object) {
    return object.contains("@odata.id") && std::ranges::all_of(object, [](const json::key_value_pair& member) {
               return std::string_view(member.key()).starts_with("@odata.");
           });
}

std::string lastSegment(std::string_view path) { return std::string(path.substr(path.find_last_of('/') + 1)); }

}  // namespace

void RedfishTree::add(const std::string& name, std::string_view bytes) {
    const std::string text = mendedText(bytes, m_damage);
    json::parse_options options;
    options.max_depth = DEEPEST_JSON;
    json::error_code failure;
    json::value value = json::parse(text, failure, {}, options);
    if (failure || !(value.is_object() || value.is_array())) {
        m_damage.add(DamageKind::ResourceLeftOut, 0, name);
        return;
    }
    m_documents.push_back(std::move(value));
    harvest(m_documents.back(), pathOfFile(name), true);
}

/// Requires: the value is an object or an array of objects.
void RedfishTree::harvest(const json::value& value, const std::string& path, bool isFile) {
    if (const json::array* const list = value.if_array()) {
        for (const json::value& entry : *list) {
            harvest(entry, {}, false);
        }
        return;
    }
    const json::object* const object = value.if_object();
    if (object == nullptr) {
        return;
    }
    const bool isByPath = std::ranges::any_of(*object, [](const json::key_value_pair& member) {
        return std::string_view(member.key()).starts_with('/') && member.value().is_object();
    });
    if (isByPath) {
        for (const json::key_value_pair& member : *object) {
            harvest(member.value(), canonicalPath(member.key()), false);
        }
        return;
    }
    const std::string own = ownPath(*object);
    if (isFile || !own.empty() || !path.empty()) {
        keep(own.empty() ? path : own, *object);
    }
    harvestInner(value);
}

void RedfishTree::harvestInner(const json::value& value) {
    if (const json::array* const list = value.if_array()) {
        std::ranges::for_each(*list, [this](const json::value& entry) { harvestInner(entry); });
    } else if (const json::object* const object = value.if_object()) {
        for (const json::key_value_pair& member : *object) {
            const json::object* const inner = member.value().if_object();
            const std::string path = inner == nullptr || isReference(*inner) ? std::string() : ownPath(*inner);
            if (!path.empty()) {
                m_resources.emplace(path, inner);
            }
            harvestInner(member.value());
        }
    }
}

void RedfishTree::keep(const std::string& path, const json::object& resource) {
    const auto [at, isNew] = m_resources.emplace(path, &resource);
    if (!isNew && *at->second != resource) {
        m_damage.add(DamageKind::ResourceTwice, 0, path);
    }
}

const json::object* RedfishTree::find(std::string_view path) const {
    const auto at = m_resources.find(canonicalPath(path));
    return at == m_resources.end() ? nullptr : at->second;
}

void RedfishTree::noteMissing(const std::string& path, std::string_view name) {
    if (m_missing.emplace(path, name).second) {
        m_damage.add(DamageKind::ResourceMissing, 0, path);
    }
}

const json::object* RedfishTree::resolved(const json::value& reference, std::string_view name) {
    const json::object* const object = reference.if_object();
    if (object == nullptr || !isReference(*object)) {
        return object;
    }
    const std::string path = ownPath(*object);
    const json::object* const target = path.empty() ? nullptr : find(path);
    if (target == nullptr && !path.empty()) {
        noteMissing(path, name);
    }
    return target;
}

const json::object* RedfishTree::follow(const json::object& owner, std::string_view name) {
    const json::value* const value = owner.if_contains(name);
    return value == nullptr ? nullptr : resolved(*value, name);
}

std::vector<RedfishPart> RedfishTree::members(const json::object& owner, std::string_view name) {
    std::vector<RedfishPart> parts;
    const json::value* const value = owner.if_contains(name);
    const json::object* const object = value == nullptr ? nullptr : value->if_object();
    if (object != nullptr && isReference(*object)) {
        return collection(redfishText(*object, "@odata.id"), name);
    }
    addMembers(object != nullptr ? object->if_contains("Members") : value, name, parts);
    return parts;
}

std::vector<RedfishPart> RedfishTree::collection(std::string_view path, std::string_view name, bool isExpected) {
    std::vector<RedfishPart> parts;
    const json::object* page = find(path);
    if (page == nullptr) {
        parts = below(canonicalPath(path));
        if (parts.empty() && isExpected) {
            noteMissing(std::string(path), name);
        }
        return parts;
    }
    std::set<const json::object*> seen;
    for (int count = 0; page != nullptr && count < MOST_PAGES && seen.insert(page).second; ++count) {
        addMembers(page->if_contains("Members"), name, parts);
        const std::string next = redfishText(*page, "Members@odata.nextLink");
        page = next.empty() ? nullptr : find(next);
    }
    return parts;
}

std::vector<RedfishPart> RedfishTree::below(std::string_view path) const {
    std::vector<RedfishPart> parts;
    const std::string start = std::string(path) + "/";
    for (auto at = m_resources.lower_bound(start); at != m_resources.end() && at->first.starts_with(start); ++at) {
        if (at->first.find('/', start.size()) == std::string::npos) {
            parts.push_back({at->second, lastSegment(at->first)});
        }
    }
    return parts;
}

/// Entries of lists that are no resources of their own go by their names, if these tell them apart.
void RedfishTree::addMembers(const json::value* members, std::string_view name, std::vector<RedfishPart>& parts) {
    if (members == nullptr || !members->is_array()) {
        return;
    }
    std::set<const json::object*> seen;
    std::ranges::for_each(parts, [&seen](const RedfishPart& part) { seen.insert(part.data); });
    std::vector<RedfishPart> entries;
    std::set<std::string> names;
    for (const json::value& member : members->get_array()) {
        const json::object* const part = resolved(member, name);
        if (part == nullptr || !seen.insert(part).second) {
            continue;
        }
        const std::string path = ownPath(member.get_object());
        if (!path.empty()) {
            parts.push_back({part, lastSegment(path)});
        } else {
            const std::string title = redfishText(*part, "Name");
            entries.push_back({part, title.empty() ? redfishText(*part, "FanName") : title});
            names.insert(entries.back().id);
        }
    }
    const bool areNamed = names.size() == entries.size() && !names.contains({});
    for (std::size_t number = 0; number < entries.size(); ++number) {
        if (!areNamed) {
            entries[number].id = std::to_string(number);
        }
        parts.push_back(std::move(entries[number]));
    }
}

}  // namespace vrx
