#include "libMachine/RecordingFormat.h"

#include <algorithm>
#include <vector>

#include "libMachine/import/FormatTable.h"
#include "libMachine/import/RecordingStart.h"

namespace vrx {

RecordingFormat recognisedFormat(std::string_view bytes) {
    const RecordingStart start(bytes);
    for (const RecordingFormatRow& row : recordingFormats()) {
        if (row.recognises(start)) {
            return row.format;
        }
    }
    return RecordingFormat::Unknown;
}

std::string_view formatTitle(RecordingFormat format) noexcept {
    const RecordingFormatRow* const row = rowOf(format);
    return row == nullptr ? "unknown" : row->title;
}

std::optional<RecordingFormat> formatNamed(std::string_view name) noexcept {
    const auto formats = recordingFormats();
    const auto row = std::ranges::find(formats, name, &RecordingFormatRow::name);
    return row == formats.end() ? std::nullopt : std::optional(row->format);
}

std::vector<std::string> formatNames() {
    std::vector<RecordingFormatRow> rows(recordingFormats().begin(), recordingFormats().end());
    std::ranges::sort(rows, {}, &RecordingFormatRow::format);
    std::vector<std::string> names;
    for (const RecordingFormatRow& row : rows) {
        names.emplace_back(row.name);
    }
    return names;
}

}  // namespace vrx
