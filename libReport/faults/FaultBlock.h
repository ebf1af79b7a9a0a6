#pragma once

#include <string>

#include "libDiagnosis/Fault.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

/// One fault for people: the device and its place, what is expected and what was found, the part to fetch, and last the
/// place in the script, where an editor can jump to. `file` is the script's path.
std::string faultBlock(const Fault& fault, const std::string& file, const TextFormat& format);

/// What to ask a store for who is to replace or to add the part: part number or model, else the type, then manufacturer
/// and what it is like. Empty where the script
/// says no more than the type, or where nobody can fetch one.
std::string partText(const Fault& fault);

/// What is known of a device beside type, name and place: "Example Memory EM32G-4800R, serial number 3A9C3501".
std::string identityText(const DeviceIdentity& device);

}  // namespace vrx
