#include "cli/input/ScriptFile.h"

#include "cli/input/InputFile.h"
#include "cli/input/MistakesFound.h"
#include "cli/input/XmlFileProblem.h"
#include "libInventory/script/OrInsidePart.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED_SCRIPT = "expected an inventory script, XML with the root <inventory-check>";

/// Why the script did not load, with its place where there is one.
std::string scriptProblem(const std::string& path, const XmlDocument& script) {
    if (script.Error()) {
        return xmlProblem(path, script, EXPECTED_SCRIPT);
    }
    if (const XmlElement* const root = script.RootElement()) {
        return problemAt(path, root->Row(), root->Column(),
                         "the root is <" + toUtf8(root->Name()) + ">; " + EXPECTED_SCRIPT);
    }
    return fileProblem(path, u"it is empty", EXPECTED_SCRIPT);
}

}  // namespace

void loadScript(const std::string& path, CheckRun& check, bool passesMistakesOver, const Session& session) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        throw CommandFailure(ExitStatus::BadInput, fileProblem(path, reason, EXPECTED_SCRIPT),
                             {u"Could not open Inventory Script file: " + String::UTF8Decode(path)});
    }
    const ErrorStreamLog::Quiet quiet(*session.log, LogPriority::Error);
    Inventory& inventory = check.inventory();
    if (!inventory.loadInventoryScriptBytes(std::move(bytes), String::UTF8Decode(path))) {
        throw CommandFailure(ExitStatus::BadInput, scriptProblem(path, inventory.script()), check.fileErrors());
    }
    if (!passesMistakesOver) {
        refuseMistakes(path, inventory.script());
    }
    if (const XmlElement* const undecidable = findOrInsidePart(*inventory.script().RootElement())) {
        throw CommandFailure(ExitStatus::BadInput,
                             problemAt(path, undecidable->Row(), undecidable->Column(), OR_INSIDE_PART_REASON));
    }
}

}  // namespace vrx::cli
