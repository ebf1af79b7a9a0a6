#pragma once

#include <string>
#include <vector>

#include "libReport/ReportWriter.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// A machine, or some of its devices. Devices are borrowed.
///
///     ShowReport report{machine, "web7", {machine.rootDevice().get()}};
///     report.hasProperties = true;
///     std::cout << showText(report, TextFormat());
struct ShowReport {
    const StateManager& machine;
    std::string machineName;
    std::vector<const IDeviceImp*> devices;  ///< some or all of the machine's, in its order
    bool isChosen = false;                   ///< somebody chose these devices
    bool hasProperties = false;              ///< text shows the properties of every device as well
};

/// text: the devices as a tree with what matters first, or with `hasProperties` a block of everything for each.
/// json: one object with all of them and their properties. xml: a recording of the machine; when devices were chosen,
/// of these alone, the first as its root.
ReportWriters<ShowReport> showWriters();

std::string showText(const ShowReport& report, const TextFormat& format);
std::string showJson(const ShowReport& report, const TextFormat& format);
std::string showXml(const ShowReport& report, const TextFormat& format);

}  // namespace vrx
