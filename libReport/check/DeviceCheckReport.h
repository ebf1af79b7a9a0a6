#pragma once

#include <optional>
#include <string>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libReport/text/TextFormat.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

/// What the check of one device gave.
struct DeviceCheckOutcome {
    bool passed = false;
    bool askedForNothing = false;           ///< the content has no property
    Array<TestRunEventImp> events;          ///< every event
    std::optional<String> annotatedScript;  ///< of the closing report, when one was asked for
};

std::string deviceCheckJson(const DeviceCheckOutcome& outcome);

/// The verdict and the properties that differ; the annotated script in place of those, when there is one.
std::string deviceCheckText(const DeviceCheckOutcome& outcome, const IDeviceImp& device, const TextFormat& format);

}  // namespace vrx
