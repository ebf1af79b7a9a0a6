#include "libCommon/text/PrintableText.h"
#include "libCommon/xml/XmlDocument.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextTable.h"
#include "libReport/writers/FindingText.h"
#include "libReport/writers/Writers.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/results/TipImp.h"

namespace vrx {

namespace {

/// The script with its findings, of the event that a failed run raises; empty when there is none.
String failedScript(const Array<TestRunEventImp>& events) {
    for (const TestRunEventImp& event : events) {
        if (!event.tips().isEmpty()) {
            return event.tips()[0]->toString(0, false);
        }
    }
    return String();
}

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
    const IDeviceImp& device = report.device;
    std::string out =
        report.askedForNothing
            ? styled("NOTHING CHECKED", Style::Caution, format.colour) + "  the content asks for no property\n"
        : report.passed ? styled("PASSED", Style::Good, format.colour) + "  the device meets the content\n"
                        : styled("FAILED", Style::Bad, format.colour) + "  the device does not meet the content\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"device", printable(device.type().toString().view()) + "  " + printable(device.name().view())});
    table.addRow({"guid", printable(device.guid().view())});
    table.write(out, format);
    if (report.annotatedScript) {
        out += "\n" + indentedScript(*report.annotatedScript);
        return out;
    }
    XmlDocument script;
    if (!report.passed && script.Parse(failedScript(report.events))) {
        out += "\n" + findingText(findingsOf(script), "", nullptr, format).text;
    }
    return out;
}

}  // namespace vrx
