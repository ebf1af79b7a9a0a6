#include "tests/libInventory/support/PlainRun.h"

#include <algorithm>

#include "tests/libInventory/support/PlainReduction.h"

namespace vrx::test::plain {

bool PlainRun::runCombination(bool first, int slot, Count& errors, bool& anySatisfied) {
    m_outcome.unsatisfied.clear();
    m_links = m_linkSets[0];
    bool increment = !first;
    merge(m_root, increment);
    reduce();
    const bool satisfied = secondPass(m_root, false, slot, errors);
    anySatisfied = anySatisfied || satisfied;
    return satisfied && !findExtras(slot);
}

Outcome PlainRun::run() {
    number(m_root, "", 0);
    firstPass(m_root, false, 0);
    bool anySatisfied = false;
    Count best;
    bool passed = runCombination(true, BEST, best, anySatisfied);
    for (unsigned tried = 1; !passed && tried < m_combinations; ++tried) {
        Count errors;
        passed = runCombination(false, CURRENT, errors, anySatisfied);
        if (!passed && errors.isBetterThan(best)) {
            m_slots[BEST] = m_slots[CURRENT];
            best = errors;
        }
        m_slots[CURRENT] = Slot();
    }
    if (!passed) {
        if (!anySatisfied) {
            findExtras(BEST);
        }
        gather(m_root, BEST);
        m_outcome.events.push_back("InventoryTestFailed");
    }
    for (const auto& [guid, parts] : m_parts) {
        std::string line = guid + ":";
        for (const auto& [name, guids] : parts) {
            line += " " + name + "[" + guids + "]";
        }
        m_outcome.parts.push_back(line);
    }
    m_outcome.passed = passed;
    m_outcome.satisfied = passed || anySatisfied;
    m_outcome.annotated = m_root.toXml();
    return m_outcome;
}

bool PlainRun::passesSomehow() {
    number(m_root, "", 0);
    firstPass(m_root, false, 0);
    for (unsigned tried = 0; tried < m_combinations; ++tried) {
        m_links = m_linkSets[0];
        bool increment = tried > 0;
        merge(m_root, increment);
        m_of.clear();
        m_taken.clear();
        if (passesFrom(0)) {
            return true;
        }
        Count errors;
        reduce();
        secondPass(m_root, false, CURRENT, errors);
    }
    return false;
}

/// Gives the device to each of its elements in turn that has none, and to none, and so on with the next.
bool PlainRun::passesFrom(std::size_t device) {
    if (device == m_machine.size()) {
        PlainRun trial = *this;
        Count errors;
        return !hasSpareLink() && trial.secondPass(m_root, false, CURRENT, errors) && !trial.findExtras(CURRENT);
    }
    for (const Link& link : m_links) {
        if (link.device == static_cast<int>(device) && m_of[link.element].empty()) {
            m_of[link.element] = {link.device};
            m_taken.insert(link.device);
            const bool passes = passesFrom(device + 1);
            m_of[link.element].clear();
            m_taken.erase(link.device);
            if (passes) {
                return true;
            }
        }
    }
    return passesFrom(device + 1);
}

/// Whether somebody could have one more: then the same with that is tried too, and does no worse.
bool PlainRun::hasSpareLink() const {
    return std::any_of(m_links.begin(), m_links.end(), [this](const Link& link) {
        const auto at = m_of.find(link.element);
        return !m_taken.contains(link.device) && (at == m_of.end() || at->second.empty());
    });
}

void PlainRun::number(const Element& element, const std::string& parent, unsigned position) {
    const std::string kind = lower(element.tag);
    if (parent == "and" && kind != "and" && kind != "or" && kind != "not") {
        m_contexts[&element].position = position;
    }
    unsigned next = 0;
    for (const Element& child : element.children) {
        number(child, kind, ++next);
    }
}

void PlainRun::merge(const Element& element, bool& increment) {
    const std::string kind = lower(element.tag);
    if (kind == "or") {
        mergeOr(element, increment);
    } else if (kind == "and" || kind == "not" || kind == "inventory-check") {
        for (const Element& child : element.children) {
            merge(child, increment);
        }
    }
}

void PlainRun::mergeOr(const Element& element, bool& increment) {
    Context& digit = m_contexts.at(&element);
    if (increment && digit.atLast) {
        digit.selected = 0;
        digit.atLast = false;
    } else if (increment) {
        ++digit.selected;
        increment = false;
    }
    if (element.children.empty()) {
        digit.atLast = true;
        return;
    }
    const std::size_t last = element.children.size() - 1;
    const std::size_t start = std::min<std::size_t>(digit.selected, last);
    const auto isPruned = [&](std::size_t index) {
        return m_contexts.at(&element.children[index]).pruned;
    };
    std::size_t chosen = start;
    while (isPruned(chosen) && chosen < last) {
        ++chosen;
    }
    if (isPruned(chosen)) {
        chosen = start;
    }
    digit.selected += static_cast<unsigned>(chosen - start);
    const Links& set = m_linkSets[m_contexts.at(&element.children[chosen]).linkSet];
    m_links.insert(m_links.end(), set.begin(), set.end());
    merge(element.children[chosen], increment);
    digit.atLast = digit.atLast || chosen == last;
}

void PlainRun::reduce() {
    std::vector<const Element*> elements;
    const auto indexOf = [&elements](const Element* element) {
        const auto at = std::find(elements.begin(), elements.end(), element);
        if (at == elements.end()) {
            elements.push_back(element);
            return static_cast<int>(elements.size()) - 1;
        }
        return static_cast<int>(at - elements.begin());
    };
    PlainReduction reduction(m_links.size(), m_machine.size());
    for (const Link& link : m_links) {
        reduction.link(indexOf(link.element), link.device);
    }
    reduction.run();
    m_of.clear();
    m_taken.clear();
    for (std::size_t i = 0; i < elements.size(); ++i) {
        m_of[elements[i]] = reduction.partners(static_cast<int>(i));
    }
    for (std::size_t i = 0; i < m_machine.size(); ++i) {
        if (!reduction.elementsOf(static_cast<int>(i)).empty()) {
            m_taken.insert(static_cast<int>(i));
        }
    }
}

bool PlainRun::secondPass(const Element& element, bool underNot, int slot, Count& errors) {
    if (lower(element.tag) == "or") {
        Context& context = m_contexts.at(&element);
        if (context.pruned && context.visited) {
            markUnsatisfied(element, slot);
            count(element, slot, errors);
            return false;
        }
        context.visited = context.pruned;
        if (element.children.empty()) {
            context.atLast = true;
            return true;
        }
    }
    const bool satisfied = decide(element, underNot, slot, errors);
    if (satisfied) {
        clear(element, slot);
    } else {
        count(element, slot, errors);
    }
    return satisfied;
}

bool PlainRun::decide(const Element& element, bool underNot, int slot, Count& errors) {
    const std::string kind = lower(element.tag);
    bool satisfied = true;
    if (kind == "inventory-check") {
        return decideAll(element, underNot, slot, errors);
    }
    if (kind == "device") {
        return decideDevice(element, underNot, slot);
    }
    if (kind == "and" || kind == "part") {
        satisfied = decideAll(element, underNot, slot, errors);
    } else if (kind == "not") {
        const bool all = decideAll(element, true, slot, errors);
        satisfied = element.children.empty() || !all;
    } else if (kind == "or") {
        const std::size_t last = element.children.size() - 1;
        const std::size_t chosen = std::min<std::size_t>(m_contexts.at(&element).selected, last);
        satisfied = secondPass(element.children[chosen], underNot, slot, errors);
    }
    if (!satisfied) {
        markUnsatisfied(element, slot);
    }
    if (kind == "part" && m_withParts && satisfied) {
        enterPart(element, underNot);
    } else if (kind == "part" && m_withParts) {
        for (const Element& child : element.children) {
            forgetDevices(child);
        }
    }
    return satisfied;
}

bool PlainRun::decideAll(const Element& element, bool underNot, int slot, Count& errors) {
    bool all = true;
    for (const Element& child : element.children) {
        all = secondPass(child, underNot, slot, errors) && all;
    }
    return all;
}

bool PlainRun::decideDevice(const Element& element, bool underNot, int slot) {
    const bool everMatched =
        std::any_of(m_links.begin(), m_links.end(), [&](const Link& link) { return link.element == &element; });
    if (underNot ? everMatched : everMatched && !m_of[&element].empty()) {
        return true;
    }
    m_outcome.unsatisfied.push_back(element.attribute("name") + "/" + element.attribute("type") + "/" +
                                    element.attribute("hwlocator") + "/" + element.attribute("oslocator"));
    markUnsatisfied(element, slot);
    return false;
}

void PlainRun::enterPart(const Element& part, bool underNot) {
    Texts guids;
    for (const Element& child : part.children) {
        collectGuids(child, underNot, guids);
    }
    const std::string name = part.attribute("name");
    for (const std::string& guid : guids) {
        auto& listed = m_parts[guid];
        if (std::none_of(listed.begin(), listed.end(), [&](const auto& other) { return other.first == name; })) {
            listed.push_back({name, joined(guids)});
        }
    }
}

void PlainRun::collectGuids(const Element& element, bool underNot, Texts& guids) {
    const std::string kind = lower(element.tag);
    if (kind == "part") {
        fail(element, "Nested <part> nodes are not supported", SCRIPT);
    } else if (kind == "and" || kind == "or" || kind == "not") {
        for (const Element& child : element.children) {
            collectGuids(child, underNot || kind == "not", guids);
        }
    } else if (kind == "device" && !underNot) {
        for (const int device : m_of[&element]) {
            const std::string guid = guidOf(m_machine[static_cast<std::size_t>(device)]);
            if (std::find(guids.begin(), guids.end(), guid) == guids.end()) {
                guids.push_back(guid);
            }
        }
    }
}

void PlainRun::forgetDevices(const Element& element) {
    const std::string kind = lower(element.tag);
    if (kind == "and" || kind == "or" || kind == "not") {
        for (const Element& child : element.children) {
            forgetDevices(child);
        }
    } else if (kind == "device") {
        for (const int device : m_of[&element]) {
            m_taken.erase(device);
        }
    }
}

bool PlainRun::findExtras(int slot) {
    bool foundAny = false;
    for (std::size_t i = 0; i < m_machine.size(); ++i) {
        const Device& device = m_machine[i];
        const bool isExtra = !m_taken.contains(static_cast<int>(i)) &&
                             std::any_of(m_rules.begin(), m_rules.end(),
                                         [&](const Element* rule) { return satisfiesRule(*rule, device); });
        if (isExtra) {
            foundAny = true;
            m_slots[slot].extra.push_back(device.name + "/" + device.type + "/" + device.hwLocator + "/" +
                                          device.osLocator);
            fail(m_root, "Found Extra Device: " + device.type + " - " + device.name, slot);
        }
    }
    return foundAny;
}

bool PlainRun::satisfiesRule(const Element& rule, const Device& device) const {
    const std::string capability = rule.attribute("capability");
    if (!covers(rule.attribute("type"), device.type) && !covers(capability, device.type) &&
        !(isType(capability) && covers(device.type, capability))) {
        return false;
    }
    Element script{"inventory-check", {}, {{"device", {{"type", device.type}}, rule.children}}};
    return rule.children.empty() || PlainRun(script, {device}, false).run().passed;
}

}  // namespace vrx::test::plain
