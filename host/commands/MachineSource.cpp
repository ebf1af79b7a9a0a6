#include "host/commands/MachineSource.h"

#include "host/collect/MachineCollector.h"
#include "host/commands/HeapPages.h"
#include "host/commands/XmlFileProblem.h"
#include "host/report/TextPieces.h"
#include "libCommon/io/FileLoader.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"

namespace vrx::host {

namespace {

constexpr const char* EXPECTED = "expected a SysInfo XML recording of a machine";
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

void loadFromStandardInput(StateManager& store, const Session& session) {
    const std::string name = machineName("-");
    std::string bytes;
    String reason;
    if (!loadFile(u"-", bytes, reason)) {
        fail(fileProblem(name, reason, EXPECTED), {});
    }
    Utf8Damage damage;
    const String text = String::UTF8Decode(bytes, &damage);
    ErrorStreamLog::Capture capture(*session.log);
    // The import would take replaced characters for the text's own.
    if (damage.count > 0 || !Inventory::importStateFromXmlString(text, store)) {
        fail(problemOf(name, bytes), capture.errors());
    }
    capture.show();
}

void loadFromFile(const std::string& path, StateManager& store, const Session& session) {
    expectRecording(path);
    ErrorStreamLog::Capture capture(*session.log);
    if (!Inventory::importStateFromXmlFile(String::UTF8Decode(path), store)) {
        std::string bytes;
        String reason;
        const bool isRead = loadFile(String::UTF8Decode(path), bytes, reason);
        fail(isRead ? problemOf(path, bytes) : fileProblem(path, reason, EXPECTED), capture.errors());
    }
    capture.show();
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

void loadMachine(const std::string& statePath, StateManager& store, const Session& session) {
    if (statePath.empty()) {
        loadThisMachine(store, session);
    } else if (statePath == "-") {
        loadFromStandardInput(store, session);
    } else {
        loadFromFile(statePath, store, session);
    }
}

std::string machineName(const std::string& statePath) {
    return statePath.empty() ? "this machine" : inputName(statePath);
}

}  // namespace vrx::host
