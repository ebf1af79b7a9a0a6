/// A recording's format decides who reads it: the engine SysInfo XML, a converter everything else. A file of SysInfo
/// XML is given to the engine by its path, so that its bytes are in memory once; of other files only the start is read
/// before the format is known.

#include "libMachine/MachineImport.h"

#include <filesystem>
#include <fstream>

#include "libCommon/io/FileLoader.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Inventory.h"
#include "libMachine/import/ForeignRecording.h"
#include "libMachine/record/Anonymize.h"
#include "libMachine/record/Recording.h"
#include "libMachine/record/StoredMachine.h"
#include "libSystemState/StateManager.h"

namespace vrx {

namespace {

namespace fs = std::filesystem;

/// The start of a file that can be read again from there; empty for any other, as a pipe is.
std::string startOfFile(const std::string& path) {
    std::error_code failure;
    std::string start;
    if (fs::is_regular_file(path, failure)) {
        start.resize(RECOGNITION_SIZE);
        std::ifstream file(path, std::ios::binary);
        file.read(start.data(), static_cast<std::streamsize>(start.size()));
        start.resize(static_cast<std::size_t>(file.gcount()));
    }
    return start;
}

bool isPipe(const std::string& path) {
    std::error_code failure;
    return fs::is_fifo(path, failure);
}

bool readFile(const std::string& path, std::string& bytes, ImportResult& result) {
    if (!loadFile(String::UTF8Decode(path), bytes, result.report.reason)) {
        result.report.failure = ImportReport::Failure::Unreadable;
        return false;
    }
    return true;
}

/// Says what the parser has against a text. The engine, which reads devices while it parses, keeps no places of open
/// elements, so that its parser's words may name a wrong line; it is asked once more here.
void explain(std::string_view bytes, ImportReport& report) {
    XmlDocument document;
    if (!document.ParseUtf8(bytes)) {
        report.failure = ImportReport::Failure::Malformed;
        report.reason = document.ErrorDesc();
        report.row = document.ErrorRow() + 1;
        report.column = document.ErrorColumn() + 1;
    }
}

void importSysInfo(std::string_view bytes, StateManager& store, ImportResult& result) {
    Utf8Damage damage;
    const String text = String::UTF8Decode(bytes, &damage);
    result.isUtf8 = damage.count == 0;
    if (result.isUtf8) {
        Inventory::importStateFromXmlString(text, store, result.report);
    }
    if (!result.isUtf8 || result.report.failure == ImportReport::Failure::Malformed) {
        explain(bytes, result.report);
    }
}

void importSysInfoFile(const std::string& path, StateManager& store, unsigned threads, ImportReport& report) {
    const String name = String::UTF8Decode(path);
    Inventory::importStateFromXmlFile(name, store, report, threads);
    std::string bytes;
    String reason;
    if (report.failure == ImportReport::Failure::Malformed && loadFile(name, bytes, reason)) {
        explain(bytes, report);
    }
}

/// Reads SysInfo XML with `read(store)`, by way of another store where pseudonyms are wanted.
template <typename Read>
void importSysInfoWith(Read read, StateManager& store, bool isAnonymous, const ImportResult& result) {
    if (!isAnonymous) {
        return read(store);
    }
    StateManager original;
    read(original);
    if (result.isImported()) {
        anonymizeMachine(original, store);
    }
}

/// Takes what `convert(recording, damage)` makes of a recording of another program.
template <typename Convert>
void importForeign(Convert convert, StateManager& store, bool isAnonymous, ImportResult& result) {
    DamageList damage;
    Recording recording;
    const bool isConverted = convert(recording, damage);
    result.damage = damage.takeAll();
    if (!isConverted) {
        const bool isRefused = !damage.refusal().empty();
        result.report.failure = isRefused ? ImportReport::Failure::Malformed : ImportReport::Failure::NoDevices;
        result.report.reason = String::UTF8Decode(damage.refusal());
        return;
    }
    if (isAnonymous) {
        anonymize(recording);
    }
    recording.storeIn(store);
    result.report.devices = static_cast<std::uint32_t>(store.deviceCount());
}

void importForeignBytes(std::string_view bytes, StateManager& store, bool isAnonymous, ImportResult& result) {
    const auto convert = [&](Recording& recording, DamageList& damage) {
        return convertForeign(result.format, bytes, recording, damage);
    };
    importForeign(convert, store, isAnonymous, result);
}

ImportResult importFolder(const std::string& path, StateManager& store, const ImportOptions& options) {
    ImportResult result;
    result.format = RecordingFormat::Redfish;
    const auto convert = [&](Recording& recording, DamageList& damage) {
        return convertForeignFolder(result.format, path, recording, damage);
    };
    importForeign(convert, store, options.isAnonymous, result);
    return result;
}

bool isFolder(const std::string& path, const ImportOptions& options) {
    std::error_code failure;
    return fs::is_directory(path, failure) &&
           options.format.value_or(RecordingFormat::Redfish) == RecordingFormat::Redfish;
}

}  // namespace

ImportResult importMachine(std::string_view bytes, StateManager& store, const ImportOptions& options) {
    ImportResult result;
    result.format = options.format ? *options.format : recognisedFormat(bytes);
    if (isForeign(result.format)) {
        importForeignBytes(bytes, store, options.isAnonymous, result);
    } else {
        const auto read = [&](StateManager& target) {
            importSysInfo(bytes, target, result);
        };
        importSysInfoWith(read, store, options.isAnonymous, result);
    }
    return result;
}

ImportResult importMachineFile(const std::string& path, StateManager& store, const ImportOptions& options) {
    if (isFolder(path, options)) {
        return importFolder(path, store, options);
    }
    ImportResult result;
    std::string bytes;
    if (isPipe(path)) {
        return readFile(path, bytes, result) ? importMachine(bytes, store, options) : result;
    }
    result.format = options.format ? *options.format : recognisedFormat(startOfFile(path));
    if (!isForeign(result.format)) {
        const auto read = [&](StateManager& target) {
            importSysInfoFile(path, target, options.threads, result.report);
        };
        importSysInfoWith(read, store, options.isAnonymous, result);
    } else if (readFile(path, bytes, result)) {
        importForeignBytes(bytes, store, options.isAnonymous, result);
    }
    return result;
}

void anonymizeMachine(const StateManager& machine, StateManager& store) {
    StoredMachine copy(machine);
    anonymize(copy.recording());
    copy.recording().storeIn(store);
}

}  // namespace vrx
