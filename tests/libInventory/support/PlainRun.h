#pragma once

#include <map>
#include <set>

#include "tests/libInventory/support/PlainScript.h"

/// A run by its rules, without index, cache or short cut.
namespace vrx::test::plain {

/// How good a combination is: fewer errors first, then the larger sum of positions.
struct Count {
    unsigned errors = 0;
    unsigned positions = 0;
    bool isBetterThan(const Count& other) const {
        return errors < other.errors || (errors == other.errors && positions > other.positions);
    }
};

struct Context {
    bool visible = true;
    std::size_t linkSet = 0;
    unsigned selected = 0;
    bool atLast = false;
    unsigned position = 0;
    bool pruned = false;
    bool visited = false;
};

struct Slot {
    std::map<const Element*, Texts> tips;
    std::multiset<const Element*> unsatisfied;
    Texts extra;
};

enum { SCRIPT, MATCHING, BEST, CURRENT };

class PlainRun {
public:
    PlainRun(Element& root, const Machine& machine, bool withPartsTable)
        : m_root(root), m_machine(machine), m_withParts(withPartsTable) {}

    Outcome run();

    /// Whether some combination passes when every way to deal out the devices is tried.
    bool passesSomehow();

private:
    struct Link {
        const Element* element;
        int device;
    };
    using Links = std::vector<Link>;

    bool isOn(const std::string& flag) const {
        const std::string* const value = m_root.find(flag);
        return value == nullptr || *value == "true";
    }
    bool fail(const Element& element, const std::string& text, int slot) {
        m_contexts[&element];
        m_slots[slot].tips[&element].push_back(text);
        return false;
    }
    void markUnsatisfied(const Element& element, int slot) {
        m_contexts[&element];
        m_slots[slot].unsatisfied.insert(&element);
    }

    void number(const Element& element, const std::string& parent, unsigned position);
    bool firstPass(const Element& element, bool underNot, std::size_t set);
    bool firstPassOfAll(const Element& element, bool underNot, std::size_t set);
    bool firstPassOfOr(const Element& element, bool underNot);
    bool matchDevice(const Element& element, bool underNot, std::size_t set);
    bool matchInside(const Element& element, const Device& device, bool underNot, bool report);
    bool matchProperty(const Element& element, const Device& device);
    void flip(const Element& element);

    bool runCombination(bool first, int slot, Count& errors, bool& anySatisfied);
    void merge(const Element& element, bool& increment);
    void mergeOr(const Element& element, bool& increment);
    void reduce();
    bool passesFrom(std::size_t device);
    bool hasSpareLink() const;
    bool secondPass(const Element& element, bool underNot, int slot, Count& errors);
    bool decide(const Element& element, bool underNot, int slot, Count& errors);
    bool decideAll(const Element& element, bool underNot, int slot, Count& errors);
    bool decideDevice(const Element& element, bool underNot, int slot);
    void enterPart(const Element& part, bool underNot);
    void collectGuids(const Element& element, bool underNot, Texts& guids);
    void forgetDevices(const Element& element);
    bool findExtras(int slot);
    bool satisfiesRule(const Element& rule, const Device& device) const;
    void clear(const Element& element, int slot);
    void count(const Element& element, int slot, Count& errors) const;
    unsigned gatherOne(Element& element, int slot);
    void gather(Element& element, int slot);

    Element& m_root;
    const Machine& m_machine;
    bool m_withParts;
    std::map<const Element*, Context> m_contexts;
    std::vector<Links> m_linkSets{1};
    std::vector<const Element*> m_rules;
    unsigned m_combinations = 1;
    Slot m_slots[4];
    Links m_links;                                    ///< of the combination, before reduction
    std::map<const Element*, std::vector<int>> m_of;  ///< after reduction
    std::set<int> m_taken;                            ///< devices that have a link after reduction
    std::map<std::string, std::vector<std::pair<std::string, std::string>>> m_parts;
    Outcome m_outcome;
};

inline bool passesByAnyAssignment(Element script, const Machine& machine, bool withPartsTable) {
    return PlainRun(script, machine, withPartsTable).passesSomehow();
}

/// Runs by the plain rules. An `or` may not stand inside a `part`.
inline Outcome runPlainly(Element script, const Machine& machine, bool withPartsTable) {
    return PlainRun(script, machine, withPartsTable).run();
}

}  // namespace vrx::test::plain
