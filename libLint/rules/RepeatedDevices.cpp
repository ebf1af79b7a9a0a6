#include "libLint/rules/RepeatedDevices.h"

#include <fmt/format.h>

#include "libInventory/script/ScriptElement.h"

namespace vrx {

namespace {

bool hasLocator(const XmlElement& device) noexcept {
    return !attributeOf(device, u"hwlocator").empty() || !attributeOf(device, u"oslocator").empty();
}

}  // namespace

void RepeatedDevices::add(const XmlElement& device, LintFindings& findings) {
    const auto [entry, isNew] = m_indexes.try_emplace(device.toString(), m_requests.size());
    if (isNew) {
        m_requests.push_back({&device, 1});
        return;
    }
    Request& request = m_requests[entry->second];
    ++request.count;
    if (hasLocator(device)) {
        findings.add(LintRule::DuplicateDevice, device,
                     fmt::format("the same device is asked for at {}, and the script needs two of it; remove one",
                                 placeOf(*request.first)));
    }
}

void RepeatedDevices::report(LintFindings& findings) const {
    for (const Request& request : m_requests) {
        if (request.count > 1 && !hasLocator(*request.first)) {
            findings.add(LintRule::RepeatedDevice, *request.first,
                         fmt::format("this device is asked for {} times, which needs {} such devices", request.count,
                                     request.count));
        }
    }
}

void checkAlternatives(const XmlElement& orElement, LintFindings& findings) {
    const XmlElement* const first = orElement.FirstChildElement();
    if (first == nullptr || first->NextSiblingElement() == nullptr) {
        return;
    }
    std::unordered_map<String, const XmlElement*, HashFunc<String>> seen;
    for (const XmlElement* child = first; child != nullptr; child = child->NextSiblingElement()) {
        const auto [entry, isNew] = seen.try_emplace(child->toString(), child);
        if (!isNew) {
            findings.add(LintRule::EqualAlternatives, *child,
                         fmt::format("this alternative equals the one at {}; remove one", placeOf(*entry->second)));
        }
    }
}

}  // namespace vrx
