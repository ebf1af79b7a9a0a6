#include "libReport/text/ImportNotices.h"

#include <fmt/format.h>

#include "libCommon/text/PrintableText.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

using PassedOver = ImportReport::PassedOver;

constexpr std::size_t MOST_NAMED = 3;

/// Things of one sort, of which the first few are named.
class NoticeList {
public:
    void add(const std::string& text, std::uint32_t row, std::uint32_t column) {
        if (++m_count <= MOST_NAMED) {
            m_named += fmt::format("{} {} ({}:{})", m_count == 1 ? "" : ",", text, row, column);
        }
    }

    void addTo(std::vector<std::string>& lines, const std::string& noun, const std::string& what) const {
        if (m_count > 0) {
            lines.push_back(
                fmt::format("{} {}:{}{}", counted(m_count, noun), what, m_named, m_count > MOST_NAMED ? ", ..." : ""));
        }
    }

private:
    std::size_t m_count = 0;
    std::string m_named;
};

std::string quotedText(const String& text) { return "\"" + printable(text) + "\""; }

NoticeList listOf(const ImportReport& report, PassedOver::Kind kind) {
    NoticeList list;
    for (const PassedOver& one : report.passedOver) {
        if (one.kind == kind) {
            list.add(kind == PassedOver::Kind::UnknownType ? quotedText(one.type) : "<" + printable(one.element) + ">",
                     one.row, one.column);
        }
    }
    return list;
}

}  // namespace

std::vector<std::string> importNotices(const ImportReport& report) {
    std::vector<std::string> lines;
    listOf(report, PassedOver::Kind::UnknownType)
        .addTo(lines, "device", "of a type that is none, which no rule of a script sees");
    listOf(report, PassedOver::Kind::OtherElement).addTo(lines, "element", "much like a device, passed over");
    listOf(report, PassedOver::Kind::OutsideOfList).addTo(lines, "device", "outside of the list, passed over");
    NoticeList numbers;
    for (const ImportReport::NoNumber& one : report.noNumbers) {
        numbers.add(printable(one.key) + " " + quotedText(one.text), one.row, one.column);
    }
    numbers.addTo(lines, "measurement", "without a number, taken for 0");
    return lines;
}

}  // namespace vrx
