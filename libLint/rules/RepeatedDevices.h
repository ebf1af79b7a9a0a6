#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

/// The devices that must all be there at the same time, to find those that are asked for twice: equal elements, by
/// their XML text.
class RepeatedDevices {
public:
    struct Request {
        const XmlElement* first;
        std::size_t count;
    };

    /// Takes note of a `device`; the first one that it equals, null when it is the first.
    const XmlElement* add(const XmlElement& device) {
        const auto [entry, isNew] = m_indexes.try_emplace(device.toString(), m_requests.size());
        if (isNew) {
            m_requests.push_back({&device, 1});
            return nullptr;
        }
        Request& request = m_requests[entry->second];
        ++request.count;
        return request.first;
    }

    const std::vector<Request>& requests() const noexcept { return m_requests; }

private:
    std::unordered_map<String, std::size_t, HashFunc<String>> m_indexes;
    std::vector<Request> m_requests;
};

}  // namespace vrx
