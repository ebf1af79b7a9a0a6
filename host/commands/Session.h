#pragma once

#include <functional>
#include <string>

#include "host/commands/ExitStatus.h"
#include "host/terminal/Console.h"
#include "host/terminal/ErrorStreamLog.h"

namespace vrx::host {

/// One run of the program: what its commands share.
struct Session {
    explicit Session(Console& programConsole) : console(programConsole) {}

    Console& console;
    LogPriority logLevel = LogPriority::Warning;
    ErrorStreamLog* log = nullptr;  ///< set before the command runs

    /// What the command line asks for; set by the command that it names.
    std::function<ExitStatus()> action;

    /// One line on standard error, in the name of the program; line ends inside it are escaped.
    void say(const std::string& line) const;
};

}  // namespace vrx::host
