#pragma once

#include <cstddef>

#include "libCommon/Export.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/script/ScriptVocabulary.h"

/// What a script or a piece of one asks for, as a whole.
///
///     contentOf(root).asksForAnything();                                  // not for "<inventory-check/>"
///     hasElement(root, vocabulary::ElementKind::FailOnExtra);
///     needsDevice(root);                                                  // not where each stands under a `not`
namespace vrx {

/// What a script asks for, counted over the elements that a check looks at.
struct ScriptContent {
    std::size_t devices = 0;
    std::size_t extraDeviceRules = 0;

    /// A check of a script that asks for nothing says nothing about the machine.
    bool asksForAnything() const noexcept { return devices + extraDeviceRules > 0; }
};
VRX_EXPORT ScriptContent contentOf(const XmlElement& root);

/// Whether the element or anything in it, also where no check looks, is of that kind.
VRX_EXPORT bool hasElement(const XmlElement& element, vocabulary::ElementKind kind);

/// Whether the element is or holds a `device` that has to be there: one under no `not`, where a check looks.
VRX_EXPORT bool needsDevice(const XmlElement& element);

}  // namespace vrx
