#include "cli/input/ScriptFile.h"

#include <algorithm>
#include <utility>

#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/input/MistakesFound.h"
#include "libInventory/script/OrInsidePart.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

/// Each script that is no UTF-8 is said here, because the engine's own line about it is for programmers.
void sayWhenDamaged(const std::string& path, std::string_view bytes, const Session& session) {
    const auto isBeyondAscii = [](char byte) {
        return static_cast<unsigned char>(byte) >= 0x80;
    };
    Utf8Damage damage;
    if (session.logLevel <= LogPriority::Warning && std::ranges::any_of(bytes, isBeyondAscii)) {
        String::UTF8Decode(bytes, &damage);
    }
    if (damage.count > 0) {
        session.say(problemAt(path, damage.row, damage.column,
                              "warning: " + counted(damage.count, "character") +
                                  " not in UTF-8, the first one here, each read as U+FFFD; save the file as UTF-8"));
    }
}

/// Loads what has to be looked at as a whole: it comes through a pipe, or needs a word about it.
void loadBytes(const std::string& path, CheckRun& check, const Session& session) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        throw CommandFailure(ExitStatus::BadInput, fileProblem(path, reason, FileKind::Script),
                             {u"Could not open Inventory Script file: " + String::UTF8Decode(path)});
    }
    const ErrorStreamLog::Quiet quiet(LogPriority::Warning);
    Inventory& inventory = check.inventory();
    if (!inventory.loadInventoryScriptBytes(bytes, String::UTF8Decode(path))) {
        throw CommandFailure(ExitStatus::BadInput, xmlProblem(path, bytes, inventory.script(), FileKind::Script),
                             check.fileErrors());
    }
    sayWhenDamaged(path, bytes, session);
}

/// Throws when nothing can be checked with the script.
void refuseUseless(const ScriptInput& input, const Inventory& inventory) {
    if (!input.passesMistakesOver) {
        refuseMistakes(input.path, inventory.script(), 0, input.threads);
    }
    if (const XmlElement* const undecidable = findOrInsidePart(*inventory.script().RootElement())) {
        throw CommandFailure(ExitStatus::BadInput,
                             problemAt(input.path, undecidable->Row(), undecidable->Column(), OR_INSIDE_PART_REASON));
    }
}

}  // namespace

void loadScript(const ScriptInput& input, CheckRun& check, const Session& session) {
    if (input.path == "-" || !check.inventory().loadPlainScriptFile(String::UTF8Decode(input.path), input.threads)) {
        loadBytes(input.path, check, session);
    }
    refuseUseless(input, check.inventory());
}

std::shared_ptr<const Inventory> loadedScript(const ScriptInput& input, const Session& session) {
    struct Trial {
        StateManager nothing;
        CheckRun check{nothing};
    };
    const auto trial = std::make_shared<Trial>();
    loadScript(input, trial->check, session);
    return {trial, &std::as_const(trial->check).inventory()};
}

}  // namespace vrx::cli
