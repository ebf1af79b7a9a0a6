#include "libMachine/import/FormatTable.h"

#include <algorithm>

#include "libMachine/import/Converters.h"

namespace vrx {

namespace {

/// Its root has any name, so any XML that no other format claims is it.
bool isSysInfo(const RecordingStart& start) { return !start.root().empty(); }

constexpr RecordingFormatRow FORMATS[] = {
    {RecordingFormat::Dmidecode, "dmidecode", "dmidecode text", isDmidecode, convertDmidecode, dmidecodeGaps},
    {RecordingFormat::HwlocXml, "hwloc-xml", "hwloc XML", isHwlocXml, convertHwlocXml, hwlocGaps},
    {RecordingFormat::Redfish, "redfish", "Redfish recording", isRedfish, convertRedfish, redfishGaps,
     convertRedfishFolder, true},
    {RecordingFormat::LshwXml, "lshw-xml", "lshw XML", isLshwXml, convertLshwXml, lshwGaps},
    {RecordingFormat::LshwJson, "lshw-json", "lshw JSON", isLshwJson, convertLshwJson, lshwGaps},
    {RecordingFormat::SysInfo, "sysinfo", "SysInfo XML", isSysInfo, nullptr, nullptr},
};

}  // namespace

std::span<const RecordingFormatRow> recordingFormats() noexcept { return FORMATS; }

const RecordingFormatRow* rowOf(RecordingFormat format) noexcept {
    const auto* const row = std::ranges::find(FORMATS, format, &RecordingFormatRow::format);
    return row == std::end(FORMATS) ? nullptr : row;
}

}  // namespace vrx
