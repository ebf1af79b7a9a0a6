#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "libInventory/engine/search/model/SearchModel.h"

namespace vrx {

/// Tries combinations of a component, or of a part of one that has nothing to do with the rest.
class ComponentTrial {
public:
    struct Result {
        bool isMet = true;       ///< everything is satisfied
        bool hasExtras = false;  ///< a device is extra
        SearchCost cost;
    };
    using Numbers = std::vector<std::uint32_t>;

    /// Works on the component's own trial. Both are borrowed.
    ComponentTrial(const SearchModel& model, SearchComponent& component);

    /// The value of each digit, by its number in the component.
    std::vector<std::uint32_t>& values() noexcept { return m_values; }
    const std::vector<std::uint32_t>& values() const noexcept { return m_values; }

    /// Whether the digit counts: the alternative that it lies in is chosen.
    bool isActive(std::size_t digit) const;

    /// From here on combinations are tried together with those groups, which are borrowed.
    void setGroups(const Numbers& groups);

    /// Tries the present values of those digits.
    Result run(const Numbers& digits) {
        reduce(digits);
        return decide(digits);
    }

    /// The first half of it: the reduction. Returns the elements that it leaves without a device.
    const BitRow& reduce(const Numbers& digits);

    /// The second half. Requires: the first was done for the same.
    Result decide(const Numbers& digits);

private:
    /// What an alternative comes to.
    struct Answer {
        bool isMet = true;
        SearchCost cost;
    };

    /// The same by which of the first elements in it are missing, a bit for each. Empty where other digits have a say
    /// in it.
    struct Alternative {
        const NumberList* elements;
        std::vector<Answer> answers;
    };

    bool assignExactly();
    void noteMissing();
    const Answer* answerOf(std::uint32_t digit) const;
    void decideDigit(std::uint32_t digit, Result& result) const;
    bool decide(std::uint32_t at, SearchCost& cost) const;
    bool decideChoice(const SearchNode& node, SearchCost& cost) const;
    void prepare(std::uint32_t at);
    void prepare(Alternative& alternative, std::uint32_t at);
    bool holdsDigit(std::uint32_t at) const;

    const SearchModel& m_model;
    SearchComponent& m_component;
    std::vector<std::uint32_t> m_values;
    std::vector<std::uint32_t> m_numberOf;                 ///< by digit of the model: its number in the component
    std::vector<std::vector<Alternative>> m_alternatives;  ///< by number and value
    std::vector<const SearchNode*> m_onlyNode;  ///< by number: the choice, if it is all that is decided there
    Numbers m_digitOf;                          ///< by element that lies in an alternative
    bool m_canHaveExtras;

    const Numbers* m_groups = nullptr;
    BitRow m_fixed;  ///< the elements of the groups

    BitRow m_elements;                ///< of the present trial
    const BitRow* m_missing;          ///< those without a device
    std::vector<bool> m_isDisturbed;  ///< by number of the digit: some of its elements are missing
    BitRow m_extras;                  ///< the devices that must not be left over
    BitRow m_held;
};

}  // namespace vrx
