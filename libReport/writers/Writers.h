#pragma once

#include <string>

#include "libReport/CheckReport.h"
#include "libReport/DeviceCheckReport.h"

/// The formats of checks, one file each.
namespace vrx {

std::string checkText(const CheckReport& report, const TextFormat& format);
std::string checkJson(const CheckReport& report, const TextFormat& format);

std::string deviceCheckText(const DeviceCheckReport& report, const TextFormat& format);
std::string deviceCheckJson(const DeviceCheckReport& report, const TextFormat& format);

}  // namespace vrx
