#pragma once

#include <optional>
#include <string>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libReport/CheckReport.h"
#include "libReport/ReportWriter.h"
#include "libSystemState/devices/IDeviceImp.h"

/// The check of one device alone, against the inner XML of a `device` element:
///
///     const DeviceCheckReport report = checkDevice(device, u"<property key=\"Size\" value=\"^16 GB$\"/>", false);
///     std::cout << writerNamed(deviceCheckWriters(), "text")->write(report, TextFormat());
namespace vrx {

/// What the check of one device gave.
struct DeviceCheckReport {
    /// NothingToCheck when the content has no property. Undecided when patterns were given up, or when no script can
    /// ask for the device's type. NotRun when the content does not load.
    Verdict verdict = Verdict::NotRun;
    bool isTypeUsable = true;  ///< false when no script can ask for the device's type

    Inventory::DeviceSpec device;
    String guid;
    ScriptMistakes mistakes;              ///< for which the content was refused
    Array<TestRunEventImp> events;        ///< every event
    std::vector<Doubt> doubts;            ///< about properties, where these keep the answer from being certain
    std::vector<ReportFinding> findings;  ///< in document order
    std::vector<DeviceProblem> devices;   ///< one at most
    DateTime started{};
    std::optional<String> annotatedScript;  ///< when it was asked for
};

/// Checks the device. `withScript` asks for the annotated script. With the machine that it is of, what is not known of
/// it counts.
DeviceCheckReport checkDevice(const IDeviceImp& device, const String& content, bool withScript,
                              const StateManager* machine = nullptr, const CheckBasis& basis = CheckBasis());

/// text: the verdict and the properties that differ; the annotated script in place of those, when there is one.
/// json: one object.
ReportWriters<DeviceCheckReport> deviceCheckWriters();

}  // namespace vrx
