#pragma once

#include <optional>
#include <string>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libReport/ReportWriter.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

/// What the check of one device gave. The device is borrowed.
struct DeviceCheckReport {
    const IDeviceImp& device;
    bool passed = false;
    bool askedForNothing = false;             ///< the content has no property
    Array<TestRunEventImp> events{};          ///< every event
    std::optional<String> annotatedScript{};  ///< of the closing report, when one was asked for
};

/// text: the verdict and the properties that differ; the annotated script in place of those, when there is one.
/// json: one object.
ReportWriters<DeviceCheckReport> deviceCheckWriters();

}  // namespace vrx
