#pragma once

#include <string>

#include "libDiagnosis/machines/UntoldChanges.h"
#include "libReport/text/TextFormat.h"

/// How reports for people tell that not everything could be compared.
namespace vrx {

/// "3 devices and 1 property are in one recording only, and the other cannot tell of them". Requires: there are some.
std::string untoldText(const UntoldChanges::Count& untold);

/// "EQUAL", "DIFFERENT", or "UNDETERMINED" of what is equal as far as it could be compared.
std::string comparedWord(bool isEqual, bool isUntold, const TextFormat& format);

}  // namespace vrx
