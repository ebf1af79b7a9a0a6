#include "libLint/LintVocabulary.h"

namespace vrx {

namespace {

using namespace vocabulary;

constexpr StringView ROOT_ATTRIBUTES[] = {CHECK_NAMES, CHECK_HW_LOCATORS, CHECK_OS_LOCATORS};
constexpr StringView PART_ATTRIBUTES[] = {NAME, ID, DESCRIPTION};
constexpr StringView DEVICE_ATTRIBUTES[] = {TYPE, NAME, OS_LOCATOR, HW_LOCATOR};
constexpr StringView PROPERTY_ATTRIBUTES[] = {KEY, VALUE, TYPE, UNITS};
constexpr StringView VALUE_ATTRIBUTES[] = {VALUE};
constexpr StringView RULE_ATTRIBUTES[] = {TYPE, CAPABILITY};

}  // namespace

std::span<const StringView> attributesOf(ElementKind kind) noexcept {
    switch (kind) {
        case ElementKind::InventoryCheck: return ROOT_ATTRIBUTES;
        case ElementKind::Part: return PART_ATTRIBUTES;
        case ElementKind::Device: return DEVICE_ATTRIBUTES;
        case ElementKind::Property: return PROPERTY_ATTRIBUTES;
        case ElementKind::Value: return VALUE_ATTRIBUTES;
        case ElementKind::FailOnExtra: return RULE_ATTRIBUTES;
        default: return {};
    }
}

}  // namespace vrx
