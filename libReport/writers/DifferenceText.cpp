#include "libReport/writers/DifferenceText.h"

#include "libCommon/text/PrintableText.h"
#include "libReport/text/ReadablePattern.h"

namespace vrx {

std::string subjectText(const Difference& difference) {
    switch (difference.what) {
        case Difference::What::Name: return "name";
        case Difference::What::OsLocator: return "OS locator";
        case Difference::What::Property: break;
    }
    return printable(difference.key);
}

std::string expectedText(const Difference& difference) {
    std::string text;
    const char* separator = "";
    for (const String& expected : difference.expected) {
        const bool isPattern = difference.what != Difference::What::OsLocator;
        text += separator + (isPattern ? readablePattern(expected) : printableValue(expected));
        separator = ", ";
    }
    return *separator == '\0' ? "any value" : text;
}

std::string foundText(const Difference& difference) {
    return difference.found ? printableValue(*difference.found) : "no such property";
}

}  // namespace vrx
