#pragma once

#include <string>

#include "libReport/CheckReport.h"
#include "libReport/text/TextFormat.h"

namespace vrx {

class JsonWriter;

/// The sections of the text report about waived faults, waivers that have expired and waivers that cover nothing; empty
/// where there are none.
std::string waivedText(const CheckReport& report, const TextFormat& format);

/// The members `waived`, `expiredWaivers` and `idleWaivers` of a check's object.
void writeWaived(JsonWriter& json, const CheckReport& report);

}  // namespace vrx
