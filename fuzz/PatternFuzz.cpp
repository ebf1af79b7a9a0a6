// The bytes up to the first line end are a pattern, the rest is the value: matching ends, whatever they are.

#include <cstdint>
#include <string_view>

#include "libCommon/text/String.h"
#include "libInventory/Inventory.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t end = bytes.find('\n');
    const vrx::String pattern = vrx::String::UTF8Decode(bytes.substr(0, end));
    const vrx::String value = vrx::String::UTF8Decode(end == std::string_view::npos ? "" : bytes.substr(end + 1));
    vrx::Inventory::matchString(pattern, value);
    return 0;
}
