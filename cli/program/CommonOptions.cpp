#include "cli/program/CommonOptions.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <utility>

#include "libCommon/io/FileLoader.h"
#include "libCommon/text/PrintableText.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr unsigned MEMORY_DEVICES = 1;  // the major number of /dev/null and its like

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

void writeToStandardOutput(std::string_view bytes, const Session& session) {
    std::string error;
    if (!session.console.writeOut(bytes, error)) {
        failToWrite("to standard output", error);
    }
}

/// Writing into a pipe can last for ever and leaves no temporary file.
bool isReplaced(const std::string& path) {
    std::error_code failure;
    const std::filesystem::file_status status = std::filesystem::status(path, failure);
    return !std::filesystem::exists(status) || std::filesystem::is_regular_file(status);
}

/// Replaces a file in one step. An interrupt that comes meanwhile ends the program only afterwards, so that no
/// temporary file is left behind.
void writeFile(const std::string& path, std::string_view bytes, const Session& session) {
    String error;
    const String name = String::UTF8Decode(path);
    if (ownDescriptor(name) == STDOUT_FILENO) {
        writeToStandardOutput(bytes, session);
        return;
    }
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

/// False for what is no regular file: reading and writing one of the others takes nothing away.
bool lookAt(const std::string& path, struct stat& status) {
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool lookAt(int standardStream, struct stat& status) {
    return fstat(standardStream, &status) == 0 && S_ISREG(status.st_mode);
}

void writeTo(const std::string& path, std::string_view bytes, const Session& session) {
    if (path.empty()) {
        writeToStandardOutput(bytes, session);
    } else {
        writeFile(path, bytes, session);
    }
}

}  // namespace

CLI::Option& CommonOptions::addInput(CLI::App& command, const std::string& name, std::string& path,
                                     const std::string& description) {
    m_inputs.push_back(&path);
    CLI::Option& option = *command.add_option(name, path, description);
    return name.starts_with('-') ? *option.type_name("FILE") : option;
}

CLI::Option& CommonOptions::addOutput(CLI::App& command, const std::string& name, std::string& path,
                                      const std::string& description) {
    m_outputs.push_back(&path);
    return *command.add_option(name, path, description)->type_name("FILE");
}

void CommonOptions::addState(CLI::App& command) {
    addInput(command, "--state", statePath,
             "A recorded machine (SysInfo, lshw, dmidecode, hwloc or Redfish), - for standard input; without it this "
             "machine");
}

void CommonOptions::addFormats(CLI::App& command, const std::vector<std::string>& formats) {
    m_hasFormats = true;
    std::string choices;
    for (const std::string& name : formats) {
        choices += (choices.empty() ? "" : ", ") + name;
    }
    command.add_option("--format", format, "Format of the result: " + choices + " (default text)")
        ->check(CLI::IsMember(formats).description(""))
        ->type_name("NAME");
}

void CommonOptions::addOutput(CLI::App& command) {
    addOutput(command, "-o,--output", outputPath, "File for the result, replaced in one step; else standard output");
}

void CommonOptions::addPlain(CLI::App& command, const std::string& meaning) {
    command.add_flag("--plain", isPlain, "Run the engine as the library does by default: " + meaning);
}

void CommonOptions::addLogging(CLI::App& command) {
    command
        .add_option("--log-level", logLevel,
                    "Log lines to show on standard error: debug, info, warning, error, off (default warning)")
        ->check(CLI::IsMember({"debug", "info", "warning", "error", "off"}).description(""))
        ->type_name("LEVEL");
    addOutput(command, "--log-file", logFile, "File that log lines are appended to as well");
}

// Names do not tell whether two files are one: a file has several, and links lead to it.
bool CommonOptions::isWritten(const std::string& input) const {
    struct stat read {};
    if (input.empty() || !(input == "-" ? lookAt(STDIN_FILENO, read) : lookAt(input, read))) {
        return false;
    }
    const auto isInput = [&read](const struct stat& written) {
        return read.st_dev == written.st_dev && read.st_ino == written.st_ino;
    };
    struct stat written {};
    if (outputPath.empty() && lookAt(STDOUT_FILENO, written) && isInput(written)) {
        return true;
    }
    return std::ranges::any_of(m_outputs, [&](const std::string* output) {
        return !output->empty() && lookAt(*output, written) && isInput(written);
    });
}

void CommonOptions::refuseAsOutput(const std::string& input) const {
    if (isWritten(input)) {
        throw CommandFailure(ExitStatus::BadInput,
                             inputName(input) + " would be read and overwritten; name another file for the result");
    }
}

void CommonOptions::applyLogging(Session& session) const {
    session.logLevel = levelOf(logLevel);
    if (!logFile.empty() && session.logLevel != LogPriority::Off && !Logger::logToFile(String::UTF8Decode(logFile))) {
        failToWrite(logFile, std::strerror(errno));
    }
}

bool CommonOptions::isShown(const Session& session) const {
    struct stat status {};
    return outputPath.empty() ? session.console.outFormat().isTerminal
                              : stat(outputPath.c_str(), &status) == 0 && S_ISCHR(status.st_mode) &&
                                    major(status.st_rdev) != MEMORY_DEVICES;
}

// Text reports are made fit for a terminal piece by piece; documents keep what they hold, so they are made so here.
void CommonOptions::writeResult(const Session& session, std::string_view bytes) const {
    if (isShown(session) && !(m_hasFormats && format == "text")) {
        const std::string shown = printableMarkup(bytes, format == "json" ? Markup::Json : Markup::Xml);
        writeTo(outputPath, shown, session);
    } else {
        writeTo(outputPath, bytes, session);
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
        writeFile(file.path, file.bytes, session);
    }
    return result.status;
}

void setAction(CLI::App& command, Session& session, std::shared_ptr<const CommonOptions> options,
               std::function<CommandResult()> run) {
    command.callback([&session, options = std::move(options), run = std::move(run)] {
        for (const std::string* const input : options->inputs()) {
            options->refuseAsOutput(*input);
        }
        options->applyLogging(session);
        session.action = [&session, options, run] {
            return options->finish(session, run());
        };
    });
}

}  // namespace vrx::cli
