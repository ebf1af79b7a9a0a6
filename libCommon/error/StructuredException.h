#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// A broken contract. It derives from neither `Exception` nor `std::exception` on purpose: only a program's `main` may
/// catch it.
///
///     int main() {
///         try {
///             return work();
///         } catch (const StructuredException& broken) {
///             std::cerr << broken.text().toUtf8() << '\n';
///             return 4;
///         }
///     }
class VRX_EXPORT StructuredException {
public:
    /// The code that every assertion raises.
    static constexpr std::uint32_t ASSERTION_CODE = 7;

    StructuredException(std::uint32_t code, String text) : m_code(code), m_text(std::move(text)) {}

    /// What kind of contract was broken: 7 is a failed assertion.
    std::uint32_t code() const noexcept { return m_code; }

    /// The same text that was logged: expression, file and line.
    const String& text() const noexcept { return m_text; }

private:
    std::uint32_t m_code;
    String m_text;
};

}  // namespace vrx
