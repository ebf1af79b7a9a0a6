#pragma once

#include <span>
#include <string>
#include <string_view>

#include "libMachine/RecordingFormat.h"
#include "libMachine/import/FormatGaps.h"

namespace vrx {

class DamageList;
class Recording;
class RecordingStart;

/// All that is to know of one way of recording a machine.
struct RecordingFormatRow {
    RecordingFormat format;
    std::string_view name;   ///< that options take
    std::string_view title;  ///< that messages use
    bool (*recognises)(const RecordingStart& start);

    /// Null for SysInfo XML, which the engine reads (see Converters.h).
    void (*convert)(std::string_view text, Recording& recording, DamageList& damage);

    /// What its recordings may lack; null for SysInfo XML, which says so itself.
    std::span<const FormatGap> (*gaps)() noexcept;

    /// Null where a recording is one file.
    void (*convertFolder)(const std::string& folder, Recording& recording, DamageList& damage) = nullptr;

    /// Whether `convert` takes the bytes as they are, and not a mended text.
    bool mendsItself = false;
};

/// The formats in the order in which they are recognised: the first that fits counts.
std::span<const RecordingFormatRow> recordingFormats() noexcept;

/// Null for an unknown format.
const RecordingFormatRow* rowOf(RecordingFormat format) noexcept;

}  // namespace vrx
