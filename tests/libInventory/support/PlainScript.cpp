#include "tests/libInventory/support/PlainScript.h"

#include <algorithm>
#include <map>
#include <regex>

namespace vrx::test::plain {

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char unit) { return unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit + 32) : unit; });
    return text;
}

namespace {

/// The types that plain scripts may name, each with the type above it.
std::string typeAbove(const std::string& type) {
    static const std::map<std::string, std::string> above = {
        {"storage", "top"}, {"solidstatedrive", "storage"}, {"harddiskdrive", "storage"}, {"fan", "cooling"}};
    const auto at = above.find(lower(type));
    return at == above.end() ? std::string() : at->second;
}

}  // namespace

bool isType(const std::string& type) { return !typeAbove(type).empty(); }
bool covers(const std::string& wanted, const std::string& type) {
    return isType(wanted) && (lower(wanted) == lower(type) || lower(wanted) == typeAbove(type));
}

namespace {

bool searchPattern(const std::string& pattern, const std::string& value) {
    static const std::regex rangeForm(R"(\^VRXRRANGE\[(\d+)-(\d+)\]\$)");
    std::smatch bounds;
    if (!std::regex_match(pattern, bounds, rangeForm)) {
        return std::regex_search(value, std::regex(pattern));
    }
    const bool isNumber = !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
    return isNumber && std::stoi(value) >= std::stoi(bounds[1]) && std::stoi(value) <= std::stoi(bounds[2]);
}

}  // namespace

bool matchesPattern(const std::string& pattern, const std::string& value) {
    static std::map<std::pair<std::string, std::string>, bool> known;
    const auto [answer, isNew] = known.try_emplace({pattern, value}, false);
    if (isNew) {
        std::string text = pattern.substr(pattern.starts_with("^") ? 1 : 0);
        if (text.ends_with("$")) {
            text.pop_back();
        }
        answer->second = searchPattern(pattern, value) || lower(text) == lower(value);
    }
    return answer->second;
}

std::string joined(const Texts& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : ", ") + text;
    }
    return all;
}

std::string guidOf(const Device& device) { return device.hwLocator + "|" + device.osLocator; }

const std::string* Element::find(const std::string& name) const {
    const auto at =
        std::find_if(attributes.begin(), attributes.end(), [&](const auto& pair) { return pair.first == name; });
    return at == attributes.end() ? nullptr : &at->second;
}

std::string Element::attribute(const std::string& name) const {
    const std::string* const value = find(name);
    return value != nullptr ? *value : std::string();
}

std::string Element::toXml() const {
    std::string xml = "<" + tag;
    for (const auto& [name, value] : attributes) {
        xml += " " + name + "=\"" + value + "\"";
    }
    std::string inner;
    for (const Element& child : children) {
        inner += child.toXml();
    }
    for (const std::string& error : errors) {
        inner += "<error>";
        for (const char unit : error) {
            inner += unit == '<' ? "&lt;" : unit == '>' ? "&gt;" : std::string(1, unit);
        }
        inner += "</error>";
    }
    return inner.empty() ? xml + "/>" : xml + ">" + inner + "</" + tag + ">";
}

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    out << (outcome.passed ? "passed" : "failed") << (outcome.satisfied ? ", satisfied" : "") << "\n";
    const std::pair<const char*, const std::vector<std::string>*> lists[] = {{"unsatisfied", &outcome.unsatisfied},
                                                                             {"extra", &outcome.extra},
                                                                             {"events", &outcome.events},
                                                                             {"parts", &outcome.parts}};
    for (const auto& [title, texts] : lists) {
        out << title << ": " << joined(*texts) << "\n";
    }
    return out << outcome.annotated << "\n";
}

}  // namespace vrx::test::plain
