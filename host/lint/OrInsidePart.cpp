#include "host/lint/OrInsidePart.h"

#include "host/script/ScriptElement.h"

namespace vrx::host {

namespace {

const XmlElement* search(const XmlElement& element, bool isInsidePart) {
    const bool isPart = isNamed(element, u"part");
    const bool isOr = isNamed(element, u"or");
    if (isOr && isInsidePart && element.FirstChildElement() != nullptr) {
        return &element;
    }
    const bool isVisited = isPart || isOr || isNamed(element, u"and") || isNamed(element, u"not") ||
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

const XmlElement* findOrInsidePart(const XmlElement& root) { return search(root, false); }

}  // namespace vrx::host
