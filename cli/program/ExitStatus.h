#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

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

/// Ends a command: the lines go to standard error, the status becomes the program's.
class CommandFailure : public std::runtime_error {
public:
    /// Without `texts` the line itself is the only one.
    CommandFailure(ExitStatus status, const std::string& line, Array<String> texts = {})
        : std::runtime_error(line), m_status(status), m_lines{line}, m_texts(std::move(texts)) {
        if (m_texts.isEmpty()) {
            m_texts.append(String::UTF8Decode(line));
        }
    }
    /// Several lines, at least one.
    CommandFailure(ExitStatus status, std::vector<std::string> lines)
        : std::runtime_error(lines.front()), m_status(status), m_lines(std::move(lines)) {}
    ExitStatus status() const noexcept { return m_status; }

    const std::vector<std::string>& lines() const noexcept { return m_lines; }

    /// What the engine or a source had to say about it, for reports that programs read.
    const Array<String>& texts() const noexcept { return m_texts; }

private:
    ExitStatus m_status;
    std::vector<std::string> m_lines;
    Array<String> m_texts;
};

}  // namespace vrx::cli
