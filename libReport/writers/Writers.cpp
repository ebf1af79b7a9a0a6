#include "libReport/writers/Writers.h"

namespace vrx {

ReportWriters<CheckReport> checkWriters() {
    static constexpr ReportWriter<CheckReport> WRITERS[] = {{"text", checkText}, {"json", checkJson}};
    return WRITERS;
}

ReportWriters<DeviceCheckReport> deviceCheckWriters() {
    static constexpr ReportWriter<DeviceCheckReport> WRITERS[] = {{"text", deviceCheckText}, {"json", deviceCheckJson}};
    return WRITERS;
}

}  // namespace vrx
