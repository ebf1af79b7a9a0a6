/// What is still to be chosen of a component falls into parts that have no group of devices in common.

#include "libInventory/engine/search/ComponentSearch.h"
#include "libInventory/engine/search/DisjointSets.h"

namespace vrx {

/// Whether the alternative that a digit lies in is chosen for sure not to be taken.
bool ComponentSearch::isRuledOut(std::uint32_t digit, const std::vector<bool>& isOpen) const {
    for (std::size_t at = m_component.digits[digit].holder; at != SearchDigitPart::NONE;) {
        if (!isOpen[at] && m_trial.values()[at] != 0) {
            return true;
        }
        at = m_component.digits[at].holder;
    }
    return false;
}

ComponentSearch::Division ComponentSearch::divide(const Part& whole) const {
    const std::size_t digits = m_component.digits.size();
    std::vector<bool> isOpen(digits);
    for (const std::uint32_t digit : whole.open) {
        isOpen[digit] = true;
    }
    DisjointSets sets(digits + m_component.groups.size());
    const auto joinHolder = [&](std::uint32_t digit) {
        if (m_component.digits[digit].holder != SearchDigitPart::NONE) {
            sets.join(digit, m_component.digits[digit].holder);
        }
    };
    Numbers chosen;
    for (const std::uint32_t digit : whole.open) {
        m_reachable[digit].forEach([&](std::size_t group) { sets.join(digit, digits + group); });
        joinHolder(digit);
    }
    for (const std::uint32_t digit : whole.chosen) {
        if (!isRuledOut(digit, isOpen)) {
            chosen.push_back(digit);
            for (const std::uint32_t group : m_component.digits[digit].groups[m_trial.values()[digit]]) {
                sets.join(digit, digits + group);
            }
            joinHolder(digit);
        }
    }
    constexpr std::uint32_t NO_PART = 0xFFFFFFFF;
    std::vector<std::uint32_t> partOf(digits + m_component.groups.size(), NO_PART);
    Division division;
    for (const std::uint32_t digit : whole.open) {
        std::uint32_t& part = partOf[sets.find(digit)];
        if (part == NO_PART) {
            part = static_cast<std::uint32_t>(division.parts.size());
            division.parts.emplace_back();
        }
        division.parts[part].open.push_back(digit);
    }
    const auto partWith = [&](std::size_t number) -> Part& {
        const std::uint32_t part = partOf[sets.find(number)];
        return part == NO_PART ? division.settled : division.parts[part];
    };
    for (const std::uint32_t digit : chosen) {
        partWith(digit).chosen.push_back(digit);
    }
    for (const std::uint32_t group : whole.groups) {
        Part& part = partWith(digits + group);
        if (&part != &division.settled || !m_isIdle[group]) {
            part.groups.push_back(group);
        }
    }
    return division;
}

}  // namespace vrx
