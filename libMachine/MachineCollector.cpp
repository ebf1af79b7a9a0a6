/// A recording is made in two steps. The sources run one after another and put device records into a Recording, where a
/// later source may still add to what an earlier one found (a network interface to its PCI function). Then the records
/// become devices of the store, the root first and each parent directly followed by what is below it. Between the two
/// what the user does not want is left out, and pseudonyms are put in.

#include "libMachine/MachineCollector.h"

#include <fmt/format.h>

#include <algorithm>
#include <new>

#include "libCommon/io/FileLoader.h"
#include "libMachine/collect/CollectContext.h"
#include "libMachine/collect/SourceChoice.h"
#include "libMachine/collect/SourceTable.h"
#include "libMachine/record/Anonymize.h"
#include "libMachine/smbios/FirmwareTable.h"
#include "libMachine/smbios/SmbiosTable.h"
#include "libSystemState/StateManager.h"

namespace vrx {

namespace {

constexpr const char* NOTHING = "/dev/null";  // no folder, so a root folder in which all is absent
constexpr std::size_t LARGEST_CPUINFO = std::size_t{16} * 1024 * 1024;

std::vector<char> bufferOf(const std::string& bytes) { return {bytes.begin(), bytes.end()}; }

const std::string TABLE = "/sys/firmware/dmi/tables/DMI";

/// What nothing but the table tells of.
LeftOut onlyInTable(const char* words) {
    return {words, {u"MemoryModule", u"MemoryArray", u"Slot", u"PowerSupply", u"Cooling", u"ManagementController"}};
}

/// What other sources tell of may say less without the table.
void addLessDetail(CollectContext& context, const CollectNote& note) {
    static constexpr StringView TOLD_OF[] = {u"System", u"Chassis",   u"Motherboard", u"Firmware",
                                             u"Memory", u"Processor", u"Cache",       u"Battery"};
    CapabilityImp types;
    for (const StringView type : TOLD_OF) {
        types = types | CapabilityImp(type);
    }
    context.recording.addUnread(
        {String::UTF8Decode(note.path), types, String::UTF8Decode(note.detail), {String(UnreadSource::ANY_PROPERTY)}});
}

/// The bytes of the saved file's table, or else of the machine's own.
std::string tableBytes(CollectContext& context, const std::string& savedPath) {
    if (savedPath.empty()) {
        RootFolder::Access access{};
        std::string bytes = context.root.bytes(TABLE, SmbiosTable::LARGEST, &access);
        context.noteAccess(TABLE, access, onlyInTable("memory modules, slots and sockets, power supplies"));
        return bytes;
    }
    std::string file;
    String error;
    if (!loadFile(String::UTF8Decode(savedPath), file, error)) {
        context.note(savedPath, CollectNote::Reason::Unreadable, error.toUtf8(),
                     onlyInTable("everything that the SMBIOS table tells"));
    }
    return std::string(tableInFile(file).substr(0, SmbiosTable::LARGEST));
}

void readSmbios(CollectContext& context, const std::string& savedPath) {
    const std::size_t heard = context.notes.size();
    const SmbiosTable table(bufferOf(tableBytes(context, savedPath)));
    context.smbios = readSmbiosFacts(table);
    if (table.isDamaged()) {
        context.note(savedPath.empty() ? TABLE : savedPath, CollectNote::Reason::Damaged, "the table is damaged",
                     onlyInTable("what comes behind its last complete structure"));
    } else if (!savedPath.empty() && table.structures().empty()) {
        context.note(savedPath, CollectNote::Reason::SaysNothing, "holds no SMBIOS table",
                     onlyInTable("everything that it tells"));
    }
    if (context.notes.size() > heard) {
        addLessDetail(context, context.notes.back());
    }
}

void readCpuInfo(CollectContext& context) {
    static const std::string PATH = "/proc/cpuinfo";
    RootFolder::Access access{};
    context.cpuInfo = CpuInfo(bufferOf(context.root.bytes(PATH, LARGEST_CPUINFO, &access)));
    context.noteAccess(PATH, access, {"what the processors are", {u"Processor"}, {UnreadSource::ANY_PROPERTY}});
}

LeftOut leftOutOf(const Source& source, std::vector<StringView> keys) {
    std::vector<StringView> types(source.types.begin(), source.types.end());
    std::erase(types, StringView());
    return {std::string(source.description), std::move(types), std::move(keys)};
}

/// Names the files that the source may not read, in one note, but for those that it named itself.
void noteDenied(CollectContext& context, const Source& source) {
    std::vector<std::string> denied = context.root.takeDenied();
    std::erase_if(denied, [&context](const std::string& path) {
        return std::ranges::any_of(context.notes, [&path](const CollectNote& note) {
            return path.starts_with(note.path.substr(0, note.path.find('*')));
        });
    });
    if (denied.empty()) {
        return;
    }
    LeftOut lost = leftOutOf(source, {UnreadSource::ANY_PROPERTY});
    lost.words = fmt::format("properties of {}{}", source.description,
                             denied.size() == 1 ? "" : fmt::format("; so are {} more files", denied.size() - 1));
    context.noteAccess(denied.front(), RootFolder::Access::Denied, lost);
}

/// What a source has found stays when it fails. Without memory nothing can be relied on, so that is not held up.
void runSource(CollectContext& context, const Source& source) {
    try {
        source.collect(context);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& failure) {
        context.note("source " + std::string(source.name), CollectNote::Reason::Unreadable, failure.what(),
                     leftOutOf(source, {}));
    }
    noteDenied(context, source);
}

void runSources(CollectContext& context, const SourceChoice& choice) {
    const std::span<const Source> all = sources();
    context.root.takeDenied();
    for (std::size_t number = 0; number < all.size(); ++number) {
        if (choice.runs(number)) {
            context.recording.setSource(static_cast<unsigned>(number));
            runSource(context, all[number]);
        }
    }
}

/// The root device is always recorded; alone and without properties it says nothing, nor does the operating system say
/// what it runs on.
bool saysSomething(const Recording& recording) {
    for (std::size_t place = 0; place < recording.size(); ++place) {
        const DeviceRecord& device = recording.at(place);
        if (place == 0 ? !device.properties.empty() : device.type != u"OperatingSystem") {
            return true;
        }
    }
    return false;
}

/// What the notes say that the recording lacks goes with it.
void addUnread(const std::vector<CollectNote>& notes, Recording& recording) {
    for (const CollectNote& note : notes) {
        if (!note.types.isEmpty()) {
            recording.addUnread(
                {String::UTF8Decode(note.path), note.types, String::UTF8Decode(note.detail), note.properties});
        }
    }
}

}  // namespace

std::vector<CollectSource> collectSources() {
    std::vector<CollectSource> list;
    for (const Source& source : sources()) {
        list.push_back({source.name, source.description});
    }
    return list;
}

std::optional<UnknownCollectName> unknownName(const CollectOptions& options) {
    return SourceChoice::unknownName(options);
}

std::string noteText(const CollectNote& note) {
    return fmt::format("{}: {}; left out: {}", note.path, note.detail, note.lost);
}

bool collectMachine(StateManager& store, const CollectOptions& options, std::vector<CollectNote>& notes) {
    VRX_ASSERT(store.deviceCount() == 0);
    const SourceChoice choice(options);
    const RootFolder root(options.isTableOnly() ? std::string(NOTHING) : options.root);
    CollectContext context(root, notes);
    if (!options.isTableOnly() && root.list("/sys").empty() && root.list("/proc").empty()) {
        context.note(root.folder(), CollectNote::Reason::Absent, "neither /sys nor /proc can be read in this folder",
                     "everything");
        return false;
    }
    if (choice.readsTable()) {
        readSmbios(context, options.smbiosPath);
    }
    if (choice.readsTable() && !options.isTableOnly()) {
        readCpuInfo(context);
    }
    const std::size_t heard = notes.size();
    runSources(context, choice);
    if (options.isTableOnly()) {
        notes.resize(heard);  // nobody expects the files of a machine beside its table
    }
    if (!saysSomething(context.recording)) {
        context.note(options.isTableOnly() ? options.smbiosPath : root.folder(), CollectNote::Reason::SaysNothing,
                     "no source says anything about the machine", "everything");
        return false;
    }
    choice.apply(context.recording);
    addUnread(notes, context.recording);
    if (options.isAnonymous) {
        anonymize(context.recording);
    }
    context.recording.storeIn(store);
    return true;
}

}  // namespace vrx
