/// Which parts cannot be told apart, and which of them are explained by another.
///
/// For every part P of the list: the parts that share an entry of the single-part table with P form P's group, each
/// name once, in table order. In a group of two or more the part with the most devices is the best match, if it is the
/// only one with that many; then every other part whose devices the best match has all is to be discarded. In a tie
/// nothing is. A group is recorded once, whichever of its parts it was found from.
///
/// A part that stands several times in the list gives the same group every time, and so do parts that stand in the same
/// entries of the table, so each set of entries is looked at once; every part has its log lines all the same. The
/// entries that hold a name are found through an
/// index, so that the cost grows with what is shared and not with the number of devices times the number of parts.

#include "libInventory/parts/AmbiguousParts.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <optional>
#include <vector>

#include "libCommon/text/TextHash.h"
#include "libInventory/parts/PartComparison.h"
#include "libInventory/support/InventoryLog.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

using PartSpec = Inventory::PartSpec;
using PartArray = Array<PartSpec>;

namespace {

using NameSet = boost::unordered_flat_set<StringView, TextHash>;

class AmbiguitySearch {
public:
    AmbiguitySearch(PartArray& discard, Array<PartArray>& groups, const Inventory::DeviceToPartsTable& table,
                    const PartInstances& fullParts)
        : m_discard(discard), m_groups(groups) {
        for (const PartSpec* const part : fullParts) {
            m_wanted.insert(part->name);
        }
        for (std::size_t i = 0; i < groups.size(); ++i) {
            m_groupsByHash[hashOfSet(groups[i])].push_back(i);
        }
        for (const auto& entry : table) {
            NameSet namesHere;
            for (const PartSpec& part : entry.value) {
                if (namesHere.insert(part.name).second) {
                    m_placesByName[part.name].entries.push_back(&entry.value);
                }
            }
        }
    }

    void examine(const PartSpec& part) {
        const auto at = m_placesByName.find(part.name);
        if (at == m_placesByName.end()) {
            return;
        }
        Places& places = at->second;
        if (!places.examined) {
            const auto [known, isNew] = m_examinedByEntries.try_emplace(places.entries, m_examined.size());
            places.examined = known->second;
            if (isNew) {
                m_examined.push_back(examineEntries(places.entries));
                return;
            }
        }
        if (inventoryLog().isEnabled(LogPriority::Debug)) {
            logExamined(m_examined[*places.examined]);
        }
    }

private:
    /// The lists of the table that hold a part: all that its group depends on.
    using Entries = std::vector<const PartArray*>;

    struct Places {
        Entries entries;
        std::optional<std::size_t> examined;  ///< index in m_examined
    };

    /// What became of a set of entries, for the log lines of the next part that stands in the same.
    struct Examined {
        std::vector<StringView> names;
        StringView bestName;
        std::size_t bestDevices = 0;
        bool hasBest = false;
    };

    Examined examineEntries(const Entries& entries) {
        Examined examined;
        PartArray group;
        collectGroup(entries, group, examined.names);
        if (group.size() < 2) {
            return examined;
        }
        chooseDiscards(group, examined);
        std::vector<std::size_t>& likely = m_groupsByHash[hashOfSet(group)];
        const bool isKnown = std::any_of(likely.begin(), likely.end(),
                                         [&](std::size_t index) { return samePartSet(m_groups[index], group); });
        if (!isKnown) {
            VRX_LOG(inventoryLog(), LogPriority::Debug,
                    u"UUT: Non-duplicate ambiguous parts found: " << listOf(examined.names));
            likely.push_back(m_groups.size());
            m_groups.append(std::move(group));
        }
        return examined;
    }

    static String listOf(const std::vector<StringView>& names) {
        String text;
        for (const StringView name : names) {
            text.append(text.isEmpty() ? StringView() : StringView(u", ")).append(name);
        }
        return text;
    }

