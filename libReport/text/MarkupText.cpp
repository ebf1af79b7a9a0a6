#include "libReport/text/MarkupText.h"

#include "libCommon/text/PrintableText.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlWriter.h"

namespace vrx {

std::string xmlText(std::string_view text) { return escapedText(String::UTF8Decode(printable(text))).toUtf8(); }

std::string xmlAttribute(std::string_view text) {
    return escapedAttribute(String::UTF8Decode(printable(text))).toUtf8();
}

}  // namespace vrx
