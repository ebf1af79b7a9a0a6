#include "libLint/LintMachine.h"

#include <algorithm>

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

constexpr std::size_t MOST_NEAR = 3;

/// "2900 MHz" has a frequency; a text or a number alone has none.
UnitKind kindOfText(StringView text) {
    const std::size_t blank = text.find(u' ');
    bool isNumber = false;
    if (blank != StringView::npos) {
        String(text.substr(0, blank)).strToReal64(&isNumber);
    }
    const std::optional<Unit> unit = isNumber ? Unit::lookupByString(text.substr(blank + 1)) : std::nullopt;
    return unit ? unit->type() : UnitKind::None;
}

bool hasCapable(const StateManager::DeviceArray& devices, const CapabilityImp& type) {
    return std::ranges::any_of(devices, [&type](const auto& device) { return type.isCapable(device->type()); });
}

/// Whether one is the other with something put before or behind it, in any letters: "Version" and "FirmwareVersion".
bool isPieceOf(StringView a, StringView b) {
    constexpr std::size_t SHORTEST = 4;
    const String left = foldCase(a);
    const String right = foldCase(b);
    return std::min(a.size(), b.size()) >= SHORTEST &&
           (left.view().find(right) != StringView::npos || right.view().find(left) != StringView::npos);
}

}  // namespace

const LintMachine::KeyFacts& LintMachine::factsOf(const CapabilityImp& type, StringView key) {
    const String id = concat(type.toString(), u"\n", key);
    if (const auto known = m_facts.find(id); known != m_facts.end()) {
        return known->second;
    }
    return m_facts.emplace(id, lookUp(type, key)).first->second;
}

LintMachine::KeyFacts LintMachine::lookUp(const CapabilityImp& type, StringView key) {
    KeyFacts facts;
    for (const auto& device : m_machine.devicesCapableOf(type)) {
        if (const IPropertyImp* const property = device->findProperty(key)) {
            facts.isKnown = true;
            facts.kinds.add(kindOfText(property->value().toString(true)));
        }
    }
    if (!facts.isKnown) {
        facts.near = nearKeys(type, key);
    }
    return facts;
}

std::vector<std::string> LintMachine::nearKeys(const CapabilityImp& type, StringView key) {
    std::vector<StringView> keys;
    if (m_searchesLeft-- <= 0) {
        return {};
    }
    for (const auto& device : m_machine.devicesCapableOf(type)) {
        for (const auto& property : device->properties(PropertyCategoryImp::ALL())) {
            if (std::ranges::find(keys, property->key().view()) == keys.end()) {
                keys.push_back(property->key());
            }
        }
    }
    std::vector<std::string> near;
    if (const StringView nearest = nearestName(key, keys); !nearest.empty()) {
        near.push_back(printable(nearest));
    }
    for (const StringView each : keys) {
        if (near.size() < MOST_NEAR && isPieceOf(key, each) && std::ranges::find(near, printable(each)) == near.end()) {
            near.push_back(printable(each));
        }
    }
    return near;
}

bool LintMachine::hasHwLocator(const CapabilityImp& type, StringView locator) const {
    return hasCapable(m_machine.devicesByHwLocator(locator), type);
}

bool LintMachine::hasOsLocator(const CapabilityImp& type, StringView locator) const {
    return hasCapable(m_machine.devicesByOsLocator(locator), type);
}

std::string LintMachine::nearest(StringView written, std::span<const StringView> names) {
    return m_searchesLeft-- > 0 ? printable(nearestName(written, names)) : std::string();
}

std::string LintMachine::nearHwLocator(const CapabilityImp& type, StringView locator) {
    std::vector<StringView> locators;
    for (const auto& device : m_machine.devicesCapableOf(type)) {
        locators.push_back(device->hwLocator());
    }
    return nearest(locator, locators);
}

std::string LintMachine::nearOsLocator(const CapabilityImp& type, StringView locator) {
    std::vector<StringView> locators;
    for (const auto& device : m_machine.devicesCapableOf(type)) {
        locators.push_back(device->osLocator());
    }
    return nearest(locator, locators);
}

}  // namespace vrx
