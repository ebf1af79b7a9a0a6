#include "libCommon/xml/XmlErrorText.h"

#include "libCommon/text/NumberText.h"
#include "libCommon/xml/XmlSource.h"
#include "libCommon/xml/XmlTreeBuilder.h"

namespace vrx {

namespace {

String libraryText(XML_Error code) {
    const char* const text = XML_ErrorString(code);
    return text == nullptr ? String(u"unknown error") : String::UTF8Decode(text);
}

String startOf(const XmlElement& element) {
    return concat(u"<", element.Name(), u"> of line ", toText(element.Row() + 1));
}

/// The library's text, a colon, and the name that stands at the error.
String withName(XML_Error code, StringView before, const XmlSource& source, StringView after) {
    const String name = source.nameHere();
    return name.isEmpty() ? libraryText(code) : concat(libraryText(code), u": ", before, name, after);
}

}  // namespace

String describeError(XML_Error code, const XmlSource& source, const XmlTreeBuilder& builder) {
    const XmlElement* const open = builder.openElement();
    switch (code) {
        case XML_ERROR_NO_ELEMENTS:
            return open == nullptr ? libraryText(code) : concat(u"unclosed element: ", startOf(*open));
        case XML_ERROR_TAG_MISMATCH:
            if (open != nullptr) {
                return concat(libraryText(code), u": expected </", open->Name(), u"> for the ", startOf(*open));
            }
            return libraryText(code);
        case XML_ERROR_DUPLICATE_ATTRIBUTE: return withName(code, {}, source, {});
        case XML_ERROR_UNDEFINED_ENTITY: return withName(code, u"&", source, u";");
        default: return libraryText(code);
    }
}

}  // namespace vrx
