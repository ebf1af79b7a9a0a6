#include "libInventory/script/OrInsidePart.h"

#include "libInventory/script/ScriptElement.h"

namespace vrx {

namespace {

const XmlElement* search(const XmlElement& element, bool isInsidePart) {
    const bool isPart = isNamed(element, u"part");
    if (isUndecidableOr(element, isInsidePart)) {
        return &element;
    }
    const bool isVisited = isPart || isNamed(element, u"or") || isNamed(element, u"and") || isNamed(element, u"not") ||
                           isNamed(element, u"inventory-check");
    if (!isVisited) {
        return nullptr;
    }
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (const XmlElement* const found = search(*child, isInsidePart || isPart)) {
            return found;
        }
    }
    return nullptr;
}

}  // namespace

bool isUndecidableOr(const XmlElement& element, bool isInsidePart) noexcept {
    return isInsidePart && isNamed(element, u"or") && element.FirstChildElement() != nullptr;
}

const XmlElement* findOrInsidePart(const XmlElement& root) { return search(root, false); }

}  // namespace vrx
