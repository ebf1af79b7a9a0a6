#include <algorithm>

#include "tests/libInventory/support/PlainRun.h"

namespace vrx::test::plain {

bool PlainRun::firstPass(const Element& element, bool underNot, std::size_t set) {
    const std::string kind = lower(element.tag);
    if (kind == "part" || kind == "and" || kind == "inventory-check") {
        return firstPassOfAll(element, underNot, set);
    }
    if (kind == "or") {
        return firstPassOfOr(element, underNot);
    }
    if (kind == "not") {
        if (underNot) {
            m_outcome.events.push_back("FoundNotUnderNot");
        }
        const bool all = firstPassOfAll(element, true, set);
        return element.children.empty() || !all;
    }
    if (kind == "device") {
        return matchDevice(element, underNot, set);
    }
    if (kind == "fail-on-extra") {
        const std::string type = element.attribute("type");
        const std::string capability = element.attribute("capability");
        if (!isType(type) && !isType(capability)) {
            return fail(element,
                        "Invalid device type: " + type + " and Invalid device capability: " + capability +
                            " Please refer to Valid Device Types in Documentation",
                        SCRIPT);
        }
        m_rules.push_back(&element);
    } else if (kind != "testset") {
        m_outcome.events.push_back("EncounteredUnknownElement");
    }
    return true;
}

bool PlainRun::firstPassOfAll(const Element& element, bool underNot, std::size_t set) {
    bool all = true;
    for (const Element& child : element.children) {
        all = firstPass(child, underNot, set) && all;
    }
    return all;
}

bool PlainRun::firstPassOfOr(const Element& element, bool underNot) {
    m_contexts[&element];
    unsigned possible = 0;
    unsigned best = 0;
    Count bestCount;
    for (unsigned i = 0; i < element.children.size(); ++i) {
        const Element& child = element.children[i];
        const std::size_t set = m_linkSets.size();
        m_linkSets.emplace_back();
        m_contexts[&child] = Context{};
        m_contexts[&child].linkSet = set;
        if (firstPass(child, underNot, set)) {
            ++possible;
            continue;
        }
        m_contexts[&child].pruned = true;
        Count errors;
        count(child, MATCHING, errors);
        if (i == 0 || errors.isBetterThan(bestCount)) {
            best = i;
            bestCount = errors;
        }
    }
    if (possible > 0) {
        m_combinations *= possible;
        return true;
    }
    m_contexts[&element].pruned = true;
    m_contexts[&element].selected = best;
    return false;
}

bool PlainRun::matchDevice(const Element& element, bool underNot, std::size_t set) {
    const std::string type = element.attribute("type");
    if (!isType(type)) {
        return fail(element, "Invalid device type: " + type + " Please refer to Valid Device Types in Documentation",
                    SCRIPT);
    }
    std::vector<int> candidates;
    for (std::size_t i = 0; i < m_machine.size(); ++i) {
        if (covers(type, m_machine[i].type)) {
            candidates.push_back(static_cast<int>(i));
        }
    }
    if (candidates.empty()) {
        return fail(element, "No device of type: " + type, MATCHING);
    }
    for (const auto& [written, value] : element.attributes) {
        const std::string name = lower(written);
        if (name == "type" || (name == "name" && !isOn("check-names")) ||
            (name == "oslocator" && !isOn("check-osLocators")) || (name == "hwlocator" && !isOn("check-hwLocators"))) {
            continue;
        }
        if (name != "name" && name != "oslocator" && name != "hwlocator") {
            return fail(element, "Invalid attribute " + written, MATCHING);
        }
        std::erase_if(candidates, [&](int index) {
            const Device& device = m_machine[static_cast<std::size_t>(index)];
            return name == "name"        ? !matchesPattern(value, device.name)
                   : name == "oslocator" ? value != device.osLocator
                                         : value != device.hwLocator;
        });
        if (candidates.empty()) {
            return fail(element, "No device of type: " + type + " with " + name + ": " + value, MATCHING);
        }
    }
    bool anyMatched = false;
    for (const int index : candidates) {
        bool ok = true;
        for (const Element& child : element.children) {
            const Device& device = m_machine[static_cast<std::size_t>(index)];
            ok = matchInside(child, device, underNot, index == candidates.front()) && ok;
        }
        if (ok) {
            m_linkSets[set].push_back({&element, index});
            anyMatched = true;
        }
    }
    return anyMatched;
}

bool PlainRun::matchInside(const Element& element, const Device& device, bool underNot, bool report) {
    const std::string kind = lower(element.tag);
    if (kind == "property") {
        return matchProperty(element, device);
    }
    if (kind == "or") {
        for (std::size_t i = 0; i < element.children.size(); ++i) {
            if (matchInside(element.children[i], device, underNot, report)) {
                for (std::size_t failed = 0; failed < i; ++failed) {
                    flip(element.children[failed]);
                }
                return true;
            }
        }
        return false;
    }
    if (kind != "and" && kind != "not") {
        if (report) {
            m_outcome.events.push_back("EncounteredUnknownElement");
        }
        return true;
    }
    if (kind == "not" && underNot && report) {
        m_outcome.events.push_back("FoundNotUnderNot");
    }
    bool all = true;
    for (const Element& child : element.children) {
        all = matchInside(child, device, underNot || kind == "not", report) && all;
    }
    if (kind == "and") {
        return all;
    }
    if (!all) {
        flip(element);
    }
    return !all;
}

bool PlainRun::matchProperty(const Element& element, const Device& device) {
    const std::string key = element.attribute("key");
    const auto found = std::find_if(device.properties.begin(), device.properties.end(),
                                    [&](const auto& property) { return property.first == key; });
    if (found == device.properties.end()) {
        return fail(element,
                    "property key: " + key + " not found in Sysinfo " + device.type + " device: " + device.name,
                    MATCHING);
    }
    Texts entries;
    for (const Element& child : element.children) {
        entries.push_back(child.attribute("value"));
    }
    if (entries.empty() && element.find("value") == nullptr) {
        return true;
    }
    Texts values = found->second;
    bool matched = true;
    if (entries.empty()) {
        matched = matchesPattern(element.attribute("value"), joined(values));
    } else {
        matched = entries.size() == values.size();
        for (std::size_t i = 0; i < entries.size() && matched; ++i) {
            const auto taken = std::find_if(values.begin(), values.end(), [&](const std::string& value) {
                return matchesPattern(entries[i], value);
            });
            matched = taken != values.end();
            if (matched) {
                values.erase(taken);
            }
        }
    }
    if (!matched) {
        fail(element, device.hwLocator + " - " + key, MATCHING);
        fail(element, " Expected (regular expression): " + element.attribute("value") + joined(entries), MATCHING);
        fail(element, " did not match sysinfo value  : " + joined(found->second), MATCHING);
    }
    return matched;
}

void PlainRun::flip(const Element& element) {
    m_contexts[&element].visible = !m_contexts[&element].visible;
    for (const Element& child : element.children) {
        flip(child);
    }
}

}  // namespace vrx::test::plain
