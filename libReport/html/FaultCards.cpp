#include <fmt/format.h>

#include "libReport/faults/DifferenceText.h"
#include "libReport/faults/FaultText.h"
#include "libReport/faults/FoldedText.h"
#include "libReport/html/CheckSections.h"
#include "libReport/html/HtmlPage.h"
#include "libReport/text/DeviceSummary.h"

namespace vrx {

namespace {

constexpr std::size_t OPEN_AT_FIRST = 20;

void writeFact(HtmlWriter& html, std::string_view name, const std::string& value) {
    if (!value.empty()) {
        html.element("dt", "", name).element("dd", "", value);
    }
}

void writeFact(HtmlWriter& html, std::string_view name, const String& value) { writeFact(html, name, value.toUtf8()); }

void writeIdentity(HtmlWriter& html, std::string_view title, const DeviceIdentity& device) {
    html.element("h3", "", title).begin("dl");
    writeFact(html, "Device", deviceTitle(device.spec));
    writeFact(html, "OS locator", device.spec.osLocator);
    writeFact(html, "Manufacturer", device.manufacturer);
    writeFact(html, "Model", device.model);
    writeFact(html, "Part number", device.partNumber);
    writeFact(html, "Serial number", device.serialNumber);
    writeFact(html, "Firmware", device.firmware);
    html.end();
}

void writeWithIt(HtmlWriter& html, const Fault& fault) {
    if (fault.withIt.empty()) {
        return;
    }
    html.begin("details").element("summary", "", "With it: " + foldedTypes(fault)).begin("ul");
    for (const FoldedFault& folded : fault.withIt) {
        html.element("li", "", fault.kind == FaultKind::Extra ? deviceTitle(folded.spec) : faultTitleOf(folded.spec));
    }
    html.end().end();
}

void writeDifferences(HtmlWriter& html, const Fault& fault) {
    if (fault.differences.empty()) {
        return;
    }
    html.begin("div", "wide").begin("table").begin("thead").begin("tr");
    for (const char* const title : {"What", "Expected", "Found"}) {
        html.begin("th").attribute("scope", "col").text(title).end();
    }
    html.end().end().begin("tbody");
    for (const Difference& difference : fault.differences) {
        html.begin("tr").begin("th").attribute("scope", "row").text(subjectText(difference)).end();
        html.element("td", "", expectedText(difference)).element("td", "", foundText(difference)).end();
    }
    html.end().end().end();
}

std::string placeText(const CheckReport& report, const ElementPlace& place) {
    return fmt::format("{}:{}:{}", report.script, place.row, place.column);
}

void writeAsked(HtmlWriter& html, const CheckReport& report, const Fault& fault) {
    html.element("h3", "", "Asked for").begin("dl");
    writeFact(html, "Device", deviceTitle(fault.asked));
    for (const Inventory::DeviceSpec& alternative : fault.alternatives) {
        writeFact(html, "or", deviceTitle(alternative));
    }
    if (fault.part) {
        writeFact(html, "Part", fault.part->name);
        writeFact(html, "Part id", fault.part->id);
        writeFact(html, "Description", fault.part->description);
    }
    if (fault.candidates > 0) {
        writeFact(html, "Candidates", std::to_string(fault.candidates));
    }
    if (fault.taken) {
        writeFact(html, "Taken",
                  deviceTitle(fault.taken->device) + " serves " + placeText(report, fault.taken->holder));
    }
    if (const std::string shortage = shortageText(fault); !shortage.empty()) {
        writeFact(html, "Compete", shortage);
    }
    html.begin("dt").text("Script").end().begin("dd").element("code", "", placeText(report, fault.place)).end();
    html.end();
}

}  // namespace

void writeFaults(HtmlWriter& html, const CheckReport& report) {
    html.begin("section").attribute("id", "faults").attribute("aria-labelledby", "faults-title");
    html.begin("h2")
        .attribute("id", "faults-title")
        .text("Faults ")
        .element("span", "badge", std::to_string(report.faults.size()));
    html.end().raw("\n");
    if (report.faults.empty()) {
        html.element("p", "", "None.");
    }
    for (std::size_t i = 0; i < report.faults.size(); ++i) {
        const Fault& fault = report.faults[i];
        const bool isDoubt = fault.kind == FaultKind::Undetermined;
        html.begin("details", isDoubt ? "card doubt" : "card").attribute("id", "fault-" + std::to_string(i));
        html.attribute(HTML_ENTRY, "");
        if (i < OPEN_AT_FIRST) {
            html.attribute("open", "");
        }
        html.begin("summary").element("span", isDoubt ? "badge doubt" : "badge bad", nameOf(fault.kind)).text(" ");
        html.text(faultText(fault)).end().begin("div");
        writeDifferences(html, fault);
        writeAsked(html, report, fault);
        writeWithIt(html, fault);
        if (fault.device) {
            writeIdentity(html, "Found", *fault.device);
        }
        if (fault.other) {
            writeIdentity(html, "And", *fault.other);
        }
        html.end().end().raw("\n");
    }
    html.end();
}

}  // namespace vrx
