#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/program/CommandResult.h"
#include "cli/program/ExtraResult.h"
#include "cli/program/Session.h"
#include "libReport/ReportWriter.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace vrx::cli {

/// Options that several commands have. A command adds those that it has and keeps the values as long as it lives.
struct CommonOptions {
    std::string statePath;  ///< a recording, "-" for standard input, empty for the machine that the program runs on
    std::string format = "text";
    std::string outputPath;  ///< empty for standard output
    std::string logLevel = "warning";
    std::string logFile;
    bool isStable = false;  ///< text results say nothing that changes from run to run
    bool isPlain = false;   ///< the engine runs as the library does by default, without what makes the program safer

    /// Adds an option or positional for a file that the command reads, "-" for standard input. `path` is kept.
    CLI::Option& addInput(CLI::App& command, const std::string& name, std::string& path,
                          const std::string& description);

    /// The same for a file that it writes.
    CLI::Option& addOutput(CLI::App& command, const std::string& name, std::string& path,
                           const std::string& description);

    void addState(CLI::App& command);

    /// The formats are those that the reports can be written in; a command that makes several kinds has those of all.
    template <typename... Report>
    void addFormat(CLI::App& command, ReportWriters<Report>... writers) {
        (takeFormats(writers), ...);
        addFormatOption(command);
    }
    /// The same for results that no such table writes; the first is what people get who ask for none.
    void addFormat(CLI::App& command, const std::vector<std::string>& names);
    void addOutput(CLI::App& command);

    /// `--NAME FILE`, which is short for `--output NAME:FILE`. Requires: `addFormat` came before.
    void addShortOutput(CLI::App& command, const std::string& name, const std::string& description);

    /// `-o FILE`, and `--output FORMAT:FILE` any number of times. Requires: `addFormat` came before.
    void addOutputs(CLI::App& command);

    /// `--plain`; `meaning` says what it does in this command.
    void addPlain(CLI::App& command, const std::string& meaning);

    /// Every command has these.
    void addLogging(CLI::App& command);

    /// Whether the result that `--format` and `-o` speak of is written. It is left out when nobody spoke of it and
    /// something else goes to standard output.
    bool hasMainResult() const;

    /// Every format that a result is written in.
    std::vector<std::string> writtenFormats() const;

    /// The exit status is for a monitoring system, which has its own meaning for each.
    bool isForMonitoring() const;

    /// Adds the report to the result, in every form that was asked for.
    template <typename Report>
    void addWritten(const Report& report, ReportWriters<Report> writers, const Session& session,
                    CommandResult& result) const {
        if (hasMainResult()) {
            result.text = written(report, writers, session);
        }
        for (const ExtraResult& extra : m_extraResults) {
            TextFormat layout = extra.path == "-" ? session.console.outFormat() : TextFormat{};
            layout.isStable = isStable;
            result.files.push_back({extra.path, writerNamed(writers, extra.format)->write(report, layout)});
        }
    }

    const std::vector<ExtraResult>& extraResults() const noexcept { return m_extraResults; }

    /// The report in the format that was asked for, which must be one of them.
    template <typename Report>
    std::string written(const Report& report, ReportWriters<Report> writers, const Session& session) const {
        return writerNamed(writers, format)->write(report, textFormat(session));
    }

    /// How text results are laid out: plain in a file, whatever standard output is.
    TextFormat textFormat(const Session& session) const;

    const std::vector<const std::string*>& inputs() const noexcept { return m_inputs; }

    /// Throws a CommandFailure when a file that the command reads is one that it writes, under whatever name: nobody
    /// means to lose a golden script for a report.
    void refuseAsOutput(const std::string& input) const;

    /// Throws a CommandFailure when two results, or a result and the log, would go to one file or to standard output.
    void refuseClashes() const;

    /// Opens the log file and tells the session the level.
    void applyLogging(Session& session) const;

    /// Does what every command does at its end: writes the result to `outputPath`, in one step, or to standard output,
    /// says the note, writes the other files. Returns the status.
    ExitStatus finish(const Session& session, const CommandResult& result) const;

private:
    template <typename Report>
    void takeFormats(ReportWriters<Report> writers) {
        for (const ReportWriter<Report>& writer : writers) {
            if (std::ranges::count(m_formats, writer.name) == 0) {
                m_formats.emplace_back(writer.name);
            }
        }
    }
    void addFormatOption(CLI::App& command);
    std::vector<std::string> outputPaths() const;
    bool isWritten(const std::string& input) const;
    bool isShown(const Session& session) const;
    void writeResult(const Session& session, std::string_view bytes) const;

    std::vector<std::string> m_formats;  ///< without any the result is XML
    std::vector<ExtraResult> m_extraResults;
    const CLI::Option* m_formatOption = nullptr;
    std::vector<const std::string*> m_inputs;
    std::vector<const std::string*> m_outputs;
};

/// Makes `run` what the session does when the command line names the command.
void setAction(CLI::App& command, Session& session, std::shared_ptr<const CommonOptions> options,
               std::function<CommandResult()> run);

}  // namespace vrx::cli
