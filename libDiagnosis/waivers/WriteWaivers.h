#pragma once

#include <vector>

#include "libDiagnosis/waivers/Waiver.h"

namespace vrx {

/// A file of waivers, as `readWaivers` takes it, indented for people.
String waiversXml(const std::vector<Waiver>& waivers);

}  // namespace vrx
