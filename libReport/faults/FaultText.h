#pragma once

#include <string>

#include "libDiagnosis/Fault.h"

namespace vrx {

/// What is wrong, in one line of printable text, the place in front: `slot:2: SolidStateDrive is 1.92 TB, expected
/// 3.8..3.9 TB (or an NvmeDrive)`. Every format of a check takes its words from here.
std::string faultText(const Fault& fault);

/// The device or what is asked for: type, name in quotes, place.
std::string faultTitle(const Fault& fault);

/// What is asked for; its name is a pattern.
std::string faultTitleOf(const Inventory::DeviceSpec& asked);

/// What is wrong in a few words, for who is told the particulars besides: `slot:2  SolidStateDrive "S" differs`.
std::string faultHeading(const Fault& fault);

/// "3 elements ask for 2 devices"; empty when that says no more than how many of its kind are there.
std::string shortageText(const Fault& fault);

/// By what somebody orders or finds what the element asks for: part number, else model; empty when it says neither.
std::string askedPartNumber(const Fault& fault);

}  // namespace vrx
