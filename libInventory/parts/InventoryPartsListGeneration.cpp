/// Which parts, and how many of each, the machine holds.
///
/// 1. Each part is counted on its own: scripts of 1, 2, 3 ... copies are checked until one is not met. The checks share
///    one table, which so learns which devices each part could claim.
/// 2. All instances together are checked at once, behind the base script.
/// 3. When that fails, parts that claim the same devices are searched for. Those that another part clearly explains are
///    dropped, one copy each, and the list is checked again.
///
/// What one `device` element matches depends neither on the number of copies nor on the other parts, so all checks
/// share a cache of candidates.
///
/// A part that needs no device would match for ever; it is given up once more copies have matched than there are
/// devices. Where every device of a part lies under a `not` one copy tells: a forbidden device counts as found when
/// anything ever matched it, so copies do not take devices from each other.

#include "libInventory/Inventory.h"
#include "libInventory/parts/AmbiguousParts.h"
#include "libInventory/parts/PartComparison.h"
#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/MatchCache.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using PartSpec = Inventory::PartSpec;
using PartArray = Array<PartSpec>;

namespace {

String wrapped(StringView content) {
    return concat(u"<", vocabulary::INVENTORY_CHECK, u">", content, u"</", vocabulary::INVENTORY_CHECK, u">");
}

/// Appends every part of the table, in table order, that is not yet there with the same devices.
void distinctParts(PartArray& out, const Inventory::DeviceToPartsTable& table) {
    HashTable<String, PartArray> byName;
    for (const PartSpec& part : out) {
        byName[part.name].append(part);
    }
    for (const auto& entry : table) {
        for (const PartSpec& part : entry.value) {
            PartArray& sameName = byName[part.name];
            if (!containsPart(sameName, part)) {
                sameName.append(part);
                out.append(part);
            }
        }
    }
}

/// Whether each copy of the part takes a device of its own.
bool takesDevices(const PartSpec& part) {
    XmlDocument document;
    return !document.Parse(part.xml) || needsDevice(*document.RootElement());
}

void logMatchedParts(const Inventory::DeviceToPartsTable& table, const StateManager& state) {
    PartArray matched;
    distinctParts(matched, table);
    for (const PartSpec& part : matched) {
        VRX_LOG(
            inventoryLog(), LogPriority::Debug,
            u"fullPartsCheck() Matched part: " << part.name << u" id: " << part.id << u" desc: " << part.description);
        logPartDevices(part, state);
    }
}

}  // namespace

/// The checks of one generation, and what they share.
class Inventory::PartsChecks {
public:
    PartsChecks(const String& baseScript, StateManager* state)
        : m_baseScript(baseScript), m_state(state), m_store(state != nullptr ? *state : StateManager::instance()) {}

    const StateManager& store() const noexcept { return m_store; }

    /// How many instances of the part the machine holds; what its devices could be goes into the table.
    std::uint32_t countInstances(const PartSpec& part, DeviceToPartsTable& singlePartTable) {
        String copies = part.xml;
        std::uint32_t count = 1;
        while (matchParts(wrapped(copies), singlePartTable, nullptr, m_state, &m_matchCache)) {
            if (count > m_store.deviceCount() || (count == 1 && !takesDevices(part))) {
                VRX_LOG(inventoryLog(), LogPriority::Warning,
                        u"checkPart : " << part.name << u" needs no device of the machine, so it has no instance");
                return 0;
            }
            copies.append(part.xml);
            ++count;
        }
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"checkPart : " << part.name << u" iterations: " << count);
        return count - 1;
    }

    bool fullPartsCheck(const PartArray& fullParts, DeviceToPartsTable& table, Array<DeviceSpec>& extraDevices) {
        String content = m_baseScript;
        for (const PartSpec& part : fullParts) {
            content.append(part.xml);
        }
        const String script = wrapped(content);
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"fullPartsCheck script: " << script);
        const bool result = matchParts(script, table, &extraDevices, m_state, &m_matchCache);
        if (inventoryLog().isEnabled(LogPriority::Debug)) {
            logMatchedParts(table, m_store);
        }
        return result;
    }

private:
    const String& m_baseScript;
    StateManager* m_state;
    StateManager& m_store;
    MatchCache m_matchCache;
};

namespace {

void discardCopies(PartArray& fullParts, const PartArray& discard) {
    for (const PartSpec& part : discard) {
        for (std::size_t i = 0; i < fullParts.size(); ++i) {
            if (fullParts[i] == part) {
                VRX_LOG(inventoryLog(), LogPriority::Debug,
                        u"2nd Try Discarding part name: " << part.name << u" xml: " << fullParts[i].xml);
                fullParts.remove(i);
                break;
            }
        }
    }
}

}  // namespace

bool Inventory::generatePartsList(const Array<PartSpec>& partsList, const String& baseScript,
                                  Array<PartSpec>& generatedParts, DeviceToPartsTable& deviceToParts,
                                  Array<Array<PartSpec>>& ambiguousGroups, Array<DeviceSpec>& extraDevices,
                                  StateManager* state) {
    PartsChecks checks(baseScript, state);
    PartArray fullParts;
    DeviceToPartsTable singlePartTable(32);
    for (const PartSpec& part : partsList) {
        const std::uint32_t count = checks.countInstances(part, singlePartTable);
        for (std::uint32_t i = 0; i < count; ++i) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"Appending fullPart name: " << part.name << u" xml: " << part.xml);
            fullParts.append(part);
        }
    }
    if (checks.fullPartsCheck(fullParts, deviceToParts, extraDevices)) {
        distinctParts(generatedParts, deviceToParts);
        return true;
    }
    deviceToParts.clear();
    extraDevices.clear();
    PartArray discard;
    findAmbiguousParts(discard, ambiguousGroups, singlePartTable, fullParts, checks.store());
    discardCopies(fullParts, discard);
    const bool succeeded = checks.fullPartsCheck(fullParts, deviceToParts, extraDevices);
    ambiguousGroups = Array<PartArray>();
    if (!succeeded) {
        findAmbiguousParts(discard, ambiguousGroups, singlePartTable, fullParts, checks.store());
        return false;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"2nd Try succeeded, clearing ambigous parts list");
    distinctParts(generatedParts, deviceToParts);
    return true;
}

}  // namespace vrx
