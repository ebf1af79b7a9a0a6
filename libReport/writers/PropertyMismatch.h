#pragma once

#include <vector>

#include "libCommon/text/String.h"
#include "libReport/writers/ScriptFinding.h"

namespace vrx {

/// One property that one candidate device failed, as the engine's messages on the `property` element tell it.
struct PropertyMismatch {
    const XmlElement* property;
    bool isAbsent = false;  ///< the device has no property of that key
    String hwLocator;       ///< of the candidate; unless absent
    String found;           ///< the device's value; unless absent
    String deviceType;      ///< of the candidate; only when absent
    String deviceName;      ///< of the candidate; only when absent
};

/// Splits the messages of a `property` element into mismatches, in the order of the candidates; what is none is added
/// to `rest`.
std::vector<PropertyMismatch> mismatchesOf(const ScriptFinding& finding, Array<String>& rest);

/// What a `property` element asks for, in words.
std::string expectedText(const XmlElement& property);

}  // namespace vrx
