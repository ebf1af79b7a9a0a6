#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/Export.h"
#include "libInventory/ImportReport.h"
#include "libMachine/RecordingFormat.h"
#include "libSystemState/Forward.h"

/// Recorded machines, whoever recorded them, as devices of a store.
///
/// SysInfo XML is read strictly, as the engine reads it. What other programs wrote is turned into what `collectMachine`
/// would have recorded on the same machine, as far as it tells; damaged text is mended, and what was mended or left out
/// is told by kind.
///
///     StateManager store;
///     const ImportResult result = importMachineFile("server.lshw.json", store);
///     for (const ImportDamage& damage : result.damage) {
///         std::cerr << damageText(damage) << '\n';
///     }
///     if (result.isImported()) {
///         std::cout << formatTitle(result.format) << ", " << store.deviceCount() << " devices\n";
///     }
///
/// Nothing here is kept between calls: any number of threads may import, each into a store of its own.
namespace vrx {

struct ImportOptions {
    std::optional<RecordingFormat> format = std::nullopt;  ///< none to go by the content
    bool isAnonymous = false;  ///< with pseudonyms for what identifies the machine (see anonymizeMachine)
    unsigned threads = 1;      ///< how many may read SysInfo XML of a file at once
};

/// What was wrong with a text and could be helped.
enum class DamageKind : std::uint8_t {
    BytesNotUtf8,
    ControlCharacters,
    XmlCutOff,
    XmlNotClosed,
    XmlNoTag,
    XmlTooDeep,
    JsonNoComma,
    JsonCutOff,
    JsonNotParsed,
    StructureHead,  ///< of dmidecode's text, as what follows
    StructureLine,
    StructureNumber,
    StructureHandle,  ///< two structures have it
    StructuresMissing,
    TableComplaint,  ///< dmidecode's own words about the table that it read
    TableCutOff,
    ArchiveCutOff,
    ResourceLeftOut,  ///< of a Redfish service, as what follows: no JSON, no regular file, or too large
    ResourceMissing,  ///< others refer to it
    ResourceTwice,
    PartNotHealthy,     ///< no damage of the recording: it says that something is wrong with a part
    ModuleCalledEmpty,  ///< lshw says "[empty]" of a memory module that has a maker's part or serial number
    SizeMissing,        ///< of an installed memory module or a cache
    RepeatedSerialNumber,
    RepeatedLocator,
};

/// All damage of one kind.
struct ImportDamage {
    DamageKind kind{};
    std::size_t count = 0;
    std::size_t firstLine = 0;  ///< of the text, from 1; 0 where that is not known
    std::string firstPlace;     ///< a field's name or a locator; may be empty
};

/// "bytes that are no UTF-8, replaced".
VRX_EXPORT std::string_view damageTitle(DamageKind kind) noexcept;

/// "bytes that are no UTF-8, replaced: 3 (first: line 12)".
VRX_EXPORT std::string damageText(const ImportDamage& damage);

struct ImportResult {
    RecordingFormat format = RecordingFormat::Unknown;  ///< what it was taken for; Unknown is read as SysInfo XML

    /// Why nothing was imported, and how much was. Of what other programs wrote it tells the failure and the number of
    /// devices: damage is mended, so that only a file that cannot be read or a text without any device fails.
    ImportReport report;

    /// Whether SysInfo XML in memory is UTF-8. Any other is Malformed without the engine having been asked, because it
    /// would take replaced characters for the text's own.
    bool isUtf8 = true;

    std::vector<ImportDamage> damage;  ///< in the order in which the kinds were met; of other programs' formats only

    bool isImported() const noexcept { return report.failure == ImportReport::Failure::None; }
};

/// Adds the recorded machine in `bytes` to the store. After a failure the store may hold the devices before it.
///
/// Requires: the store is empty.
VRX_EXPORT ImportResult importMachine(std::string_view bytes, StateManager& store, const ImportOptions& options = {});

/// The same for a file, or for a folder with the resources of a Redfish service; its path is UTF-8. Pipes are read to
/// their end.
VRX_EXPORT ImportResult importMachineFile(const std::string& path, StateManager& store,
                                          const ImportOptions& options = {});

/// Adds the devices of `machine` to an empty store, with pseudonyms in the place of what identifies one piece of
/// hardware or its owner: serial numbers, asset tags, UUIDs, WWNs, hardware addresses and host names, as values and
/// wherever they stand in names and locators. Equal stays equal, within a machine and between machines.
VRX_EXPORT void anonymizeMachine(const StateManager& machine, StateManager& store);

}  // namespace vrx
