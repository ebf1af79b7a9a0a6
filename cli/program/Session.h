#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/program/ExitStatus.h"
#include "cli/terminal/Console.h"
#include "cli/terminal/ErrorStreamLog.h"

namespace vrx::cli {

/// One run of the program: what its commands share.
struct Session {
    explicit Session(Console& programConsole) : console(programConsole) {}

    Console& console;
    LogPriority logLevel = LogPriority::Warning;
    ErrorStreamLog* log = nullptr;  ///< set before the command runs

    /// What the command line asks for; set by the command that it names.
    std::function<ExitStatus()> action;

    /// Makes an object that lives as long as the session. The program's own session is never destroyed: a process that
    /// ends need not take a machine of a million properties apart.
    template <typename T, typename... Arguments>
    T& make(Arguments&&... arguments) {
        const auto object = std::make_shared<T>(std::forward<Arguments>(arguments)...);
        m_kept.push_back(object);
        return *object;
    }

    /// One line on standard error, in the name of the program; line ends inside it are escaped.
    void say(const std::string& line) const;

private:
    std::vector<std::shared_ptr<void>> m_kept;
};

}  // namespace vrx::cli
