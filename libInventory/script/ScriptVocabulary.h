#pragma once

#include <cstdint>
#include <span>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"

/// Every element and attribute name of the inventory script and of the parts list, once. Names of elements count in any
/// letter case; which names of attributes do is up to the element.
///
///     if (vocabulary::kindOf(element) == vocabulary::ElementKind::Device) {
///         types.insert(attributeOf(element, vocabulary::TYPE));
///     }
namespace vrx::vocabulary {

inline constexpr StringView INVENTORY_CHECK = u"inventory-check";
inline constexpr StringView AND = u"and";
inline constexpr StringView OR = u"or";
inline constexpr StringView NOT = u"not";
inline constexpr StringView PART = u"part";
inline constexpr StringView DEVICE = u"device";
inline constexpr StringView PROPERTY = u"property";
inline constexpr StringView VALUE = u"value";
inline constexpr StringView FAIL_ON_EXTRA = u"fail-on-extra";
inline constexpr StringView TESTSET = u"testset";
inline constexpr StringView ERROR = u"error";

inline constexpr StringView CHECK_NAMES = u"check-names";
inline constexpr StringView CHECK_HW_LOCATORS = u"check-hwLocators";
inline constexpr StringView CHECK_OS_LOCATORS = u"check-osLocators";
inline constexpr StringView TYPE = u"type";
inline constexpr StringView NAME = u"name";
inline constexpr StringView HW_LOCATOR = u"hwlocator";
inline constexpr StringView OS_LOCATOR = u"oslocator";
inline constexpr StringView CAPABILITY = u"capability";
inline constexpr StringView KEY = u"key";
inline constexpr StringView UNITS = u"units";
inline constexpr StringView ID = u"id";
inline constexpr StringView DESCRIPTION = u"description";

/// What an element of a script is, by its name.
enum class ElementKind : std::uint8_t {
    InventoryCheck,
    And,
    Or,
    Not,
    Part,
    Device,
    Property,
    FailOnExtra,
    TestSet,
    Error,
    Value,  ///< meant only where a `property` holds it
    Unknown,
};

/// The names of all elements, in the order of their kinds.
VRX_EXPORT std::span<const StringView> elementNames() noexcept;

/// The kind that an element name stands for, without letter case.
VRX_EXPORT ElementKind kindOf(StringView elementName) noexcept;
inline ElementKind kindOf(const XmlElement& element) noexcept { return kindOf(element.Name()); }

}  // namespace vrx::vocabulary
