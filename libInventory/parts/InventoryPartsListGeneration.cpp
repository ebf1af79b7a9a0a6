/// Which parts, and how many of each, the machine holds.
///
/// 1. Each part is counted on its own: scripts of 1, 2, 3 ... copies are checked until one is not met. The checks share
///    one table, which so learns which devices each part could claim.
/// 2. All instances together are checked at once, behind the base script.
/// 3. When that fails, parts that claim the same devices are searched for. Those that another part clearly explains are
///    dropped, one copy each, and the list is checked again. With nothing dropped that would be the same check.
///
/// A part of a single device needs no more than two of these checks: of a part that a list of devices satisfies, the
/// first copy takes the first device, and so on, until there are as many copies as devices.
///
/// What one `device` element matches depends neither on the number of copies nor on the other parts, so all checks
/// share a cache of candidates.
///
/// A part that needs no device would match for ever; it is given up once more copies have matched than there are
/// devices. Where every device of a part lies under a `not` one copy tells: a forbidden device counts as found when
/// anything ever matched it, so copies do not take devices from each other.

#include <utility>
#include <vector>

#include "libCommon/text/UuCode.h"
#include "libInventory/Inventory.h"
#include "libInventory/parts/AmbiguousParts.h"
#include "libInventory/parts/PartComparison.h"
#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/MatchCache.h"
#include "libRegex/Regex.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using PartSpec = Inventory::PartSpec;
using PartArray = Array<PartSpec>;

namespace {

String wrapped(StringView content) {
    return concat(u"<", vocabulary::INVENTORY_CHECK, u">", content, u"</", vocabulary::INVENTORY_CHECK, u">");
}

String repeated(StringView text, std::size_t times) {
    String all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        all.append(text);
    }
    return all;
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

/// The one `device` element that is all that the element asks for; null when there is more to it, or less.
const XmlElement* onlyDevice(const XmlElement& element) {
    const XmlElement* const child = element.FirstChildElement();
    if (child == nullptr || child->NextSiblingElement() != nullptr) {
        return nullptr;
    }
    switch (vocabulary::kindOf(*child)) {
        case vocabulary::ElementKind::Device: return child;
        case vocabulary::ElementKind::Part:
            return vocabulary::kindOf(element) == vocabulary::ElementKind::InventoryCheck ? onlyDevice(*child)
                                                                                          : nullptr;
        case vocabulary::ElementKind::And: return onlyDevice(*child);
        default: return nullptr;
    }
}

void logIterations(const PartSpec& part, std::uint32_t count) {
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"checkPart : " << part.name << u" iterations: " << count);
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
        : m_baseScript(baseScript), m_state(state), m_store(state != nullptr ? *state : StateManager::instance()) {
        m_matchCache.index(m_singlePartTable);
    }

    const StateManager& store() const noexcept { return m_store; }

    /// Which parts could claim each device on their own.
    const DeviceToPartsTable& singlePartTable() const noexcept { return m_singlePartTable; }

    /// How many instances of the part the machine holds; what its devices could be goes into the table.
    std::uint32_t countInstances(const PartSpec& part) {
        if (!holds(part.xml, m_singlePartTable)) {
            logIterations(part, 1);
            return 0;
        }
        XmlDocument copy;
        const String script = wrapped(part.xml);
        copy.Parse(needsUuEncode(script) ? toXmlSafe(script) : script);
        if (m_store.deviceCount() == 0 || !needsDevice(*copy.RootElement())) {
            return noInstanceOf(part);
        }
        const std::uint32_t most = copiesOfOneDevice(*copy.RootElement());
        logChecks(part, 2, most);
        if (most == 1 || (most > 1 && holds(repeated(part.xml, most), m_singlePartTable))) {
            logChecks(part, most + 1, most + 2);
            logIterations(part, most + 1);
            return most;
        }
        return countOneByOne(part);
    }

    bool fullPartsCheck(const PartInstances& fullParts, DeviceToPartsTable& table, Array<DeviceSpec>& extraDevices) {
        String script = scriptOf(fullParts);
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"fullPartsCheck script: " << script);
        const bool result = matchParts(std::move(script), table, &extraDevices, m_state, &m_matchCache);
        if (inventoryLog().isEnabled(LogPriority::Debug)) {
            logMatchedParts(table, m_store);
        }
        return result;
    }

