#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "libInventory/engine/search/SearchModel.h"

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

    /// Tries the present values of those digits together with those groups.
    Result run(const Numbers& digits, const Numbers& groups) {
        reduce(digits, groups);
        return decide(digits, groups);
    }

    /// The first half of it: the reduction. Returns the elements that it leaves without a device.
    const BitRow& reduce(const Numbers& digits, const Numbers& groups);

    /// The second half. Requires: the first was done for the same.
    Result decide(const Numbers& digits, const Numbers& groups);

private:
    /// What a value of a digit comes to while all of its elements have a device.
    struct Undisturbed {
        bool isKnown = false;
        bool isMet = true;
        SearchCost cost;
    };

    void gather(const Numbers& digits, const Numbers& groups);
    bool assignExactly();
    void noteMissing();
    bool isSimple(std::uint32_t digit) const { return m_isSimple[digit] && knownOf(digit).isKnown; }
    const Undisturbed& knownOf(std::uint32_t digit) const { return m_undisturbed[digit][m_values[digit]]; }
    void decideDigit(std::uint32_t digit, Result& result) const;
    bool decide(std::uint32_t at, SearchCost& cost) const;
    bool decideChoice(const SearchNode& node, SearchCost& cost) const;
    void prepare(std::uint32_t at);
    bool holdsDigit(std::uint32_t at) const;

    const SearchModel& m_model;
    SearchComponent& m_component;
    std::vector<std::uint32_t> m_values;
    std::vector<std::uint32_t> m_numberOf;                ///< by digit of the model: its number in the component
    std::vector<std::vector<Undisturbed>> m_undisturbed;  ///< by number and value
    std::vector<bool> m_isSimple;                         ///< by number: nothing but the choice is decided with it
    Numbers m_digitOf;                                    ///< by element that lies in an alternative
    bool m_canHaveExtras;
    bool m_isPreparing = true;

    BitRow m_elements;                ///< of the present trial
    BitRow m_missing;                 ///< those without a device
    std::vector<bool> m_isDisturbed;  ///< by number of the digit: some of its elements are missing
    BitRow m_extras;                  ///< the devices that must not be left over
    BitRow m_held;
};

}  // namespace vrx
