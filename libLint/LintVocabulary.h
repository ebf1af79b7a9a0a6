#pragma once

#include <cstdint>
#include <span>

#include "libCommon/xml/XmlElement.h"

/// The names that scripts and parts lists are written with.
namespace vrx {

/// What an element is. `Value` is meant only where a `property` holds it.
enum class LintKind : std::uint8_t {
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
    Value,
    Unknown,
};

/// The kind of an element, by its name in any letter case.
LintKind lintKindOf(const XmlElement& element) noexcept;

/// The attributes that an element of the kind has a use for.
std::span<const StringView> attributesOf(LintKind kind) noexcept;

/// The names of all elements.
std::span<const StringView> elementNames() noexcept;

}  // namespace vrx
