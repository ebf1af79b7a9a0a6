#pragma once

#include <utility>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// The common library's exception: an unexpected failure (not a broken contract and not a failing inventory). A run of
/// the engine guards against this type only.
///
///     try {
///         ...
///     } catch (const Exception& unexpected) {
///         std::cerr << unexpected.text().toUtf8() << '\n';
///     }
class VRX_EXPORT Exception {
public:
    explicit Exception(String text) : m_text(std::move(text)) {}
    virtual ~Exception() = default;
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;

    /// What went wrong, for a log line or a message.
    const String& text() const noexcept { return m_text; }

private:
    String m_text;
};

}  // namespace vrx
