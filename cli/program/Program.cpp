#include "cli/program/Program.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>

#include "cli/commands/Commands.h"
#include "cli/completion/CompletionRequest.h"
#include "cli/help/CommandTable.h"
#include "cli/help/HelpText.h"
#include "cli/help/UsageProblem.h"
#include "cli/program/MonitoringAnswer.h"
#include "libCommon/logging/LogFile.h"
#include "libReport/ProgramVersion.h"

namespace vrx::cli {

namespace {

constexpr const char* FOOTER =
    "vrx-inventory help COMMAND says all about a command.\n"
    "\n"
    "Exit status: 0 passed or done; 1 did not pass; 2 wrong usage or bad input; 3 undetermined;\n"
    "4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory collect -o machine.xml\n"
    "  vrx-inventory show --state machine.xml\n"
    "  vrx-inventory generate --state machine.xml -o golden.xml\n"
    "  vrx-inventory check golden.xml --state machine.xml\n"
    "  vrx-inventory check golden.xml";

[[noreturn]] void refuse(const CLI::App& app, const CLI::ParseError& problem) {
    throw CommandFailure(ExitStatus::BadInput,
                         usageProblem(app, problem) + " (see " + fullName(namedCommand(app)) + " --help)");
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

/// Nothing was asked for, so nothing is answered.
ExitStatus sayWhatThereIs(const CLI::App& app, const Session& session) {
    print(session, helpText(commandPage(app), helpWidth(session)));
    session.say("no command is given");
    return ExitStatus::BadInput;
}

std::optional<ExitStatus> parse(CLI::App& app, int argc, const char* const* argv, Session& session) {
    if (argc < 2) {
        return sayWhatThereIs(app, session);
    }
    if (argv[1] == std::string_view(COMPLETION_REQUEST)) {
        ErrorStreamLog log(session.console, LogPriority::Off);
        session.log = &log;
        return print(session, completionAnswer(app, {argv + 2, argv + argc}, session));
    }
    try {
        app.parse(argc, argv);
        return std::nullopt;
    } catch (const CLI::CallForHelp&) {
        return print(session, helpText(commandPage(namedCommand(app)), helpWidth(session)));
    } catch (const CLI::CallForVersion& version) {
        return print(session, version.what());
    } catch (const CLI::ParseError& problem) {
        refuse(app, problem);
    }
}

struct Command {
    std::string_view name;
    void (*add)(CLI::App&, Session&);
    bool isOfAll = false;  ///< it tells of all commands
};

constexpr Command COMMANDS[] = {
    {"check", addCheckCommand},     {"check-device", addCheckDeviceCommand},
    {"fleet", addFleetCommand},     {"generate", addGenerateCommand},
    {"show", addShowCommand},       {"waive", addWaiveCommand},
    {"parts", addPartsCommand},     {"lint", addLintCommand},
    {"match", addMatchCommand},     {"collect", addCollectCommand},
    {"convert", addConvertCommand}, {"completion", addCompletionCommand, true},
    {"help", addHelpCommand, true}, {"manual", addManualCommand, true},
};

std::string versionLine() { return fmt::format("{} {}", PROGRAM_NAME, programVersion()); }

std::unique_ptr<CLI::App> commandLine(const Command* begin, const Command* end, Session& session) {
    auto app = std::make_unique<CLI::App>(
        "Decides whether a machine holds exactly the hardware that an inventory script describes.", "vrx-inventory");
    app->set_version_flag("--version", versionLine(), "Print the version and end");
    app->require_subcommand(1);
    app->set_help_flag("-h,--help", "Print this help and end");
    app->footer(FOOTER);
    for (const Command* command = begin; command != end; ++command) {
        command->add(*app, session);
    }
    refuseEmptyValues(*app);
    return app;
}

/// A command line of the named command alone, for a fraction of the time that all commands take, which is as long as a
/// small check. Null where no command is named, or there is something to be said of the arguments: those who know all
/// commands say it.
std::unique_ptr<CLI::App> parsedAlone(int argc, const char* const* argv, Session& session) {
    const std::string_view name = argc < 2 ? "" : argv[1];
    const Command* const named = std::ranges::find(COMMANDS, name, &Command::name);
    if (named == std::end(COMMANDS) || named->isOfAll) {
        return nullptr;
    }
    std::unique_ptr<CLI::App> app = commandLine(named, named + 1, session);
    try {
        app->parse(argc, argv);
    } catch (const CLI::Error&) {
        return nullptr;
    }
    return app;
}

void sayHolesInLog(const Session& session) {
    if (const String reason = logFileError(); !reason.isEmpty()) {
        session.say("lines are missing in the log file: " + reason.toUtf8());
    }
}

}  // namespace

ExitStatus runProgram(int argc, const char* const* argv, Session& session) {
    std::unique_ptr<CLI::App> app;
    try {
        if (argc == 2 && argv[1] == std::string_view("--version")) {
            return print(session, versionLine());  // needs no command line of all commands
        }
        app = parsedAlone(argc, argv, session);
        if (app == nullptr) {
            app = commandLine(std::begin(COMMANDS), std::end(COMMANDS), session);
            if (const std::optional<ExitStatus> ended = parse(*app, argc, argv, session)) {
                return *ended;
            }
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
        return asksForMonitoring(argc, argv) ? answerUnknown(session.console, failure.lines().front())
                                             : failure.status();
    }
}

}  // namespace vrx::cli
