#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libLint/LintFindings.h"

namespace vrx {

/// The devices that must all be there at the same time, to find those that are asked for twice.
///
/// Each element needs a device of its own. For equal elements with a locator that is hardly meant, because a locator
/// names one device; equal elements without one are how several devices of a kind are asked for.
class RepeatedDevices {
public:
    /// Takes note of a `device` that stands neither in an alternative nor under a `not`.
    void add(const XmlElement& device, LintFindings& findings);

    /// Reports what was asked for several times on purpose.
    void report(LintFindings& findings) const;

private:
    struct Request {
        const XmlElement* first;
        std::size_t count;
    };
    std::unordered_map<String, std::size_t, HashFunc<String>> m_indexes;
    std::vector<Request> m_requests;
};

/// Finds alternatives of an `or` that are equal.
void checkAlternatives(const XmlElement& orElement, LintFindings& findings);

}  // namespace vrx