    static void logName(StringView name) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u" matching ambiguous name: " << name);
    }

    static void logBest(const Examined& examined) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u" Least ambiguous (best match) part: " << examined.bestName << u" matched: " << examined.bestDevices
                                                        << u" devices");
    }

    static void logExamined(const Examined& examined) {
        for (const StringView name : examined.names) {
            logName(name);
        }
        if (examined.hasBest) {
            logBest(examined);
        }
    }

    /// The same for all orders of the same names.
    static std::size_t hashOfSet(const PartArray& group) noexcept {
        std::size_t sum = 0;
        for (const PartSpec& part : group) {
            sum += hashOf(part.name.view());
        }
        return sum;
    }

    /// The group and, beside it, the names of its parts.
    void collectGroup(const Entries& entries, PartArray& group, std::vector<StringView>& names) const {
        NameSet joined;
        for (const PartArray* const entry : entries) {
            for (const PartSpec& candidate : *entry) {
                if (m_wanted.contains(candidate.name) && joined.insert(candidate.name).second) {
                    logName(candidate.name);
                    group.append(candidate);
                    names.push_back(candidate.name);
                }
            }
        }
    }

    void chooseDiscards(const PartArray& group, Examined& examined) {
        const auto most = std::max_element(group.begin(), group.end(), [](const PartSpec& a, const PartSpec& b) {
            return a.devices.size() < b.devices.size();
        });
        const auto equals = std::count_if(group.begin(), group.end(), [&](const PartSpec& part) {
            return part.devices.size() == most->devices.size();
        });
        if (equals != 1) {
            return;
        }
        examined.bestName = examined.names[static_cast<std::size_t>(most - group.begin())];
        examined.bestDevices = most->devices.size();
        examined.hasBest = true;
        logBest(examined);
        NameSet devicesOfBest;
        for (const String& guid : most->devices) {
            devicesOfBest.insert(guid);
        }
        for (const PartSpec& part : group) {
            const bool explained = std::all_of(part.devices.begin(), part.devices.end(),
                                               [&](const String& guid) { return devicesOfBest.contains(guid.view()); });
            if (&part != &*most && explained && !containsPart(m_discard, part)) {
                m_discard.append(part);
                VRX_LOG(inventoryLog(), LogPriority::Debug, u" part to discard: " << part.name);
            }
        }
    }

    PartArray& m_discard;
    Array<PartArray>& m_groups;
    NameSet m_wanted;
    boost::unordered_flat_map<StringView, Places, TextHash> m_placesByName;
    boost::unordered_flat_map<Entries, std::size_t> m_examinedByEntries;  ///< index in m_examined
    std::vector<Examined> m_examined;
    boost::unordered_flat_map<std::size_t, std::vector<std::size_t>> m_groupsByHash;
};

void logFindings(const PartArray& discard, const Array<PartArray>& groups, const StateManager& state) {
    const auto logPart = [](const char16_t* word, const PartSpec& part) {
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                word << part.name << u" id: " << part.id << u" desc: " << part.description);
    };
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"findAmbiguousParts() end ambiguousParts.size(): " << groups.size());
    for (std::size_t g = 0; g < groups.size(); ++g) {
        VRX_LOG(inventoryLog(), LogPriority::Debug, u"Ambigous group " << g);
        for (const PartSpec& part : groups[g]) {
            logPart(u" part: ", part);
            logPartDevices(part, state);
        }
    }
    for (const PartSpec& part : discard) {
        logPart(u" Discard part: ", part);
    }
}

}  // namespace

void logPartDevices(const PartSpec& part, const StateManager& state) {
    for (const String& guid : part.devices) {
        if (const boost::shared_ptr<IDeviceImp> device = state.deviceByGuid(guid)) {
            VRX_LOG(inventoryLog(), LogPriority::Debug, u"  " << device->hwLocator() << u" - " << device->name());
        }
    }
}

void findAmbiguousParts(PartArray& discard, Array<PartArray>& ambiguousGroups,
                        const Inventory::DeviceToPartsTable& singlePartTable, const PartInstances& fullParts,
                        const StateManager& state) {
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"findAmbiguousParts() ambiguousParts.size(): " << ambiguousGroups.size());
    if (fullParts.empty()) {
        VRX_LOG(inventoryLog(), LogPriority::Error, u"findAmbiguousParts() Parts check failed. Unknown Logic error");
        return;
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug, u"Parts check failed. Potential ambiguous parts:.");
    AmbiguitySearch search(discard, ambiguousGroups, singlePartTable, fullParts);
    for (std::size_t i = 0; i < fullParts.size(); ++i) {
        const PartSpec& part = *fullParts[i];
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"Possible ambiguous name: " << part.name << u" at index: " << i
                                             << u" looking for matching ambiguous parts");
        search.examine(part);
    }
    if (inventoryLog().isEnabled(LogPriority::Debug)) {
        logFindings(discard, ambiguousGroups, state);
    }
}

}  // namespace vrx
