#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vrx {

/// How a machine can be recorded.
enum class RecordingFormat : std::uint8_t { Unknown, SysInfo, LshwXml, LshwJson, Dmidecode, HwlocXml };

/// Whether a format is another program's.
constexpr bool isForeign(RecordingFormat format) noexcept {
    return format != RecordingFormat::Unknown && format != RecordingFormat::SysInfo;
}

/// How much of a recording's start is enough to tell its format.
inline constexpr std::size_t RECOGNITION_SIZE = std::size_t{16} * 1024;

/// The format that a recording's content shows, whatever its name is. Looks at no more than RECOGNITION_SIZE bytes.
/// SysInfo recordings have a root of any name, so any other XML is one.
RecordingFormat recognisedFormat(std::string_view bytes);

/// "lshw XML", as messages name it.
std::string_view formatTitle(RecordingFormat format) noexcept;

/// The format of a name that options take ("lshw-json"); none for other texts.
std::optional<RecordingFormat> formatNamed(std::string_view name) noexcept;

/// All names that options take, with ", " between them.
std::string_view formatNames() noexcept;

}  // namespace vrx
