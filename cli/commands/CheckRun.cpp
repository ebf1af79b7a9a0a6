#include "cli/commands/CheckRun.h"

#include "cli/input/InputFile.h"
#include "cli/input/MachineSource.h"
#include "cli/input/XmlFileProblem.h"
#include "cli/terminal/CombinationProgress.h"
#include "libInventory/script/OrInsidePart.h"
#include "libInventory/script/ScriptElement.h"
#include "libRegex/Regex.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED_SCRIPT = "expected an inventory script, XML with the root <inventory-check>";

/// Why the script did not load, with its place where there is one.
std::string scriptProblem(const std::string& path, const XmlDocument& script, const Array<String>& fileErrors) {
    if (script.Error()) {
        return xmlProblem(path, script, EXPECTED_SCRIPT);
    }
    if (const XmlElement* const root = script.RootElement()) {
        return problemAt(path, root->Row(), root->Column(),
                         "the root is <" + toUtf8(root->Name()) + ">; " + EXPECTED_SCRIPT);
    }
    return fileProblem(path, fileErrors.isEmpty() ? String(u"it cannot be read") : fileErrors.back(), EXPECTED_SCRIPT);
}

}  // namespace

void RunObserver::handleEvent(const TestRunEventImp& event) {
    if (event.name() != u"InventoryTestFailed") {
        events.append(event);
    }
}

CheckRun::CheckRun(Request request, const Session& session) : m_request(std::move(request)), m_session(session) {
    m_report.script = m_request.scriptPath;
    if (!m_request.statePath.empty()) {
        m_report.state = m_request.statePath;
    }
    m_inventory.registerInventoryObserver(m_observer);
    m_inventory.setEnableUnsatisfiedDeviceTips(m_request.hasUnsatisfiedTips);
    m_inventory.setStateManager(m_store);
}

void CheckRun::run() {
    const auto start = m_session.console.now();
    if (m_request.scriptPath == "-" && m_request.statePath == "-") {
        refuse("the script and the machine cannot both come from standard input");
    }
    loadScript();
    loadState();
    check();
    m_report.duration = m_session.console.now() - start;
}

void CheckRun::refuse(const std::string& line) {
    m_report.fileErrors = m_observer.fileErrors;
    if (m_report.fileErrors.isEmpty()) {
        m_report.fileErrors.append(String::UTF8Decode(line));
    }
    throw CommandFailure(ExitStatus::BadInput, line);
}

void CheckRun::loadScript() {
    ErrorStreamLog::Capture capture(*m_session.log);
    const std::string& path = m_request.scriptPath;
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        m_observer.handleFileError(u"Could not open Inventory Script file: " + String::UTF8Decode(path));
        refuse(fileProblem(path, reason, EXPECTED_SCRIPT));
    }
    if (!m_inventory.loadInventoryScriptBytes(std::move(bytes), String::UTF8Decode(path))) {
        refuse(scriptProblem(path, m_inventory.script(), m_observer.fileErrors));
    }
    capture.show();
    const XmlElement& root = *m_inventory.script().RootElement();
    if (const XmlElement* const undecidable = findOrInsidePart(root)) {
        refuse(problemAt(path, undecidable->Row(), undecidable->Column(), OR_INSIDE_PART_REASON));
    }
    m_report.content = contentOf(root);
}

void CheckRun::loadState() {
    try {
        loadMachine(m_request.statePath, m_store, m_session);
    } catch (const MachineFailure& failure) {
        m_report.fileErrors = failure.texts();
        throw;
    }
    m_report.machine = &m_store;
}

void CheckRun::check() {
    const std::size_t givenUpBefore = Regex::exceededCount();
    bool inventorySatisfied = false;
    bool passed = false;
    {
        const CombinationProgress progress(m_session.console, m_session.logLevel);
        passed = m_inventory.run(&inventorySatisfied);
    }
    m_report.inventorySatisfied = inventorySatisfied;
    m_report.givenUpPatterns = Regex::exceededCount() - givenUpBefore;
    m_report.events = std::move(m_observer.events);
    m_report.missing = m_inventory.unsatisfiedDevices();
    m_report.extra = m_inventory.extraDevices();
    m_report.annotatedScript = &m_inventory.script();
    m_report.verdict = verdictOf(passed);
}

/// A pattern that is given up counts as "no match". A check that failed might have passed with the true answer. One
/// that passed is right all the same, unless the script forbids what that pattern describes.
Verdict CheckRun::verdictOf(bool passed) const {
    const XmlElement& root = *m_inventory.script().RootElement();
    if (m_report.givenUpPatterns > 0 && (!passed || hasElement(root, vocabulary::ElementKind::Not) ||
                                         hasElement(root, vocabulary::ElementKind::FailOnExtra))) {
        return Verdict::Undecided;
    }
    if (!passed) {
        return Verdict::Failed;
    }
    return m_report.content.asksForAnything() ? Verdict::Passed : Verdict::NothingToCheck;
}

ExitStatus CheckRun::status() const noexcept {
    switch (m_report.verdict) {
        case Verdict::Passed: return ExitStatus::Success;
        case Verdict::Failed: return ExitStatus::NotPassed;
        case Verdict::NotRun: return ExitStatus::BadInput;
        default: return ExitStatus::Undetermined;
    }
}

}  // namespace vrx::cli
