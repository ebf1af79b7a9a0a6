#include "libLint/LintVocabulary.h"

namespace vrx {

namespace {

constexpr StringView ROOT_ATTRIBUTES[] = {vocabulary::CHECK_NAMES, vocabulary::CHECK_HW_LOCATORS,
                                          vocabulary::CHECK_OS_LOCATORS};
constexpr StringView PART_ATTRIBUTES[] = {vocabulary::NAME, vocabulary::ID, vocabulary::DESCRIPTION};
constexpr StringView DEVICE_ATTRIBUTES[] = {vocabulary::TYPE, vocabulary::NAME, vocabulary::OS_LOCATOR,
                                            vocabulary::HW_LOCATOR};
constexpr StringView PROPERTY_ATTRIBUTES[] = {vocabulary::KEY, vocabulary::VALUE, vocabulary::TYPE, vocabulary::UNITS};
constexpr StringView VALUE_ATTRIBUTES[] = {vocabulary::VALUE};
constexpr StringView RULE_ATTRIBUTES[] = {vocabulary::TYPE, vocabulary::CAPABILITY};

}  // namespace

std::span<const StringView> attributesOf(vocabulary::ElementKind kind) noexcept {
    using vocabulary::ElementKind;
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
