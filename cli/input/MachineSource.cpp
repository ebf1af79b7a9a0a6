#include "cli/input/MachineSource.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>

#include "cli/input/InputFile.h"
#include "cli/input/XmlFileProblem.h"
#include "libCommon/io/FileLoader.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"
#include "libMachine/MachineCollector.h"
#include "libMachine/MachineImport.h"
#include "libMachine/record/Anonymize.h"
#include "libMachine/record/Recording.h"
#include "libMachine/record/StoredMachine.h"
#include "libReport/text/TextPieces.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED =
    "expected a recording of a machine: SysInfo XML, or what lshw, dmidecode or hwloc wrote";
constexpr const char* NO_DEVICES =
    "this document holds no devices; expected a <SysInfo> with <Device> elements, or <device> elements, in its root";

/// Why the recording was not imported, asked of its text once more: the import itself tells no place.
std::string problemOf(const std::string& name, std::string_view bytes) {
    XmlDocument document;
    if (!document.ParseUtf8(bytes)) {
        return xmlProblem(name, document, EXPECTED);
    }
    return problemAt(name, document.RootElement()->Row(), document.RootElement()->Column(), NO_DEVICES);
}

[[noreturn]] void fail(const std::string& line, Array<String> texts) {
    if (texts.isEmpty()) {
        texts.append(String::UTF8Decode(line));
    }
    throw MachineFailure(ExitStatus::BadInput, line, std::move(texts));
}

std::string loadBytes(const std::string& path) {
    std::string bytes;
    String reason;
    if (!loadInput(path, bytes, reason)) {
        fail(fileProblem(path, reason, EXPECTED), {});
    }
    return bytes;
}

/// The start of a file that can be read again from there; empty for any other, as a pipe is.
std::string startOfFile(const std::string& path) {
    std::error_code failure;
    std::string start;
    if (std::filesystem::is_regular_file(path, failure)) {
        start.resize(RECOGNITION_SIZE);
        std::ifstream file(path, std::ios::binary);
        file.read(start.data(), static_cast<std::streamsize>(start.size()));
        start.resize(static_cast<std::size_t>(file.gcount()));
    }
    return start;
}

bool isPipe(const std::string& path) {
    std::error_code failure;
    return path == "-" || std::filesystem::is_fifo(path, failure);
}

void loadSysInfoBytes(const std::string& name, const std::string& bytes, StateManager& store, const Session& session) {
    Utf8Damage damage;
    const String text = String::UTF8Decode(bytes, &damage);
    ErrorStreamLog::Capture capture(*session.log);
    // The import would take replaced characters for the text's own.
    if (damage.count > 0 || !Inventory::importStateFromXmlString(text, store)) {
        fail(problemOf(name, bytes), capture.errors());
    }
    capture.show();
}

void loadSysInfoFile(const std::string& path, StateManager& store, const Session& session) {
    ErrorStreamLog::Capture capture(*session.log);
    if (!Inventory::importStateFromXmlFile(String::UTF8Decode(path), store)) {
        std::string bytes;
        String reason;
        const bool isRead = loadFile(String::UTF8Decode(path), bytes, reason);
        fail(isRead ? problemOf(path, bytes) : fileProblem(path, reason, EXPECTED), capture.errors());
    }
    capture.show();
}

void loadSysInfo(const std::string& path, const std::string& piped, StateManager& store, const Session& session) {
    if (isPipe(path)) {
        loadSysInfoBytes(path, piped, store, session);
    } else {
        loadSysInfoFile(path, store, session);
    }
}

void loadForeign(const std::string& name, RecordingFormat format, std::string_view bytes, bool isAnonymous,
                 StateManager& store, const Session& session) {
    DamageList damage;
    Recording recording;
    const bool isLoaded = convertForeign(format, bytes, recording, damage);
    if (session.logLevel <= LogPriority::Warning) {
        for (const String& line : damage.lines()) {
            session.say(fmt::format("{}: warning: {}", inputName(name), line.toUtf8()));
        }
    }
    if (!isLoaded) {
        fail(fmt::format("{}: this {} holds no devices", inputName(name), formatTitle(format)), damage.lines());
    }
    if (isAnonymous) {
        anonymize(recording);
    }
    recording.storeIn(store);
}

void loadThisMachine(StateManager& store, const Session& session) {
    Array<String> notes;
    const bool isRead = collectMachine(store, CollectOptions(), notes);
    for (const String& note : notes) {
        session.say(note.toUtf8());
    }
    if (!isRead || store.deviceCount() == 0) {
        throw MachineFailure(ExitStatus::Undetermined, "nothing could be read of this machine", std::move(notes));
    }
}

}  // namespace

RecordingFormat loadRecording(const std::string& path, const LoadOptions& options, StateManager& store,
                              const Session& session) {
    const std::string piped = isPipe(path) ? loadBytes(path) : std::string();
    const RecordingFormat format =
        options.format ? *options.format : recognisedFormat(isPipe(path) ? piped : startOfFile(path));
    if (isForeign(format)) {
        loadForeign(path, format, isPipe(path) ? piped : loadBytes(path), options.isAnonymous, store, session);
    } else if (options.isAnonymous) {
        StateManager original;
        loadSysInfo(path, piped, original, session);
        StoredMachine machine(original);
        anonymize(machine.recording());
        machine.recording().storeIn(store);
    } else {
        loadSysInfo(path, piped, store, session);
    }
    return format;
}

void loadMachine(const std::string& statePath, StateManager& store, const Session& session) {
    if (statePath.empty()) {
        loadThisMachine(store, session);
    } else {
        loadRecording(statePath, {}, store, session);
    }
}

std::string machineName(const std::string& statePath) {
    return statePath.empty() ? "this machine" : inputName(statePath);
}

}  // namespace vrx::cli
