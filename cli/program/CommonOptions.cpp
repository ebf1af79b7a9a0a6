#include "cli/program/CommonOptions.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <utility>

#include "libCommon/io/FileLoader.h"

namespace vrx::cli {

namespace {

LogPriority levelOf(const std::string& name) {
    static const std::pair<const char*, LogPriority> LEVELS[] = {{"debug", LogPriority::Debug},
                                                                 {"info", LogPriority::Info},
                                                                 {"warning", LogPriority::Warning},
                                                                 {"error", LogPriority::Error}};
    for (const auto& [known, level] : LEVELS) {
        if (name == known) {
            return level;
        }
    }
    return LogPriority::Off;
}

/// Holds interrupts back while it lives.
class HeldSignals {
public:
    HeldSignals() {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
            sigaddset(&signals, signal);
        }
        pthread_sigmask(SIG_BLOCK, &signals, &m_before);
    }
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

private:
    sigset_t m_before;
};

[[noreturn]] void failToWrite(const std::string& what, const std::string& reason) {
    throw CommandFailure(ExitStatus::BadInput, "cannot write " + what + ": " + reason);
}

/// Writing into a pipe can last for ever and leaves no temporary file.
bool isReplaced(const std::string& path) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}

/// Replaces a file in one step. An interrupt that comes meanwhile ends the program only afterwards, so that no
/// temporary file is left behind.
void writeFile(const std::string& path, std::string_view bytes) {
    String error;
    const String name = String::UTF8Decode(path);
    bool isWritten = false;
    if (isReplaced(path)) {
        const HeldSignals held;
        isWritten = replaceFile(name, bytes, error);
    } else {
        isWritten = replaceFile(name, bytes, error);
    }
    if (!isWritten) {
        failToWrite(path, error.toUtf8());
    }
}

}  // namespace

void CommonOptions::addState(CLI::App& command) {
    command
        .add_option("--state", statePath,
                    "A recorded machine (SysInfo, lshw, dmidecode, hwloc or Redfish), - for standard input; without it "
                    "this machine")
        ->type_name("FILE");
}

void CommonOptions::addFormats(CLI::App& command, const std::vector<std::string>& formats) {
    std::string choices;
    for (const std::string& name : formats) {
        choices += (choices.empty() ? "" : ", ") + name;
    }
    command.add_option("--format", format, "Format of the result: " + choices + " (default text)")
        ->check(CLI::IsMember(formats).description(""))
        ->type_name("NAME");
}

void CommonOptions::addOutput(CLI::App& command) {
    command.add_option("-o,--output", outputPath, "File for the result, replaced in one step; else standard output")
        ->type_name("FILE");
}

void CommonOptions::addPlain(CLI::App& command) {
    command.add_flag("--plain", isPlain, "The engine's own answer, whatever is not known or cannot be sure");
}

void CommonOptions::addLogging(CLI::App& command) {
    command
        .add_option("--log-level", logLevel,
                    "Log lines to show on standard error: debug, info, warning, error, off (default warning)")
        ->check(CLI::IsMember({"debug", "info", "warning", "error", "off"}).description(""))
        ->type_name("LEVEL");
    command.add_option("--log-file", logFile, "File that log lines are appended to as well")->type_name("FILE");
}

void CommonOptions::applyLogging(Session& session) const {
    session.logLevel = levelOf(logLevel);
    if (!logFile.empty() && session.logLevel != LogPriority::Off && !Logger::logToFile(String::UTF8Decode(logFile))) {
        failToWrite(logFile, std::strerror(errno));
    }
}

void CommonOptions::writeResult(const Session& session, std::string_view bytes) const {
    if (!outputPath.empty()) {
        writeFile(outputPath, bytes);
        return;
    }
    std::string error;
    if (!session.console.writeOut(bytes, error)) {
        failToWrite("to standard output", error);
    }
}

TextFormat CommonOptions::textFormat(const Session& session) const {
    return outputPath.empty() ? session.console.outFormat() : TextFormat{};
}

ExitStatus CommonOptions::finish(const Session& session, const CommandResult& result) const {
    if (result.text) {
        writeResult(session, *result.text);
    }
    if (!result.note.empty()) {
        session.say(result.note);
    }
    for (const std::string& problem : result.problems) {
        session.say(problem);
    }
    for (const OutputFile& file : result.files) {
        writeFile(file.path, file.bytes);
    }
    return result.status;
}

void setAction(CLI::App& command, Session& session, std::shared_ptr<const CommonOptions> options,
               std::function<CommandResult()> run) {
    command.callback([&session, options = std::move(options), run = std::move(run)] {
        options->applyLogging(session);
        session.action = [&session, options, run] {
            return options->finish(session, run());
        };
    });
}

}  // namespace vrx::cli
