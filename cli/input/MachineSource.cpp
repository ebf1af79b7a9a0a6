#include "cli/input/MachineSource.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/input/InputFile.h"
#include "cli/input/XmlFileProblem.h"
#include "libReport/text/ImportNotices.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED =
    "expected a recording of a machine: SysInfo XML, what lshw, dmidecode or hwloc wrote, or the resources of Redfish";
constexpr const char* NO_DEVICES =
    "this document holds no devices; expected a <SysInfo> with <Device> elements, or <device> elements, in its root";

/// One line for each kind of damage.
Array<String> damageLines(const ImportResult& result) {
    Array<String> lines;
    for (const ImportDamage& damage : result.damage) {
        lines.append(String::UTF8Decode(damageText(damage)));
    }
    return lines;
}

/// Why there is no machine, in one line.
std::string problemOf(const std::string& path, const ImportResult& result) {
    using Failure = ImportReport::Failure;
    const ImportReport& report = result.report;
    if (report.failure == Failure::Unreadable) {
        return fileProblem(path, report.reason, EXPECTED);
    }
    if (isForeign(result.format)) {
        return report.failure == Failure::Malformed
                   ? fmt::format("{}: {}", inputName(path), report.reason.toUtf8())
                   : fmt::format("{}: this {} holds no devices", inputName(path), formatTitle(result.format));
    }
    const std::string text =
        report.failure == Failure::Malformed ? fmt::format("{}; {}", report.reason.toUtf8(), EXPECTED) : NO_DEVICES;
    return problemAt(path, std::max(report.row, 1U) - 1, std::max(report.column, 1U) - 1, text);
}

/// What reports for programs say of it: the engine's words, or what was damaged.
Array<String> textsOf(const ImportResult& result) {
    if (isForeign(result.format)) {
        return damageLines(result);
    }
    return result.isUtf8 ? result.report.errorLines() : Array<String>();
}

[[noreturn]] void fail(const std::string& line, Array<String> texts) {
    throw CommandFailure(ExitStatus::BadInput, line, std::move(texts));
}

ImportResult importInput(const std::string& path, const ImportOptions& options, StateManager& store) {
    if (path != "-") {
        return importMachineFile(path, store, options);
    }
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        fail(fileProblem(path, reason, EXPECTED), {});
    }
    return importMachine(bytes, store, options);
}

void loadThisMachine(StateManager& store, const Session& session) {
    std::vector<CollectNote> notes;
    const bool isRead = collectMachine(store, {}, notes);
    sayNotes(notes, isRead && store.deviceCount() != 0, session);
}

}  // namespace

ImportResult loadRecording(const std::string& path, const ImportOptions& options, StateManager& store,
                           const Session& session) {
    const ErrorStreamLog::Quiet quiet(*session.log, LogPriority::Error);
    ImportResult result = importInput(path, options, store);
    if (session.logLevel <= LogPriority::Warning) {
        for (const String& line : damageLines(result)) {
            session.say(fmt::format("{}: warning: {}", inputName(path), line.toUtf8()));
        }
        for (const std::string& notice : importNotices(result.report)) {
            session.say(fmt::format("{}: warning: {}", inputName(path), notice));
        }
    }
    if (!result.isImported()) {
        fail(problemOf(path, result), textsOf(result));
    }
    for (const String& line : result.report.errorLines()) {
        session.log->show(LogPriority::Error, line);
    }
    return result;
}

ImportReport loadMachine(const std::string& statePath, StateManager& store, const Session& session) {
    if (statePath.empty()) {
        loadThisMachine(store, session);
        return {};
    }
    return loadRecording(statePath, {}, store, session).report;
}

void sayNotes(const std::vector<CollectNote>& notes, bool isRead, const Session& session) {
    Array<String> lines;
    for (const CollectNote& note : notes) {
        lines.append(String::UTF8Decode(noteText(note)));
        session.say(noteText(note));
    }
    if (!isRead) {
        throw CommandFailure(ExitStatus::Undetermined, "nothing could be read of this machine", std::move(lines));
    }
}

std::string machineName(const std::string& statePath) {
    return statePath.empty() ? "this machine" : inputName(statePath);
}

}  // namespace vrx::cli
