#include "cli/program/Program.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <optional>

#include "cli/commands/Commands.h"
#include "libCommon/logging/LogFile.h"
#include "libReport/ProgramVersion.h"

namespace vrx::cli {

namespace {

constexpr const char* STATUSES =
    "Exit status: 0 passed or done, 1 did not pass, 2 wrong usage or bad input,\n"
    "3 undetermined, 4 internal error. \"vrx-inventory COMMAND --help\" says more.";

/// The command that the words lead to, for a hint at its help.
const CLI::App* namedCommand(const CLI::App& app) {
    const CLI::App* at = &app;
    while (!at->get_subcommands().empty()) {
        at = at->get_subcommands().back();
    }
    return at;
}

std::string fullName(const CLI::App& command) {
    const CLI::App* const parent = command.get_parent();
    return parent == nullptr ? command.get_name() : fullName(*parent) + " " + command.get_name();
}

ExitStatus say(Session& session, const CLI::App& app, const CLI::ParseError& problem) {
    const std::string hint = " (see " + fullName(*namedCommand(app)) + " --help)";
    session.say(problem.what() + hint);
    return ExitStatus::BadInput;
}

/// Help and version texts, which are results.
ExitStatus print(const Session& session, std::string text) {
    if (!text.ends_with('\n')) {
        text += '\n';
    }
    std::string error;
    if (!session.console.writeOut(text, error)) {
        throw CommandFailure(ExitStatus::BadInput, "cannot write to standard output: " + error);
    }
    return ExitStatus::Success;
}

/// An empty text is what is left of a variable that is not set, so it never stands for "none". What a machine reports,
/// the VALUE of match, may well be empty.
void refuseEmptyValues(CLI::App& app) {
    const CLI::Validator isGiven(
        [](const std::string& value) {
            return std::string(value.empty() ? "the value is empty; is a variable not set?" : "");
        },
        "");
    for (CLI::Option* const option : app.get_options(
             [](const CLI::Option* each) { return each->get_items_expected() > 0 && each->get_name() != "VALUE"; })) {
        option->transform(isGiven);  // stands before what else is asked of the value
    }
    for (CLI::App* const command : app.get_subcommands([](CLI::App*) { return true; })) {
        refuseEmptyValues(*command);
    }
}

std::optional<ExitStatus> parse(CLI::App& app, int argc, const char* const* argv, Session& session) {
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::CallForHelp&) {
        return print(session, app.help());
    } catch (const CLI::CallForVersion& version) {
        return print(session, version.what());
    } catch (const CLI::ParseError& problem) {
        return say(session, app, problem);
    }
}

void sayHolesInLog(const Session& session) {
    if (const String reason = logFileError(); !reason.isEmpty()) {
        session.say("lines are missing in the log file: " + reason.toUtf8());
    }
}

}  // namespace

ExitStatus runProgram(int argc, const char* const* argv, Session& session) {
    CLI::App app("Decides whether a machine holds exactly the hardware that an inventory script describes.",
                 "vrx-inventory");
    app.set_version_flag("--version", fmt::format("{} {}", PROGRAM_NAME, programVersion()),
                         "Print the version and end");
    app.require_subcommand(1);
    app.get_formatter()->column_width(26);
    app.footer(STATUSES);

    addCheckCommand(app, session);
    addCheckDeviceCommand(app, session);
    addGenerateCommand(app, session);
    addShowCommand(app, session);
    addWaiveCommand(app, session);
    addPartsCommand(app, session);
    addLintCommand(app, session);
    addMatchCommand(app, session);
    addCollectCommand(app, session);
    addConvertCommand(app, session);
    refuseEmptyValues(app);
    try {
        if (const std::optional<ExitStatus> ended = parse(app, argc, argv, session)) {
            return *ended;
        }
        ErrorStreamLog log(session.console, session.logLevel);
        session.log = &log;
        const ExitStatus status = session.action();
        sayHolesInLog(session);
        return status;
    } catch (const CommandFailure& failure) {
        for (const std::string& line : failure.lines()) {
            session.say(line);
        }
        return failure.status();
    }
}

}  // namespace vrx::cli
