#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"

namespace vrx::cli {

/// How the program ends. A status never depends on the output format and is never a count.
enum class ExitStatus : int {
    Success = 0,        ///< the check passed, the work was done
    NotPassed = 1,      ///< the check ran and did not pass
    BadInput = 2,       ///< wrong usage, or a file that cannot be read, parsed or written
    Undetermined = 3,   ///< the answer could not be had, or there was nothing to answer
    InternalError = 4,  ///< a broken contract or an unexpected exception
};

/// Ends a command: the line goes to standard error, the status becomes the program's.
class CommandFailure : public std::runtime_error {
public:
    /// Without `texts` the line itself is the only one.
    CommandFailure(ExitStatus status, const std::string& line, Array<String> texts = {})
        : std::runtime_error(line), m_status(status), m_texts(std::move(texts)) {
        if (m_texts.isEmpty()) {
            m_texts.append(String::UTF8Decode(line));
        }
    }
    ExitStatus status() const noexcept { return m_status; }

    /// What the engine or a source had to say about it, for reports that programs read.
    const Array<String>& texts() const noexcept { return m_texts; }

private:
    ExitStatus m_status;
    Array<String> m_texts;
};

}  // namespace vrx::cli
