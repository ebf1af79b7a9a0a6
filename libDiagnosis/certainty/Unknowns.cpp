#include "libDiagnosis/certainty/Unknowns.h"

#include <algorithm>

#include "libCommon/text/NearestName.h"
#include "libSystemState/UnreadSource.h"
#include "libSystemState/capabilities/CapabilityNames.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using Cause = Doubt::Cause;

Doubt doubtOf(Cause cause, const String& text, const String& reason = String()) {
    Doubt doubt;
    doubt.cause = cause;
    doubt.text = text;
    doubt.reason = reason;
    return doubt;
}

/// Whether the text may be meant for a type.
bool mayMean(const String& text, const CapabilityImp& type) {
    const CapabilityImp written(text);
    if (!written.isInvalid()) {
        return written.intersect(type);
    }
    const StringView near = nearestName(text, capabilityNames());
    return text.isEmpty() || (!near.empty() && CapabilityImp(near).intersect(type));
}

}  // namespace

Unknowns::Unknowns(const StateManager& machine, const ImportReport* import) : m_machine(machine) {
    const auto& devices = machine.devicesCapableOf(CapabilityImp::ALL());
    for (const auto& device : devices) {
        if (device->type().isInvalid()) {
            const String type = device->type().toString();
            m_unseen.push_back({Cause::UnknownType, type, type});
        }
    }
    m_hidesProperties = std::any_of(machine.unread().begin(), machine.unread().end(),
                                    [](const UnreadSource& unread) { return !unread.properties.isEmpty(); });
    if (import == nullptr) {
        return;
    }
    for (const ImportReport::PassedOver& one : import->passedOver) {
        if (one.kind != ImportReport::PassedOver::Kind::UnknownType) {
            m_unseen.push_back({Cause::PassedOver, one.element, one.type});
        }
    }
    const auto add = [&](std::uint32_t device, const String& key, const String& text) {
        if (device < devices.size()) {
            m_properties[devices[device].get()].push_back({key, text});
        }
    };
    for (const ImportReport::NoNumber& one : import->noNumbers) {
        add(one.device, one.key, one.text);
    }
    for (const ImportReport::Skipped& one : import->skipped) {
        add(one.device, one.propertiesBehind == 0 ? one.key : String(UnreadSource::ANY_PROPERTY), one.text);
    }
}

bool Unknowns::isEmpty() const noexcept {
    return m_machine.unread().isEmpty() && m_unseen.empty() && m_properties.empty();
}

std::optional<Doubt> Unknowns::unseen(const CapabilityImp& type, bool isStrict) const {
    for (const Unseen& one : m_unseen) {
        if (mayMean(one.type, type)) {
            return doubtOf(one.cause, one.text);
        }
    }
    for (const Unseen& one : m_unseen) {
        if (isStrict && CapabilityImp(one.type).isInvalid()) {
            return doubtOf(one.cause, one.text);
        }
    }
    return std::nullopt;
}

std::optional<Doubt> Unknowns::hidden(const CapabilityImp& type, bool isStrict) const {
    if (type.isInvalid() || type.isEmpty()) {
        return std::nullopt;
    }
    for (const UnreadSource& unread : m_machine.unread()) {
        if (unread.mayHide(type)) {
            return doubtOf(Cause::Unread, unread.source, unread.reason);
        }
    }
    return unseen(type, isStrict);
}

bool Unknowns::isPlaceTaken(const String& hwLocator, const CapabilityImp& type) const {
    if (hwLocator.isEmpty()) {
        return false;
    }
    const auto& there = m_machine.devicesByHwLocator(hwLocator);
    return std::count_if(there.begin(), there.end(),
                         [&](const auto& device) { return type.isCapable(device->type()); }) == 1;
}

std::optional<Doubt> Unknowns::hiddenOfAnyType() const {
    return m_unseen.empty() ? std::nullopt : std::optional(doubtOf(m_unseen.front().cause, m_unseen.front().text));
}

/// Whether no device of the type has that property.
bool Unknowns::isUntold(const CapabilityImp& type, StringView key) const {
    const auto [at, isNew] = m_untold.try_emplace({type.toString(), String(key)}, true);
    if (isNew) {
        const auto& devices = m_machine.devicesCapableOf(type);
        at->second = std::none_of(devices.begin(), devices.end(),
                                  [&](const auto& device) { return device->findProperty(key) != nullptr; });
    }
    return at->second;
}

// A property that the recording skipped is not there, nor is one that could not be read; a measurement without a number
// is there, with a wrong value.
std::optional<Doubt> Unknowns::property(const IDeviceImp& device, StringView key) const {
    const auto at = m_properties.find(&device);
    if (at != m_properties.end()) {
        for (const Property& one : at->second) {
            const bool isAny = one.key == UnreadSource::ANY_PROPERTY;
            if (isAny ? device.findProperty(key) == nullptr : one.key == key) {
                return doubtOf(Cause::NoNumber, one.text);
            }
        }
    }
    if (m_hidesProperties && device.findProperty(key) == nullptr) {
        for (const UnreadSource& unread : m_machine.unread()) {
            if (unread.mayHide(device.type(), key) ||
                (unread.leavesUntold(device.type()) && isUntold(device.type(), key))) {
                return doubtOf(Cause::Unread, unread.source, unread.reason);
            }
        }
    }
    return std::nullopt;
}

std::optional<Doubt> Unknowns::property(const CapabilityImp& covered, StringView key) const {
    for (const auto& [device, properties] : m_properties) {
        if (covered.isCapable(device->type()) || covered.intersect(device->capabilities())) {
            if (std::optional<Doubt> doubt = property(*device, key)) {
                return doubt;
            }
        }
    }
    for (const UnreadSource& unread : m_machine.unread()) {
        if (unread.mayHide(covered, key) || (unread.leavesUntold(covered) && isUntold(covered, key))) {
            return doubtOf(Cause::Unread, unread.source, unread.reason);
        }
    }
    return std::nullopt;
}

}  // namespace vrx
