#include "libInventory/script/ScriptVocabulary.h"

#include <cstring>
#include <iterator>

namespace vrx::vocabulary {

namespace {

/// In the order of `ElementKind`.
constexpr StringView ELEMENT_NAMES[] = {INVENTORY_CHECK, AND,           OR,      NOT,   PART, DEVICE,
                                        PROPERTY,        FAIL_ON_EXTRA, TESTSET, ERROR, VALUE};
static_assert(std::size(ELEMENT_NAMES) == static_cast<std::size_t>(ElementKind::Unknown));

/// Requires: name and word are of one length.
ElementKind kindWhenEqual(StringView name, StringView word, ElementKind kind) noexcept {
    const bool isSame = std::memcmp(name.data(), word.data(), word.size() * sizeof(char16_t)) == 0;
    return isSame || equalNoCase(name, word) ? kind : ElementKind::Unknown;
}

}  // namespace

std::span<const StringView> elementNames() noexcept { return ELEMENT_NAMES; }

// The lengths of the names tell all but three pairs apart, so at most two comparisons are made.
ElementKind kindOf(StringView elementName) noexcept {
    switch (elementName.size()) {
        case 2: return kindWhenEqual(elementName, OR, ElementKind::Or);
        case 3: {
            const ElementKind kind = kindWhenEqual(elementName, AND, ElementKind::And);
            return kind != ElementKind::Unknown ? kind : kindWhenEqual(elementName, NOT, ElementKind::Not);
        }
        case 4: return kindWhenEqual(elementName, PART, ElementKind::Part);
        case 5: {
            const ElementKind kind = kindWhenEqual(elementName, VALUE, ElementKind::Value);
            return kind != ElementKind::Unknown ? kind : kindWhenEqual(elementName, ERROR, ElementKind::Error);
        }
        case 6: return kindWhenEqual(elementName, DEVICE, ElementKind::Device);
        case 7: return kindWhenEqual(elementName, TESTSET, ElementKind::TestSet);
        case 8: return kindWhenEqual(elementName, PROPERTY, ElementKind::Property);
        case 13: return kindWhenEqual(elementName, FAIL_ON_EXTRA, ElementKind::FailOnExtra);
        case 15: return kindWhenEqual(elementName, INVENTORY_CHECK, ElementKind::InventoryCheck);
        default: return ElementKind::Unknown;
    }
}

}  // namespace vrx::vocabulary
