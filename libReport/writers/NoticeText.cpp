#include "libReport/writers/NoticeText.h"

#include "libCommon/text/PrintableText.h"
#include "libReport/text/Style.h"

namespace vrx {

namespace {

constexpr std::size_t LONGEST_ELEMENT = 40;

String variableOf(const TestRunEventImp& event, StringView name) {
    for (const TestRunEventImp::Variable& variable : event.variables()) {
        if (variable.name == name) {
            return variable.value.toString();
        }
    }
    return String();
}

/// "file:row:column" of "(row:column)".
std::string placeText(const std::string& file, const String& location) {
    const std::string text = location.toUtf8();
    return printable(file) + (text.size() > 2 ? ":" + text.substr(1, text.size() - 2) : "");
}

/// The beginning of the element, enough to know it by.
std::string shortElement(const String& xml) {
    const StringView text = xml;
    const std::size_t end = text.find(u'>');
    const StringView tag = end == StringView::npos ? text : text.substr(0, end + 1);
    return tag.size() <= LONGEST_ELEMENT ? printable(tag) : printable(tag.substr(0, LONGEST_ELEMENT)) + "...";
}

std::string sentenceOf(const TestRunEventImp& event) {
    if (event.name() == u"EncounteredUnknownElement") {
        return "unknown element " + shortElement(variableOf(event, u"element")) + " was passed over";
    }
    if (event.name() == u"FoundNotUnderNot") {
        return "a <not> inside a <not>";
    }
    return printable(event.toString());
}

}  // namespace

std::string noticeText(const Array<TestRunEventImp>& events, const std::string& file, const TextFormat& format) {
    std::string out;
    for (const TestRunEventImp& event : events) {
        const std::string line = placeText(file, variableOf(event, u"location")) + "  " + sentenceOf(event);
        for (const std::string& piece : wrapped(line, format.width)) {
            out += styled(piece, Style::Caution, format.colour) + "\n";
        }
    }
    return out;
}

}  // namespace vrx
