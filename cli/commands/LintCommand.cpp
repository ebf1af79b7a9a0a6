#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/input/MachineSource.h"
#include "cli/program/CommonOptions.h"
#include "cli/terminal/StageProgress.h"
#include "libLint/Lint.h"
#include "libReport/lint/LintReport.h"

namespace vrx::cli {

namespace {

constexpr const char* LINT_FOOTER =
    "One line for each finding: file:row:column: severity: what to do [rule]. The rules\n"
    "are explained in docs/lint-rules.md.\n"
    "Exit status: 0 neither errors nor warnings (notes are fine); 1 there are some; 2 the\n"
    "file cannot be read or parsed, or is neither; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory lint golden.xml\n"
    "  vrx-inventory lint golden.xml --state machine.xml\n"
    "  vrx-inventory lint parts.xml --format json\n"
    "  vrx-inventory generate --state machine.xml | vrx-inventory lint -";

struct LintOptions : CommonOptions {
    std::string path;
};

[[noreturn]] void refuse(const std::string& line) { throw CommandFailure(ExitStatus::BadInput, line); }

void look(Lint& lint, const std::string& path, const Session& session) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        refuse(fileProblem(path, reason, FileKind::ScriptOrPartsList));
    }
    const StageProgress progress(session.console, "looking through", path);
    switch (lint.run(bytes)) {
        case Lint::Result::NotXml:
        case Lint::Result::Neither: refuse(xmlProblem(path, bytes, lint.document(), FileKind::ScriptOrPartsList));
        case Lint::Result::NotReadable:
        case Lint::Result::Done: break;
    }
}

CommandResult lintFile(const LintOptions& options, Session& session) {
    Lint lint;
    if (!options.statePath.empty()) {
        if (options.path == "-" && options.statePath == "-") {
            refuse("the script and the machine cannot both come from standard input");
        }
        StateManager& machine = session.make<StateManager>();
        loadMachine(options.statePath, machine, session);
        lint.setMachine(machine);
    }
    look(lint, options.path, session);
    const LintReport report{options.path, lint.findings(), session.console.time()};
    const bool isClean = report.findings.count(Severity::Error) + report.findings.count(Severity::Warning) == 0;
    return {isClean ? ExitStatus::Success : ExitStatus::NotPassed, options.written(report, lintWriters(), session)};
}

}  // namespace

void addLintCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<LintOptions>();
    CLI::App& command = *parent.add_subcommand("lint", "Find mistakes in an inventory script or a parts list");
    options->addInput(command, "FILE", options->path, "The script or parts list, - for standard input").required();
    options->addInput(command, "--state", options->statePath, "A recorded machine, to say what it could never meet");
    options->addFormat(command, lintWriters());
    options->addOutput(command);
    options->addLogging(command);
    command.footer(LINT_FOOTER);
    setAction(command, session, options, [options, &session] { return lintFile(*options, session); });
}

}  // namespace vrx::cli
