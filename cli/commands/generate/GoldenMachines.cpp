#include "cli/commands/generate/GoldenMachines.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>

#include "cli/input/FilterFile.h"
#include "cli/input/GeneratedScript.h"
#include "cli/input/MachineSource.h"
#include "cli/input/ScriptableMachine.h"
#include "cli/terminal/StageProgress.h"
#include "libGolden/DecisionText.h"
#include "libGolden/GoldenScript.h"
#include "libGolden/Outliers.h"
#include "libReport/golden/GoldenDecisionsJson.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/UnreadText.h"
#include "libSystemState/filter/SysinfoFilter.h"

namespace vrx::cli {

namespace {

constexpr std::size_t MOST_DEVIATIONS = 8;  // that are told of one machine

struct LoadedMachine {
    std::string path;
    std::string name;
    StateManager* store = nullptr;
};

/// A machine that was given twice would count twice.
std::vector<std::string> pathsOf(const GenerateOptions& options, const Session& session) {
    if (options.machines.empty()) {
        return {options.statePath};
    }
    std::vector<std::string> paths;
    std::set<std::filesystem::path> known;
    for (const std::string& path : options.machines) {
        std::error_code failure;
        const std::filesystem::path whole = std::filesystem::weakly_canonical(path, failure);
        if (failure || known.insert(whole).second) {
            paths.push_back(path);
        } else {
            session.say(machineName(path) + " is given more than once and counts once");
        }
    }
    return paths;
}

/// Of names that comments repeat often, what stands before the first point: "rack1" of "rack1.dmi.txt". The whole path
/// where that is no name, or not of one file alone.
std::vector<std::string> shortNames(const std::vector<std::string>& paths) {
    const auto stem = [](const std::string& path) {
        const std::string file = std::filesystem::path(path).filename().string();
        return path.empty() || path == "-" ? machineName(path) : file.substr(0, file.find('.'));
    };
    std::map<std::string, int> counts;
    for (const std::string& path : paths) {
        ++counts[stem(path)];
    }
    std::vector<std::string> names;
    for (const std::string& path : paths) {
        const std::string name = stem(path);
        names.push_back(name.empty() || counts[name] > 1 ? machineName(path) : name);
    }
    return names;
}

/// With what a script can ask for alone.
StateManager& loadScriptable(const std::string& path, const SysinfoFilter* filter, const GenerateOptions& options,
                             Session& session) {
    StateManager& store = session.make<StateManager>();
    const ImportReport import = loadMachine(path, store, session);
    StateManager& scriptable = session.make<StateManager>();
    const NotScriptable left = takeScriptable(store, filter, import, machineName(path), scriptable);
    sayNotScriptable(left, options.hasLenientKeys, session);
    return left.isEmpty() ? store : scriptable;
}

std::vector<LoadedMachine> loadMachines(const GenerateOptions& options, const SysinfoFilter* filter, Session& session) {
    const std::vector<std::string> paths = pathsOf(options, session);
    const std::vector<std::string> names = shortNames(paths);
    std::vector<LoadedMachine> machines;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        machines.push_back({paths[i], names[i], &loadScriptable(paths[i], filter, options, session)});
    }
    return machines;
}

GoldenDraft draftOf(const std::vector<LoadedMachine>& machines, const GenerateOptions& options,
                    const SysinfoFilter* filter) {
    std::vector<GoldenMachine> good;
    for (const LoadedMachine& machine : machines) {
        good.push_back({machine.store, machine.name});
    }
    GoldenOptions golden;
    golden.hasAllCategories = options.hasAllCategories;
    golden.checksNames = !options.ignoresNames;
    golden.checksHwLocators = options.checksHwLocators();
    golden.checksOsLocators = options.checksOsLocators();
    golden.filter = filter;
    golden.mostSpread = options.mostSpread;
    golden.mostAlternatives = options.mostAlternatives;
    golden.failsOnExtra = options.failsOnExtra;
    return goldenDraft(good, golden);
}

void sayOutliers(const GoldenDraft& draft, const std::vector<Outlier>& outliers, const GenerateOptions& options,
                 const Session& session) {
    for (const Outlier& outlier : outliers) {
        session.say(fmt::format("{} differs from the rest{}:", draft.machines[outlier.machine],
                                options.isWithoutOutliers ? " and is left out" : ""));
        const std::vector<std::string> lines = deviationTexts(draft, outlier);
        const std::size_t shown = std::min(lines.size(), MOST_DEVIATIONS);
        for (std::size_t i = 0; i < shown; ++i) {
            session.say("    " + lines[i]);
        }
        if (lines.size() > shown) {
            session.say(fmt::format("    and {} more devices", lines.size() - shown));
        }
    }
    if (options.isWithoutOutliers && draft.machines.size() < FEWEST_FOR_OUTLIERS) {
        session.say("of fewer than three machines nobody can say which differs from the rest; none is left out");
    }
}

void dropOutliers(const std::vector<Outlier>& outliers, std::vector<LoadedMachine>& machines) {
    for (std::size_t i = outliers.size(); i > 0; --i) {
        machines.erase(machines.begin() + static_cast<std::ptrdiff_t>(outliers[i - 1].machine));
    }
}

/// Of machines recorded alike the same is unread, so each is said once.
void sayUnread(const std::vector<LoadedMachine>& machines, const Session& session) {
    std::vector<std::string> texts;
    std::map<std::string, std::vector<std::string>> namesOf;
    for (const LoadedMachine& machine : machines) {
        for (const UnreadSource& unread : machine.store->unread()) {
            std::vector<std::string>& names = namesOf[unreadText(unread)];
            if (names.empty()) {
                texts.push_back(unreadText(unread));
            }
            names.push_back(machine.name);
        }
    }
    for (const std::string& text : texts) {
        const std::vector<std::string>& names = namesOf[text];
        const std::string who = machines.size() == 1              ? ""
                                : names.size() == machines.size() ? " of any machine"
                                : names.size() == 1               ? " of " + names.front()
                                                                  : fmt::format(" of {} machines", names.size());
        session.say(fmt::format("not read{}, so the script does not ask for it: {}", who, text));
    }
}

/// Throws when the script is not what it should be.
void verifyGolden(const String& script, const std::vector<LoadedMachine>& machines, const Session& session) {
    const ErrorStreamLog::Quiet quiet(LogPriority::Error);
    const StageProgress progress(session.console, "trying the script");
    const std::string doubtful = doubtAboutScript(script);
    if (!doubtful.empty()) {
        throw CommandFailure(ExitStatus::BadInput, "the script would not mean what it should: " + doubtful);
    }
    for (const LoadedMachine& machine : machines) {
        if (const std::string problem = problemOnMachine(script, *machine.store); !problem.empty()) {
            throw CommandFailure(ExitStatus::BadInput, fmt::format("the script would not hold for {}: {}",
                                                                   machineName(machine.path), problem));
        }
    }
}

GoldenForm formOf(const GenerateOptions& options, const GoldenDraft& draft, const Session& session) {
    GoldenForm form;
    form.hasComments = options.decisionsPath.empty();
    if (options.optional != "or") {
        return form;
    }
    form.optional = GoldenForm::Optional::Alternatives;
    const OptionalProblem problem = optionalProblem(draft);
    if (problem == OptionalProblem::TooMany) {
        session.say(fmt::format("more than {} sets of devices that not all have; the script asks for none of them",
                                MOST_OPTIONAL_SETS));
    } else if (problem == OptionalProblem::NoneWithoutPlace) {
        session.say(
            "one machine has none of the devices that not all have, and they have no place to be absent from; the "
            "script "
            "asks for none of them");
    }
    return form;
}

}  // namespace

