#include "libInventory/script/PartsList.h"

#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

using vocabulary::ElementKind;

// Contract: elements before the first part are ignored, those after it are parts under any name.
const XmlElement* firstPart(const XmlElement& root) noexcept {
    for (const XmlElement* const child : childElements(root)) {
        if (vocabulary::kindOf(*child) == ElementKind::Part) {
            return child;
        }
    }
    return nullptr;
}

bool describesDevices(const XmlElement& part) noexcept {
    for (const XmlElement* const child : childElements(part)) {
        switch (vocabulary::kindOf(*child)) {
            case ElementKind::And:
            case ElementKind::Or:
            case ElementKind::Not:
            case ElementKind::Device: return true;
            default: break;
        }
    }
    return false;
}

}  // namespace vrx
