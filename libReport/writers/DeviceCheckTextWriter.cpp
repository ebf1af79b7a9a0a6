#include "libCommon/text/PrintableText.h"
#include "libCommon/xml/XmlDocument.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextTable.h"
#include "libReport/writers/CheckHeadline.h"
#include "libReport/writers/FindingLines.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

/// A line for each line of the script; anything in it that a terminal would act on is escaped.
std::string indentedScript(const String& xml) {
    XmlDocument script;
    if (!script.Parse(xml)) {
        return printable(xml.view()) + "\n";
    }
    String text;
    script.GetFormattedStr(text, 0);
    std::string out;
    for (StringView rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find(u'\n'), rest.size() - 1);
        out += printable(rest.substr(0, rest[end] == u'\n' ? end : end + 1)) + "\n";
        rest.remove_prefix(end + 1);
    }
    return out;
}

}  // namespace

std::string deviceCheckText(const DeviceCheckReport& report, const TextFormat& format) {
    std::string out = verdictLine(report.verdict, headlineOf(report), format);
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"device", printable(report.device.type) + "  " + printable(report.device.name)});
    table.addRow({"guid", printable(report.guid)});
    table.write(out, format);
    for (std::size_t i = 1; i < report.doubts.size(); ++i) {
        for (const std::string& line : wrapped(doubtText(report.doubts[i]), lineWidth(format))) {
            out += styled(line, Style::Caution, format.colour) + "\n";
        }
    }
    if (report.annotatedScript) {
        out += "\n" + indentedScript(*report.annotatedScript);
    } else if (report.verdict == Verdict::Failed) {
        out += "\n" + findingLines(report.findings, report.devices, "", format).text;
    }
    return out;
}

}  // namespace vrx