CommandResult generateGolden(const GenerateOptions& options, Session& session) {
    for (const std::string& path : options.machines) {
        options.refuseAsOutput(path);
    }
    if (std::ranges::count(options.machines, "-") > 1) {
        throw CommandFailure(ExitStatus::BadInput, "only one machine can come from standard input");
    }
    SysinfoFilter filter(SysinfoFilter::Language::Extended);
    const bool isFiltered = loadChosenFilter(options.filterPath, filter, session);
    const SysinfoFilter* const chosen = isFiltered ? &filter : nullptr;
    std::vector<LoadedMachine> machines = loadMachines(options, chosen, session);
    GoldenDraft draft = draftOf(machines, options, chosen);
    const std::vector<Outlier> outliers = outliersOf(draft);
    sayOutliers(draft, outliers, options, session);
    if (options.isWithoutOutliers && !outliers.empty()) {
        dropOutliers(outliers, machines);
        draft = draftOf(machines, options, chosen);
    }
    sayUnread(machines, session);
    if (!asksForAnything(draft) && options.optional != "or") {
        throw CommandFailure(ExitStatus::BadInput, "the machines have nothing in common that a script could ask for");
    }
    const String script = goldenScript(draft, formOf(options, draft, session));
    verifyGolden(script, machines, session);
    CommandResult result{ExitStatus::Success, script.toUtf8()};
    if (!options.decisionsPath.empty()) {
        const bool isJson = std::filesystem::path(options.decisionsPath).extension() == ".json";
        result.files.push_back({options.decisionsPath, isJson ? goldenDecisionsJson(draft) : decisionsText(draft)});
    }
    return result;
}

}  // namespace vrx::cli
