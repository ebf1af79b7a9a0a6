#include "cli/input/MachineSource.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/terminal/StageProgress.h"
#include "libReport/text/ImportNotices.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

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
        return fileProblem(path, report.reason, FileKind::Recording);
    }
    if (isForeign(result.format)) {
        return report.failure == Failure::Malformed
                   ? fmt::format("{}: {}", inputName(path), report.reason.toUtf8())
                   : fmt::format("{}: this {} holds no devices", inputName(path), formatTitle(result.format));
    }
    const TextPlace place{std::max(report.row, 1U) - 1, std::max(report.column, 1U) - 1};
    if (report.failure != Failure::Malformed) {
        return problemAt(path, place.row, place.column, NO_DEVICES);
    }
    std::string bytes;
    String unread;
    if (isRegularFile(path)) {
        loadInput(path, bytes, unread);
    }
    return parseProblem(path, bytes, place, report.reason, FileKind::Recording);
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

/// The start of a file that can be read again; of others nothing.
std::string startOf(const std::string& path) {
    std::string start;
    if (isRegularFile(path)) {
        std::ifstream file(path, std::ios::binary);
        start.resize(RECOGNITION_SIZE);
        file.read(start.data(), static_cast<std::streamsize>(start.size()));
        start.resize(static_cast<std::size_t>(file.gcount()));
    }
    return start;
}

/// An import takes devices out of any XML, scripts too, and those are no machine.
void refuseOtherKinds(const std::string& path, std::string_view start, const ImportOptions& options) {
    const std::string other = options.format ? std::string() : otherKind(start, FileKind::Recording);
    if (!other.empty()) {
        fail(inputName(path) + ": " + other, {});
    }
}

ImportResult importInput(const std::string& path, const ImportOptions& options, StateManager& store) {
    if (const std::string start = startOf(path); !start.empty()) {
        refuseOtherKinds(path, start, options);
    }
    std::error_code failure;
    if (path != "-" && !std::filesystem::is_fifo(path, failure)) {
        return importMachineFile(path, store, options);
    }
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        fail(fileProblem(path, reason, FileKind::Recording), {});
    }
    refuseOtherKinds(path, bytes, options);
    return importMachine(bytes, store, options);
}

void loadThisMachine(StateManager& store, const Session& session) {
    std::vector<CollectNote> notes;
    const bool isRead = [&] {
        const StageProgress progress(session.console, "reading this machine");
        return collectMachine(store, {}, notes);
    }();
    sayNotes(notes, isRead && store.deviceCount() != 0, session);
}

}  // namespace

ImportResult importRecording(const std::string& path, const ImportOptions& options, StateManager& store) {
    const ErrorStreamLog::Quiet quiet(LogPriority::Error);
    return importInput(path, options, store);
}

ImportResult loadRecording(const std::string& path, const ImportOptions& options, StateManager& store,
                           const Session& session) {
    ImportResult result = [&] {
        const StageProgress progress(session.console, "reading", path);
        return importRecording(path, options, store);
    }();
    sayImported(path, result, session);
    return result;
}

void sayImported(const std::string& path, const ImportResult& result, const Session& session) {
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
}

bool isRegularFile(const std::string& path) {
    std::error_code failure;
    return path != "-" && std::filesystem::is_regular_file(path, failure);
}

ImportReport loadMachine(const std::string& statePath, StateManager& store, const Session& session, unsigned threads) {
    if (statePath.empty()) {
        loadThisMachine(store, session);
        return {};
    }
    return loadRecording(statePath, {.threads = threads}, store, session).report;
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
