#include "libReport/html/CheckSections.h"
#include "libReport/html/HtmlPage.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

void writePlace(HtmlWriter& html, const MachinePlace& place) {
    html.begin("li", place.isEmpty ? "faulty empty" : place.fault ? "faulty" : "").attribute(HTML_ENTRY, "");
    const String& locator = place.spec.hwLocator.isEmpty() ? place.spec.osLocator : place.spec.hwLocator;
    html.element("b", "", locator.isEmpty() ? "(no place)" : locator.toUtf8());
    html.text(place.spec.type.toUtf8() + (place.isEmpty ? ": missing" : ""));
    html.element("span", "", place.spec.name.toUtf8());
    if (!place.summary.empty()) {
        html.element("span", "", place.summary);
    }
    if (place.fault) {
        html.begin("a").attribute("href", "#fault-" + std::to_string(*place.fault)).text("see fault").end();
    }
    html.end().raw("\n");
}

}  // namespace

void writeMachine(HtmlWriter& html, const CheckReport& report) {
    if (report.places.empty()) {
        return;
    }
    html.begin("section").attribute("id", "machine").attribute("aria-labelledby", "machine-title");
    html.begin("h2").attribute("id", "machine-title").text("Machine, by place").end();
    for (const PlaceGroup& group : report.places) {
        html.element("h3", "", std::string(group.title) + ", " + counted(group.places.size(), "place"));
        html.begin("ul", "places");
        for (const MachinePlace& place : group.places) {
            writePlace(html, place);
        }
        html.end();
    }
    html.end();
}

}  // namespace vrx
