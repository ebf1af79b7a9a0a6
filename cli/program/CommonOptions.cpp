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
#include <iterator>
#include <optional>
#include <utility>

#include "cli/help/CommandTable.h"
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

/// The language of a format that keeps what it holds; none for formats that are printable as they are.
std::optional<Markup> markupOf(const std::string& format) {
    if (format == "json" || format == "sarif" || format == "ocp") {
        return Markup::Json;
    }
    return format == "xml" ? std::optional(Markup::Xml) : std::nullopt;
}

void writeTo(const std::string& path, std::string_view bytes, const Session& session) {
    if (path.empty() || path == "-") {
        writeToStandardOutput(bytes, session);
    } else {
        writeFile(path, bytes, session);
    }
}

/// Standard output comes last: who reads it does not get an answer that a failure then takes back.
void writeFiles(const Session& session, const std::vector<OutputFile>& files) {
    for (const bool isStandardOutput : {false, true}) {
        for (const OutputFile& file : files) {
            if ((file.path == "-") == isStandardOutput) {
                writeTo(file.path, file.bytes, session);
            }
        }
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
             "A recorded machine: SysInfo, lshw, dmidecode, hwloc or Redfish, - for standard input; without it this "
             "machine");
}

void CommonOptions::addFormatOption(CLI::App& command) {
    m_formatOption =
        &allowOnly(*command.add_option("--format", format, "Format of the result (default text)"), m_formats);
}

void CommonOptions::addFormat(CLI::App& command, const std::vector<std::string>& names) {
    m_formats = names;
    addFormatOption(command);
}

void CommonOptions::addShortOutput(CLI::App& command, const std::string& name, const std::string& description) {
    const auto take = [this, name](const std::string& path) {
        m_extraResults.push_back({name, path});
    };
    command.add_option_function<std::string>("--" + name, take, description)->type_name("FILE");
}

void CommonOptions::addOutput(CLI::App& command) {
    addOutput(command, "-o,--output", outputPath, "File for the result, replaced in one step; else standard output");
}

void CommonOptions::addOutputs(CLI::App& command) {
    addOutput(command, "-o", outputPath, "File for the result, replaced in one step; else standard output");
    const auto take = [this](const std::string& text) {
        ExtraResult extra;
        const std::string problem = readExtraResult(text, m_formats, extra);
        if (!problem.empty()) {
            throw CLI::ValidationError("--output", problem);
        }
        m_extraResults.push_back(std::move(extra));
    };
    command
        .add_option_function<std::vector<std::string>>(
            "--output", [take](const std::vector<std::string>& texts) { std::ranges::for_each(texts, take); },
            "One more result, - for standard output; any number of times")
        ->allow_extra_args(false)
        ->type_name("FORMAT:FILE");
}

void CommonOptions::addPlain(CLI::App& command, const std::string& meaning) {
    command.add_flag("--plain", isPlain, "Run the engine as the library does by default: " + meaning);
}

void CommonOptions::addLogging(CLI::App& command) {
    allowOnly(*command.add_option("--log-level", logLevel, "Log lines to show on standard error (default warning)"),
              {"debug", "info", "warning", "error", "off"});
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
    return std::ranges::any_of(outputPaths(), [&](const std::string& output) {
        return (output == "-" ? lookAt(STDOUT_FILENO, written) : lookAt(output, written)) && isInput(written);
    });
}

/// Of everything that is written, "-" for standard output.
std::vector<std::string> CommonOptions::outputPaths() const {
    std::vector<std::string> paths;
    if (hasMainResult() && outputPath.empty()) {
        paths.emplace_back("-");
    }
    for (const std::string* const output : m_outputs) {
        if (!output->empty() && (*output != "-" || output == &outputPath)) {
            paths.push_back(*output);
        }
    }
    for (const ExtraResult& extra : m_extraResults) {
        paths.push_back(extra.path);
    }
    return paths;
}

bool CommonOptions::hasMainResult() const {
    const bool isAskedFor = !outputPath.empty() || m_formatOption == nullptr || m_formatOption->count() > 0;
    return isAskedFor ||
           std::ranges::none_of(m_extraResults, [](const ExtraResult& extra) { return extra.path == "-"; });
}

std::vector<std::string> CommonOptions::writtenFormats() const {
    std::vector<std::string> formats;
    if (hasMainResult()) {
        formats.push_back(format);
    }
    for (const ExtraResult& extra : m_extraResults) {
        formats.push_back(extra.format);
    }
    return formats;
}

bool CommonOptions::isForMonitoring() const { return std::ranges::count(writtenFormats(), "nagios") > 0; }

void CommonOptions::refuseClashes() const {
    const std::vector<std::string> paths = outputPaths();
    for (auto one = paths.begin(); one != paths.end(); ++one) {
        const auto isSame = [one](const std::string& other) {
            return *one == "-" || other == "-" ? *one == other : areOneFile(*one, other);
        };
        if (std::any_of(std::next(one), paths.end(), isSame)) {
            throw CommandFailure(ExitStatus::BadInput, (*one == "-" ? "standard output" : *one) +
                                                           " would be written twice; name another file for one of the "
                                                           "results");
        }
    }
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
    return outputPath.empty() || outputPath == "-"
               ? session.console.outFormat().isTerminal
               : stat(outputPath.c_str(), &status) == 0 && S_ISCHR(status.st_mode) &&
                     major(status.st_rdev) != MEMORY_DEVICES;
}

// Text reports are made fit for a terminal piece by piece; documents keep what they hold, so they are made so here.
void CommonOptions::writeResult(const Session& session, std::string_view bytes) const {
    const std::optional<Markup> markup = m_formats.empty() ? Markup::Xml : markupOf(format);
    if (markup && isShown(session)) {
        writeTo(outputPath, printableMarkup(bytes, *markup), session);
    } else {
        writeTo(outputPath, bytes, session);
    }
}

TextFormat CommonOptions::textFormat(const Session& session) const {
    TextFormat layout = outputPath.empty() || outputPath == "-" ? session.console.outFormat() : TextFormat{};
    layout.isStable = isStable;
    return layout;
}

ExitStatus CommonOptions::finish(const Session& session, const CommandResult& result) const {
    if (isForMonitoring()) {
        writeFiles(session, result.files);
    }
    if (result.text) {
        writeResult(session, *result.text);
    }
    if (!result.note.empty()) {
        session.say(result.note);
    }
    for (const std::string& problem : result.problems) {
        session.say(problem);
    }
    if (!isForMonitoring()) {
        writeFiles(session, result.files);
    }
    return result.status;
}

void setAction(CLI::App& command, Session& session, std::shared_ptr<const CommonOptions> options,
               std::function<CommandResult()> run) {
    command.callback([&session, options = std::move(options), run = std::move(run)] {
        for (const std::string* const input : options->inputs()) {
            options->refuseAsOutput(*input);
        }
        options->refuseClashes();
        options->applyLogging(session);
        session.action = [&session, options, run] {
            return options->finish(session, run());
        };
    });
}

}  // namespace vrx::cli
