#pragma once

#include <memory>
#include <utility>

#include "libCommon/containers/HashTable.h"
#include "libCommon/text/String.h"
#include "libInventory/Inventory.h"
#include "libInventory/support/ListedParts.h"
#include "libInventory/support/SharedLists.h"

namespace vrx {

class CandidatePools;

/// What runs over scripts made of the same parts, on the same store and with the same flags, share: which devices
/// satisfy a `device` element, by the element's XML text (the answer depends on nothing else), what the devices hold
/// that elements choose among, and which parts are listed in a table that they all fill.
///
/// Only elements outside of alternatives are looked up, and only in runs whose findings nobody reads: tips are not
/// repeated from the cache. Nobody is told anything during these runs, so the store stays what it is.
class MatchCache {
public:
    /// The devices known to satisfy the element; null when nobody has asked yet.
    SharedLists::Pointer find(const String& elementText) const {
        const SharedLists::Pointer* const known = m_answers.find(elementText);
        return known != nullptr ? *known : nullptr;
    }

    void keep(const String& elementText, SharedLists::DeviceArray devices) {
        m_answers.set(elementText, m_lists.share(std::move(devices)));
    }

    /// The pools that the elements of all runs choose in; null until a run makes them.
    std::shared_ptr<CandidatePools>& pools() noexcept { return m_pools; }

    /// From now on the lists of a table are looked up in an index. Requires: the table is empty, and lives and is
    /// filled, by runs with this cache alone, for as long as the cache is used.
    void index(const Inventory::DeviceToPartsTable& table) noexcept { m_indexedTable = &table; }

    /// The index of a table that has one; null otherwise.
    ListedParts* listedIn(const Inventory::DeviceToPartsTable& table) noexcept {
        return &table == m_indexedTable ? &m_listedParts : nullptr;
    }

private:
    SharedLists m_lists;
    HashTable<String, SharedLists::Pointer> m_answers;
    std::shared_ptr<CandidatePools> m_pools;
    const Inventory::DeviceToPartsTable* m_indexedTable = nullptr;
    ListedParts m_listedParts;
};

}  // namespace vrx
