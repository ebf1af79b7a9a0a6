#include "libCommon/text/PrintableText.h"
#include "libReport/parts/PartsReport.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"

namespace vrx {

namespace {

std::string blankNames(const Array<String>& names) {
    String list;
    const char16_t* separator = u"";
    for (const String& name : names) {
        list.append(separator).append(name);
        separator = u", ";
    }
    return printableValue(list);
}

}  // namespace

std::string partsText(const PartsReport& report, const TextFormat& format) {
    std::string out = printable(std::string_view(inputName(report.path))) + ": " +
                      counted(report.parts.size(), "part") + " with a description\n";
    if (!report.blankParts.isEmpty()) {
        for (const std::string& line : wrapped("blank: " + blankNames(report.blankParts), format.width)) {
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
    static constexpr ReportWriter<PartsReport> WRITERS[] = {
        {"text", partsText}, {"json", partsJson}, {"csv", partsCsv}};
    return WRITERS;
}

}  // namespace vrx
