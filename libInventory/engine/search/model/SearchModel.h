#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "libInventory/engine/search/SearchDigits.h"
#include "libInventory/engine/search/SearchOutcome.h"
#include "libInventory/engine/search/links/BitRow.h"
#include "libInventory/engine/search/links/LinkTrial.h"

namespace vrx {

/// What an element of the script is to the second pass of a search.
struct SearchNode {
    enum class Kind : std::uint8_t {
        Constant,  ///< the same in all combinations
        Leaf,      ///< a `device` element that is satisfied while it has a device
        All,       ///< satisfied when all children are
        Not,       ///< satisfied unless all children are
        Or         ///< the child that the digit chooses
    };

    Kind kind = Kind::Constant;
    bool isMet = true;                    ///< of a constant
    SearchCost cost;                      ///< when it is not satisfied; of a constant, with all that is in it
    std::uint32_t number = 0;             ///< of a leaf: the element; of an `Or`: the digit
    std::vector<std::uint32_t> children;  ///< of an `Or`: by value of the digit
};

/// Devices that belong together in every combination, because elements outside of all alternatives link them or because
/// an element of the script looks at what is asked of them together.
struct SearchGroup {
    NumberList elements;  ///< outside of all alternatives
    NumberList devices;
    std::vector<std::uint32_t> tops;  ///< nodes that are decided with the group
};

/// A digit within its component.
struct SearchDigitPart {
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);

    std::size_t digit = 0;
    std::size_t holder = NONE;         ///< its holder (SearchDigit) within the component
    std::vector<NumberList> elements;  ///< by value
    std::vector<NumberList> groups;    ///< by value: those that it has to do with
    std::vector<std::uint32_t> tops;   ///< nodes that are decided with it
};

/// Alternatives that may have to do with one another, and the devices and elements that they have to do with. Nothing
/// outside of a component makes a difference to it.
struct SearchComponent {
    LinkTrial trial;
    std::vector<SearchGroup> groups;
    std::vector<SearchDigitPart> digits;  ///< in order
    BitRow extras;                        ///< devices that are extra when no element holds them
    std::size_t frame = 0;                ///< what it lies in
};

/// An element with several components in it, which fails as soon as one of them does. The first stands for the root.
struct SearchFrame {
    SearchCost cost;  ///< when it fails
    std::size_t outer = 0;
};

/// All that combinations differ in. See SearchModelBuilder.cpp.
struct SearchModel {
    SearchDigits digits;
    std::vector<SearchNode> nodes;
    std::vector<SearchComponent> components;
    std::vector<SearchFrame> frames;

    SearchCost constantCost;        ///< of what fails in every combination
    bool isConstantMet = true;      ///< everything that does not depend on the combination is satisfied
    bool hasConstantExtra = false;  ///< a device is extra in every combination

    bool isExact = false;  ///< devices are assigned exactly
};

}  // namespace vrx
