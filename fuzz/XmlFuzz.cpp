// Any bytes either do not parse or give a document that survives being written and parsed again.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "libCommon/xml/XmlDocument.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vrx::XmlDocument document;
    if (!document.ParseUtf8({reinterpret_cast<const char*>(data), size})) {
        return 0;
    }
    const vrx::String text = document.toString();
    vrx::XmlDocument again;
    if (!again.Parse(text) || again.toString() != text) {
        std::abort();
    }
    return 0;
}