private:
    /// There may be as many instances as pairs of parts and devices, so the text is made in one piece.
    String scriptOf(const PartInstances& fullParts) const {
        std::size_t size = wrapped(m_baseScript).size();
        for (const PartSpec* const part : fullParts) {
            size += part->xml.size();
        }
        String script;
        script.reserve(size);
        script.append(u"<").append(vocabulary::INVENTORY_CHECK).append(u">").append(m_baseScript);
        for (const PartSpec* const part : fullParts) {
            script.append(part->xml);
        }
        return script.append(u"</").append(vocabulary::INVENTORY_CHECK).append(u">");
    }

    bool holds(const String& content, DeviceToPartsTable& table) {
        return matchParts(wrapped(content), table, nullptr, m_state, &m_matchCache);
    }

    /// The same for a part of which one copy is there.
    std::uint32_t countOneByOne(const PartSpec& part) {
        String copies = repeated(part.xml, 2);
        std::uint32_t count = 2;
        for (; holds(copies, m_singlePartTable); ++count) {
            if (count > m_store.deviceCount()) {
                return noInstanceOf(part);
            }
            copies.append(part.xml);
        }
        logIterations(part, count);
        return count - 1;
    }

    static std::uint32_t noInstanceOf(const PartSpec& part) {
        VRX_LOG(inventoryLog(), LogPriority::Warning,
                u"checkPart : " << part.name << u" needs no device of the machine, so it has no instance");
        return 0;
    }

    /// The log is told of a check of every number of copies: those from `first` on, before `end`, are made for their
    /// lines.
    void logChecks(const PartSpec& part, std::uint32_t first, std::uint32_t end) {
        if (inventoryLog().isEnabled(LogPriority::Info)) {
            DeviceToPartsTable unread;
            for (std::uint32_t count = first; count < end; ++count) {
                holds(repeated(part.xml, count), unread);
            }
        }
    }

    /// How many devices a part of a single one may have, once it was checked; 0 for other parts.
    std::uint32_t copiesOfOneDevice(const XmlElement& copy) const {
        const XmlElement* const device = onlyDevice(copy);
        const SharedLists::Pointer devices = device != nullptr ? m_matchCache.find(device->toString()) : nullptr;
        return devices != nullptr ? static_cast<std::uint32_t>(devices->size()) : 0;
    }

    const String& m_baseScript;
    StateManager* m_state;
    StateManager& m_store;
    DeviceToPartsTable m_singlePartTable{32};
    MatchCache m_matchCache;
};

namespace {

/// Drops the first copy that is left of each part of the list; false when there is none to drop.
bool discardCopies(PartInstances& fullParts, const PartArray& discard) {
    HashTable<String, std::vector<std::size_t>> places;  // of each name, the first one last
    for (std::size_t i = fullParts.size(); i-- > 0;) {
        places[fullParts[i]->name].push_back(i);
    }
    std::vector<bool> isDropped(fullParts.size());
    for (const PartSpec& part : discard) {
        std::vector<std::size_t>* const left = places.find(part.name);
        if (left != nullptr && !left->empty()) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"2nd Try Discarding part name: " << part.name << u" xml: " << fullParts[left->back()]->xml);
            isDropped[left->back()] = true;
            left->pop_back();
        }
    }
    std::size_t at = 0;
    return std::erase_if(fullParts, [&](const PartSpec*) { return isDropped[at++]; }) > 0;
}

}  // namespace

bool Inventory::generatePartsList(const Array<PartSpec>& partsList, const String& baseScript,
                                  Array<PartSpec>& generatedParts, DeviceToPartsTable& deviceToParts,
                                  Array<Array<PartSpec>>& ambiguousGroups, Array<DeviceSpec>& extraDevices,
                                  StateManager* state) {
    PartsChecks checks(baseScript, state);
    PartInstances fullParts;
    for (const PartSpec& part : partsList) {
        const std::uint32_t count = checks.countInstances(part);
        for (std::uint32_t i = 0; i < count; ++i) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"Appending fullPart name: " << part.name << u" xml: " << part.xml);
            fullParts.push_back(&part);
        }
    }
    const bool isFirstFill = deviceToParts.isEmpty();
    const std::size_t givenUpBefore = Regex::exceededCount();
    if (checks.fullPartsCheck(fullParts, deviceToParts, extraDevices)) {
        distinctParts(generatedParts, deviceToParts);
        return true;
    }
    // The same check once more finds the same, where it ran and had no more to tell than that.
    const bool isRepeatable = isFirstFill && !deviceToParts.isEmpty() && Regex::exceededCount() == givenUpBefore &&
                              !inventoryLog().isEnabled(LogPriority::Info);
    PartArray discard;
    findAmbiguousParts(discard, ambiguousGroups, checks.singlePartTable(), fullParts, checks.store());
    bool succeeded = false;
    if (discardCopies(fullParts, discard) || !isRepeatable) {
        deviceToParts.clear();
        extraDevices.clear();
        succeeded = checks.fullPartsCheck(fullParts, deviceToParts, extraDevices);
    }
    ambiguousGroups = Array<PartArray>();
    if (!succeeded) {
        findAmbiguousParts(discard, ambiguousGroups, checks.singlePartTable(), fullParts, checks.store());
        return false;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"2nd Try succeeded, clearing ambigous parts list");
    distinctParts(generatedParts, deviceToParts);
    return true;
}

}  // namespace vrx
