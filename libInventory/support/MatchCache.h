#pragma once

#include <utility>

#include "libCommon/containers/HashTable.h"
#include "libCommon/text/String.h"
#include "libInventory/support/SharedLists.h"

namespace vrx {

/// Which devices satisfy a `device` element, by the element's XML text. Runs over scripts made of the same parts, on
/// the same store and with the same flags, share one: the answer depends on nothing else.
///
/// Only elements outside of alternatives are looked up, and only in runs whose findings nobody reads: tips are not
/// repeated from the cache.
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

private:
    SharedLists m_lists;
    HashTable<String, SharedLists::Pointer> m_answers;
};

}  // namespace vrx
