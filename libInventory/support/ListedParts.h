#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <boost/unordered/unordered_flat_set.hpp>
#include <cstdint>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"

namespace vrx {

/// Which parts are listed under which devices of a table: runs of many parts that each could be every device do not
/// search the lists.
class ListedParts {
public:
    /// Notes a part under a device; false when it was there already.
    bool add(const String& guid, const String& part) {
        return m_pairs.insert(std::uint64_t{numberOf(m_devices, guid)} << 32 | numberOf(m_parts, part)).second;
    }

private:
    using Numbers = boost::unordered_flat_map<String, std::uint32_t, HashFunc<String>>;

    static std::uint32_t numberOf(Numbers& numbers, const String& text) {
        return numbers.try_emplace(text, static_cast<std::uint32_t>(numbers.size())).first->second;
    }

    Numbers m_devices;
    Numbers m_parts;
    boost::unordered_flat_set<std::uint64_t> m_pairs;
};

}  // namespace vrx
