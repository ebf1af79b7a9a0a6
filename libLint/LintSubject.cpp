#include "libLint/LintSubject.h"

#include "libCommon/text/PrintableText.h"

namespace vrx {

bool hasEntries(const XmlElement& property) noexcept {
    const XmlElement* child = property.FirstChildElement();
    while (child != nullptr && vocabulary::kindOf(*child) == vocabulary::ElementKind::Error) {
        child = child->NextSiblingElement();
    }
    return child != nullptr;
}

std::string tagOf(const XmlElement& element) { return "<" + printable(element.Name()) + ">"; }

}  // namespace vrx
