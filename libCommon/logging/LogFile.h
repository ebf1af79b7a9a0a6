#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// Why lines are missing in a file of `Logger::logToFile`: the reason of the first that could not be written; empty
/// while every line was.
VRX_EXPORT String logFileError();

}  // namespace vrx
