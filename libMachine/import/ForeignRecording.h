#pragma once

#include <string>
#include <string_view>

#include "libMachine/RecordingFormat.h"
#include "libMachine/import/mending/DamageList.h"

namespace vrx {

class Recording;

/// Adds the machine of a recording that another program made to an empty recording: mends the text, converts it, and
/// notes what was damaged, serial numbers that come twice among it. False when the text holds no device.
///
/// Requires: the format is one of another program's (isForeign).
bool convertForeign(RecordingFormat format, std::string_view bytes, Recording& recording, DamageList& damage);

/// The same for a recording that is a folder of files.
///
/// Requires: the format has such recordings (RecordingFormatRow::convertFolder).
bool convertForeignFolder(RecordingFormat format, const std::string& folder, Recording& recording, DamageList& damage);

}  // namespace vrx
