/// Names are told apart by plain comparison: there are a dozen, and a hash of the folded name would cost as much.

#include "libLint/LintVocabulary.h"

#include <algorithm>
#include <iterator>

#include "libInventory/script/ScriptElement.h"

namespace vrx {

namespace {

/// In the order of `LintKind`.
constexpr StringView NAMES[] = {u"inventory-check", u"and",           u"or",      u"not",   u"part", u"device",
                                u"property",        u"fail-on-extra", u"testset", u"error", u"value"};
static_assert(std::size(NAMES) == static_cast<std::size_t>(LintKind::Unknown));

constexpr StringView ROOT_ATTRIBUTES[] = {u"check-names", u"check-hwLocators", u"check-osLocators"};
constexpr StringView PART_ATTRIBUTES[] = {u"name", u"id", u"description"};
constexpr StringView DEVICE_ATTRIBUTES[] = {u"type", u"name", u"oslocator", u"hwlocator"};
constexpr StringView PROPERTY_ATTRIBUTES[] = {u"key", u"value", u"type", u"units"};
constexpr StringView VALUE_ATTRIBUTES[] = {u"value"};
constexpr StringView RULE_ATTRIBUTES[] = {u"type", u"capability"};

}  // namespace

LintKind lintKindOf(const XmlElement& element) noexcept {
    const auto found = std::ranges::find_if(NAMES, [&](StringView name) { return isNamed(element, name); });
    return static_cast<LintKind>(found - std::begin(NAMES));
}

std::span<const StringView> attributesOf(LintKind kind) noexcept {
    switch (kind) {
        case LintKind::InventoryCheck: return ROOT_ATTRIBUTES;
        case LintKind::Part: return PART_ATTRIBUTES;
        case LintKind::Device: return DEVICE_ATTRIBUTES;
        case LintKind::Property: return PROPERTY_ATTRIBUTES;
        case LintKind::Value: return VALUE_ATTRIBUTES;
        case LintKind::FailOnExtra: return RULE_ATTRIBUTES;
        default: return {};
    }
}

std::span<const StringView> elementNames() noexcept { return NAMES; }

}  // namespace vrx
