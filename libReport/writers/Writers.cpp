#include "libReport/writers/Writers.h"

namespace vrx {

ReportWriters<CheckReport> checkWriters() {
    static constexpr ReportWriter<CheckReport> WRITERS[] = {
        {"text", checkText},      {"json", checkJson},     {"junit", checkJunit, true},     {"tap", checkTap, true},
        {"csv", checkCsv},        {"nagios", checkNagios}, {"prometheus", checkPrometheus}, {"ocp", checkOcp, true},
        {"html", checkHtml, true}};
    return WRITERS;
}

ReportWriters<DeviceCheckReport> deviceCheckWriters() {
    static constexpr ReportWriter<DeviceCheckReport> WRITERS[] = {
        {"text", deviceCheckText}, {"json", deviceCheckJson}, {"junit", deviceCheckJunit}};
    return WRITERS;
}

}  // namespace vrx
