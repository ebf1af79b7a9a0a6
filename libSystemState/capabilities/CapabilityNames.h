#pragma once

#include <vector>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// The names and aliases of the system's own device types, in table order; what a host defined is not among them. For
/// suggestions: whether a name is known is a question for CapabilityImp.
///
///     for (const StringView name : capabilityNames()) {
///         choices.push_back(toUtf8(name));
///     }
VRX_EXPORT std::vector<StringView> capabilityNames();

}  // namespace vrx
