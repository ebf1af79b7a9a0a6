#pragma once

#include <boost/shared_ptr.hpp>

#include "libCommon/containers/Array.h"
#include "libCommon/containers/HashTable.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Which devices satisfy a `device` element, by the element's XML text. Runs over scripts made of the same parts, on
/// the same store and with the same flags, share one: the answer depends on nothing else.
///
/// Only elements outside of alternatives are looked up, and only in runs whose findings nobody reads: tips are not
/// repeated from the cache.
class MatchCache {
public:
    using DeviceArray = Array<boost::shared_ptr<IDeviceImp>>;

    /// The devices known to satisfy the element; null when nobody has asked yet.
    const DeviceArray* find(const String& elementText) const { return m_answers.find(elementText); }

    const DeviceArray& keep(const String& elementText, DeviceArray devices) {
        DeviceArray& kept = m_answers[elementText];
        kept = std::move(devices);
        return kept;
    }

private:
    HashTable<String, DeviceArray> m_answers;
};

}  // namespace vrx
