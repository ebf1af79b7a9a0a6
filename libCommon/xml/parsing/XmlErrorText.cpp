#include "libCommon/xml/parsing/XmlErrorText.h"

#include <algorithm>

#include "libCommon/text/NumberText.h"
#include "libCommon/xml/parsing/XmlTreeBuilder.h"

namespace vrx {

namespace {

constexpr std::string_view NAME_ENDS = " \t\n\r<>&;=/\"'";
constexpr std::size_t LONGEST_NAME_SHOWN = 64;

String libraryText(XML_Error code) {
    const char* const text = XML_ErrorString(code);
    return text == nullptr ? String(u"unknown error") : String::UTF8Decode(text);
}

String startOf(const XmlElement& element) {
    return concat(u"<", element.Name(), u"> of line ", toText(element.Row() + 1));
}

/// The name that a text begins with, if it does, after an `&`.
String leadingName(std::string_view text) {
    if (text.starts_with('&')) {
        text.remove_prefix(1);
    }
    return String::UTF8Decode(text.substr(0, std::min(text.find_first_of(NAME_ENDS), LONGEST_NAME_SHOWN)));
}

/// The library's text, a colon, and the name that stands at the error.
String withName(XML_Error code, StringView before, std::string_view rest, StringView after) {
    const String name = leadingName(rest);
    return name.isEmpty() ? libraryText(code) : concat(libraryText(code), u": ", before, name, after);
}

}  // namespace

String describeError(XML_Error code, std::string_view rest, const XmlTreeBuilder& builder) {
    const XmlElement* const open = builder.openElement();
    switch (code) {
        case XML_ERROR_NO_ELEMENTS:
            return open == nullptr ? libraryText(code) : concat(u"unclosed element: ", startOf(*open));
        case XML_ERROR_TAG_MISMATCH:
            if (open != nullptr) {
                return concat(libraryText(code), u": expected </", open->Name(), u"> for the ", startOf(*open));
            }
            return libraryText(code);
        case XML_ERROR_DUPLICATE_ATTRIBUTE: return withName(code, {}, rest, {});
        case XML_ERROR_UNDEFINED_ENTITY: return withName(code, u"&", rest, u";");
        default: return libraryText(code);
    }
}

}  // namespace vrx
