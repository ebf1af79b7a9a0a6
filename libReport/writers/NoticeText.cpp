#include "libReport/writers/NoticeText.h"

#include "libCommon/text/PrintableText.h"
#include "libReport/writers/PlacedLines.h"

namespace vrx {

namespace {

constexpr std::size_t LONGEST_ELEMENT = 40;

/// The beginning of the element, enough to know it by.
std::string shortElement(StringView xml) {
    const std::size_t end = xml.find(u'>');
    const StringView tag = end == StringView::npos ? xml : xml.substr(0, end + 1);
    return tag.size() <= LONGEST_ELEMENT ? printable(tag) : printable(tag.substr(0, LONGEST_ELEMENT)) + "...";
}

std::string sentenceOf(const ScriptNotice& notice) {
    return notice.kind == FindingKind::NotUnderNot
               ? "a <not> inside a <not>"
               : "unknown element " + shortElement(notice.element) + " was passed over";
}

}  // namespace

std::string noticeText(const std::vector<ScriptNotice>& notices, const std::string& file, const TextFormat& format) {
    PlacedLines lines(file, format);
    for (const ScriptNotice& notice : notices) {
        lines.wrapped(0, lines.placeText(notice.place) + "  " + sentenceOf(notice), Style::Caution);
    }
    return lines.take();
}

}  // namespace vrx
