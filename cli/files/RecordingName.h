#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "libCommon/text/String.h"
#include "libCommon/time/DateTime.h"

/// How recordings are called in a folder that grows: "FX-100001_20261122T133326Z.xml", and "..Z-2.xml" for the second
/// of one second. Of one machine the names sort by time.
namespace vrx::cli {

/// Of any text a word that can stand in a file name on every system, and that no path leads out of a folder with.
std::string fileWord(const String& text);

/// The word of machines that tell neither serial number nor host name. They are not one machine.
inline constexpr const char* NAMELESS = "unknown";

struct RecordingName {
    std::string machine;  ///< a file word; empty where the name is none of these
    std::string time;     ///< "20261122T133326Z"
    std::size_t number = 1;

    std::string text() const;
    auto operator<=>(const RecordingName& other) const = default;
};

RecordingName recordingName(const std::string& machine, const DateTime& time);

/// Reads a file name.
RecordingName parseRecordingName(const std::string& fileName);

/// Without the older ones of each machine, by folder; other names stay. Paths keep their order.
std::vector<std::string> newestRecordings(const std::vector<std::string>& paths);

}  // namespace vrx::cli
