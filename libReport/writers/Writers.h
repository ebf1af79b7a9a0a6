#pragma once

#include <string>

#include "libReport/CheckReport.h"
#include "libReport/DeviceCheckReport.h"

/// The formats of checks, one file each.
namespace vrx {

std::string checkText(const CheckReport& report, const TextFormat& format);
std::string checkJson(const CheckReport& report, const TextFormat& format);
std::string checkJunit(const CheckReport& report, const TextFormat& format);
std::string checkTap(const CheckReport& report, const TextFormat& format);
std::string checkHtml(const CheckReport& report, const TextFormat& format);
std::string checkCsv(const CheckReport& report, const TextFormat& format);
std::string checkNagios(const CheckReport& report, const TextFormat& format);
std::string checkPrometheus(const CheckReport& report, const TextFormat& format);
std::string checkOcp(const CheckReport& report, const TextFormat& format);

std::string deviceCheckText(const DeviceCheckReport& report, const TextFormat& format);
std::string deviceCheckJunit(const DeviceCheckReport& report, const TextFormat& format);
std::string deviceCheckJson(const DeviceCheckReport& report, const TextFormat& format);

}  // namespace vrx
