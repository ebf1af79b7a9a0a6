#include "libReport/faults/WaivedText.h"

#include "libReport/faults/FaultJson.h"
#include "libReport/faults/FaultText.h"
#include "libReport/json/JsonWriter.h"
#include "libReport/text/Style.h"
#include "libReport/waivers/ReportWaivers.h"
#include "libReport/writers/PlacedLines.h"

namespace vrx {

namespace {

std::string section(const char* title, std::string lines, const TextFormat& format) {
    return lines.empty() ? std::string() : "\n" + styled(title, Style::Bold, format.colour) + "\n" + lines;
}

std::string listed(const std::vector<Waiver>& waivers, const TextFormat& format) {
    const std::string noFile;
    PlacedLines lines(noFile, format);
    for (const Waiver& waiver : waivers) {
        lines.wrapped(2, waiverText(waiver), Style::Caution);
    }
    return lines.take();
}

void writeWaiver(JsonWriter& json, const Waiver& waiver) {
    json.beginObject();
    json.key("id").value(waiver.id);
    json.key("reason").value(waiver.reason);
    json.key("decidedBy").value(waiver.decidedBy);
    json.key("expires").value(waiver.expires);
    json.endObject();
}

void writeWaivers(JsonWriter& json, const std::vector<Waiver>& waivers) {
    json.beginArray();
    for (const Waiver& waiver : waivers) {
        writeWaiver(json, waiver);
    }
    json.endArray();
}

}  // namespace

std::string waivedText(const CheckReport& report, const TextFormat& format) {
    const std::string noFile;
    PlacedLines lines(noFile, format);
    for (const WaivedFault& waived : report.waived) {
        lines.wrapped(2, faultText(waived.fault));
        for (const Waiver& waiver : waived.waivers) {
            lines.wrapped(4, "waived: " + waiverText(waiver), Style::Dim);
        }
    }
    return section("Waived", lines.take(), format) +
           section("Waivers that have expired", listed(report.expiredWaivers, format), format) +
           section("Waivers that cover nothing", listed(report.idleWaivers, format), format);
}

void writeWaived(JsonWriter& json, const CheckReport& report) {
    json.key("waived").beginArray();
    for (const WaivedFault& waived : report.waived) {
        json.beginObject();
        writeFaultFields(json, waived.fault, report.script);
        json.key("row").value(static_cast<std::int64_t>(waived.fault.place.row));
        json.key("column").value(static_cast<std::int64_t>(waived.fault.place.column));
        json.key("waivers");
        writeWaivers(json, waived.waivers);
        json.endObject();
    }
    json.endArray();
    json.key("expiredWaivers");
    writeWaivers(json, report.expiredWaivers);
    json.key("idleWaivers");
    writeWaivers(json, report.idleWaivers);
}

}  // namespace vrx
