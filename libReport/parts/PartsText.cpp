#include "libCommon/text/PrintableText.h"
#include "libReport/parts/PartsReport.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"

namespace vrx {

namespace {

/// The names in the engine's sentence about blank parts; the sentence itself when it reads otherwise.
std::string blankNames(const String& error) {
    constexpr StringView BEFORE = u"Blank parts: ";
    constexpr StringView AFTER = u" found.  Blank parts are not allowed";
    const StringView text = error;
    const std::size_t end = text.rfind(AFTER);
    if (!text.starts_with(BEFORE) || end == StringView::npos || end < BEFORE.size()) {
        return printable(text);
    }
    return printableValue(text.substr(BEFORE.size(), end - BEFORE.size()));
}

}  // namespace

std::string partsText(const PartsReport& report, const TextFormat& format) {
    std::string out = printable(std::string_view(inputName(report.path))) + ": " +
                      counted(report.parts.size(), "part") + " with a description\n";
    if (report.result == Inventory::PartsBlank) {
        for (const std::string& line : wrapped("blank: " + blankNames(report.error), format.width)) {
            out += styled(line, Style::Bad, format.colour) + "\n";
        }
    }
    if (!report.parts.isEmpty()) {
        out += "\n";
        TextTable table(2, {Style::Plain, Style::Plain, Style::Plain});
        table.setHeader({"name", "id", "description"});
        for (const Inventory::PartSpec& part : report.parts) {
            table.addRow({orDash(part.name), orDash(part.id), orDash(part.description)});
        }
        table.write(out, format);
    }
    return out;
}

ReportWriters<PartsReport> partsWriters() {
    static constexpr ReportWriter<PartsReport> WRITERS[] = {{"text", partsText}, {"json", partsJson}};
    return WRITERS;
}

}  // namespace vrx
