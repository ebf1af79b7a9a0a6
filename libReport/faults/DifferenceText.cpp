#include "libReport/faults/DifferenceText.h"

#include "libCommon/text/PrintableText.h"
#include "libReport/patterns/ReadablePattern.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

bool isPattern(const Difference& difference) noexcept {
    return difference.what == Difference::What::Property || difference.what == Difference::What::Name;
}

/// "begins with 2." as what somebody expects.
std::string asObject(const std::string& expected) {
    const bool isVerb = expected.starts_with("begins with ") || expected.starts_with("ends with ");
    return isVerb ? "one that " + expected : expected;
}

}  // namespace

std::string subjectText(const Difference& difference) {
    switch (difference.what) {
        case Difference::What::Name: return "name";
        case Difference::What::OsLocator: return "OS locator";
        case Difference::What::Type: return "type";
        case Difference::What::Property: break;
    }
    return printable(difference.key);
}

std::string expectedText(const Difference& difference) {
    std::string text;
    const char* separator = "";
    for (const String& expected : difference.expected) {
        text += separator + (isPattern(difference) ? readablePattern(expected) : printableValue(expected));
        separator = ", ";
    }
    if (*separator == '\0') {
        text = "any value";
    }
    return difference.isForbidden ? "not " + text : text;
}

std::string foundText(const Difference& difference) {
    return difference.found ? printableValue(*difference.found) : "no such property";
}

std::vector<DifferenceLine> differenceLines(const std::vector<Difference>& differences) {
    std::vector<DifferenceLine> lines;
    for (const Difference& difference : differences) {
        const std::string expected = expectedText(difference);
        if (difference.isAlternative && !lines.empty()) {
            lines.back().expected += " or " + expected;
        } else {
            lines.push_back({difference, subjectText(difference), expected, foundText(difference)});
        }
    }
    return lines;
}

std::string sentenceOf(const DifferenceLine& line) {
    const Difference& difference = line.difference;
    const bool isNameless = difference.what == Difference::What::Name || difference.key == property::SIZE;
    const std::string subject = isNameless ? "" : line.subject + " ";
    if (difference.isForbidden) {
        return subject + "is " + line.found + ", which must not be";
    }
    if (!difference.found) {
        return "has no " + line.subject + (difference.expected.empty() ? "" : ", expected " + asObject(line.expected));
    }
    return subject + (difference.what == Difference::What::Name ? "is named " : "is ") + line.found + ", expected " +
           asObject(line.expected);
}

}  // namespace vrx
