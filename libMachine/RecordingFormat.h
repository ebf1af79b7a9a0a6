#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/Export.h"

/// The ways in which machines are recorded, told from their content.
///
///     if (isForeign(recognisedFormat(bytes))) {
///         std::cout << "made by another program: " << formatTitle(recognisedFormat(bytes)) << '\n';
///     }
///
/// MachineImport.h reads them all. How to add one: docs/convert.md.
namespace vrx {

/// In the order in which people are told of them.
enum class RecordingFormat : std::uint8_t { Unknown, SysInfo, LshwXml, LshwJson, Dmidecode, HwlocXml, Redfish };

/// Whether a format is another program's.
constexpr bool isForeign(RecordingFormat format) noexcept {
    return format != RecordingFormat::Unknown && format != RecordingFormat::SysInfo;
}

/// How much of a recording's start is enough to tell its format.
inline constexpr std::size_t RECOGNITION_SIZE = std::size_t{16} * 1024;

/// The format that a recording's content shows, whatever its name is. Looks at no more than RECOGNITION_SIZE bytes.
/// SysInfo recordings have a root of any name, so any other XML is one.
VRX_EXPORT RecordingFormat recognisedFormat(std::string_view bytes);

/// "lshw XML", as messages name it; "unknown".
VRX_EXPORT std::string_view formatTitle(RecordingFormat format) noexcept;

/// The format of a name that options take ("lshw-json"); none for other texts.
VRX_EXPORT std::optional<RecordingFormat> formatNamed(std::string_view name) noexcept;

/// All names that options take.
VRX_EXPORT std::vector<std::string> formatNames();

}  // namespace vrx
