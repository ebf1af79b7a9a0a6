#include "tests/libInventory/support/PlainRun.h"

namespace vrx::test::plain {

void PlainRun::clear(const Element& element, int slot) {
    Slot& filed = m_slots[slot];
    if (const auto tips = filed.tips.find(&element); tips != filed.tips.end()) {
        tips->second.clear();
    }
    if (const auto at = filed.unsatisfied.find(&element); at != filed.unsatisfied.end()) {
        filed.unsatisfied.erase(at);
    }
    for (const Element& child : element.children) {
        clear(child, slot);
    }
}

void PlainRun::count(const Element& element, int slot, Count& errors) const {
    const Slot& filed = m_slots[slot];
    const auto tips = filed.tips.find(&element);
    const bool hasTips = tips != filed.tips.end();
    const bool isUnsatisfied = filed.unsatisfied.contains(&element);
    const auto context = m_contexts.find(&element);
    const unsigned position = context == m_contexts.end() ? 0 : context->second.position;
    errors.errors += static_cast<unsigned>(hasTips ? tips->second.size() : 0) + (isUnsatisfied ? 1 : 0);
    errors.positions += hasTips || isUnsatisfied ? position : 0;
    for (const Element& child : element.children) {
        Count ofChild;
        count(child, slot, ofChild);
        errors.errors += ofChild.errors;
        errors.positions += ofChild.positions + (ofChild.errors != 0 ? position : 0);
    }
}

unsigned PlainRun::gatherOne(Element& element, int slot) {
    const auto context = m_contexts.find(&element);
    if (context == m_contexts.end() || !context->second.visible) {
        return 0;
    }
    const Slot& filed = m_slots[slot];
    if (&element == &m_root && !filed.extra.empty()) {
        m_outcome.extra = filed.extra;
    }
    unsigned written = 0;
    if (const auto tips = filed.tips.find(&element); tips != filed.tips.end()) {
        element.errors.insert(element.errors.end(), tips->second.begin(), tips->second.end());
        written = static_cast<unsigned>(tips->second.size());
    }
    if (!filed.unsatisfied.contains(&element)) {
        return written;
    }
    const std::string kind = lower(element.tag);
    const std::string name = element.attribute("name");
    element.errors.push_back(kind == "device" ? "Unsatisfied device of type: " + element.attribute("type")
                             : kind == "not"  ? "matched device under not node"
                                              : "unsatisfied " + element.tag + " node" +
                                                   (kind == "part" && !name.empty() ? ": " + name : ""));
    return written + 1;
}

void PlainRun::gather(Element& element, int slot) {
    gatherOne(element, SCRIPT);
    if (gatherOne(element, slot) != 0 && lower(element.tag) == "device") {
        gatherOne(element, MATCHING);
        for (Element& child : element.children) {
            gather(child, MATCHING);
        }
    }
    m_contexts.erase(&element);
    for (Element& child : element.children) {
        gather(child, slot);
    }
}

}  // namespace vrx::test::plain
