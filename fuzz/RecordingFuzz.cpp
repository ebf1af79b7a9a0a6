// Any bytes as a recording of each of the other programs. The first byte chooses the format.

#include <array>
#include <cstdint>
#include <string_view>

#include "libMachine/import/ForeignRecording.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/StateManager.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using vrx::RecordingFormat;
    static constexpr std::array FORMATS = {RecordingFormat::LshwXml, RecordingFormat::LshwJson,
                                           RecordingFormat::Dmidecode, RecordingFormat::HwlocXml,
                                           RecordingFormat::Redfish};
    if (size == 0) {
        return 0;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    vrx::Recording recording;
    vrx::DamageList damage;
    if (vrx::convertForeign(FORMATS[data[0] % FORMATS.size()], bytes, recording, damage)) {
        vrx::StateManager store;
        recording.storeIn(store);
    }
    return 0;
}
