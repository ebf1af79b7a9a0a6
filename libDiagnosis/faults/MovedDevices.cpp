#include "libDiagnosis/faults/MovedDevices.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "libDiagnosis/faults/AskedDevice.h"
#include "libDiagnosis/faults/DeviceTrial.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

constexpr StringView CLAIM_SEPARATOR = u"\x1F";

/// Trials cost an engine each; beyond so many nothing is sure.
constexpr std::size_t MOST_TRIALS = 4096;

/// Who asks for an identity, and who has it.
struct Claim {
    MissingElement* element = nullptr;
    bool isOnlyOne = true;  ///< no other element asks for it
    const IDeviceImp* device = nullptr;
    std::size_t devices = 0;
};

using Claims = std::map<String, Claim>;

String claimKey(StringView key, StringView text) { return concat(key, CLAIM_SEPARATOR, foldCase(text)); }

Claims claimsOf(std::vector<MissingElement>& missing) {
    Claims claims;
    for (MissingElement& one : missing) {
        for (const AskedProperty& property : *one.asks->properties) {
            const String text = isIdentity(property.key) ? property.literal() : String();
            if (!text.isEmpty()) {
                Claim& claim = claims[claimKey(property.key, text)];
                claim.isOnlyOne = claim.element == nullptr;
                claim.element = &one;
            }
        }
    }
    return claims;
}

void addDevices(Claims& claims, const StateManager& machine) {
    std::vector<StringView> keys;
    for (const auto& [key, claim] : claims) {
        const StringView name = key.view().substr(0, key.view().find(CLAIM_SEPARATOR));
        if (keys.empty() || keys.back() != name) {
            keys.push_back(name);
        }
    }
    for (const auto& device : machine.devicesCapableOf(CapabilityImp::ALL())) {
        for (const StringView key : keys) {
            const IPropertyImp* const property = device->findProperty(key);
            const auto at =
                property == nullptr ? claims.end() : claims.find(claimKey(key, property->value().toString(true)));
            if (at != claims.end() && at->second.element->type().isCapable(device->type())) {
                at->second.device = device.get();
                ++at->second.devices;
            }
        }
    }
}

/// Elements that ask for the same, and devices tried for them.
struct Kind {
    std::vector<MissingElement*> elements;
    std::vector<const IDeviceImp*> fitting;
};

std::vector<Kind> kindsOf(const std::vector<MissingElement*>& elements) {
    std::vector<Kind> kinds;
    std::unordered_map<std::size_t, std::size_t> indexes;
    for (MissingElement* const element : elements) {
        const auto [at, isNew] = indexes.try_emplace(element->asks->sort, kinds.size());
        if (isNew) {
            kinds.emplace_back();
        }
        kinds[at->second].elements.push_back(element);
    }
    return kinds;
}

/// False when there are too many.
bool tryAll(std::vector<Kind>& kinds, const std::vector<const IDeviceImp*>& devices, WantedDevices& asked) {
    if (kinds.size() * devices.size() > MOST_TRIALS) {
        return false;
    }
    for (Kind& kind : kinds) {
        const DeviceTrial& trial = asked.trialOf(*kind.elements.front()->element);
        std::ranges::copy_if(devices, std::back_inserter(kind.fitting),
                             [&trial](const IDeviceImp* device) { return trial.isMetBy(*device); });
    }
    return true;
}

void give(MissingElement& element, const IDeviceImp& device, FreeDevices& free) {
    element.device = &device;
    free.take(device);
}

/// Elements at whose place something else stands, and what that is.
class Exchange {
public:
    Exchange(std::vector<MissingElement*> elements, FreeDevices& free, WantedDevices& asked)
        : m_elements(std::move(elements)), m_free(free), m_asked(asked) {
        for (MissingElement* const element : m_elements) {
            const IDeviceImp* const there = free.at(element->asked(), element->type());
            m_there.emplace(element, there);
            m_asking.emplace(there, element);
        }
    }

    void find() {
        std::vector<const IDeviceImp*> devices;
        for (const MissingElement* const element : m_elements) {
            devices.push_back(m_there.at(element));
        }
        std::vector<Kind> kinds = kindsOf(m_elements);
        if (kinds.size() < 2 || !tryAll(kinds, devices, m_asked)) {
            return;
        }
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            for (const MissingElement* const element : kinds[i].elements) {
                m_kinds.emplace(element, &kinds[i]);
            }
        }
        for (MissingElement* const element : m_elements) {
            if (element->device == nullptr) {
                exchange(*element);
            }
        }
    }

private:
    void exchange(MissingElement& element) {
        const IDeviceImp* const there = m_there.at(&element);
        if (!m_free.isFree(*there)) {
            return;
        }
        for (const IDeviceImp* const fitting : m_kinds.at(&element)->fitting) {
            MissingElement& other = *m_asking.at(fitting);
            if (other.device == nullptr && m_free.isFree(*fitting) &&
                std::ranges::count(m_kinds.at(&other)->fitting, there) > 0) {
                give(element, *fitting, m_free);
                give(other, *there, m_free);
                return;
            }
        }
    }

    std::vector<MissingElement*> m_elements;
    FreeDevices& m_free;
    WantedDevices& m_asked;
    std::unordered_map<const MissingElement*, const IDeviceImp*> m_there;
    std::unordered_map<const IDeviceImp*, MissingElement*> m_asking;
    std::unordered_map<const MissingElement*, const Kind*> m_kinds;
};

/// Elements at whose place nothing stands.
class Removal {
public:
    Removal(std::vector<MissingElement*> elements, const Inventory& inventory, FreeDevices& free, WantedDevices& asked)
        : m_elements(std::move(elements)), m_inventory(inventory), m_free(free), m_asked(asked) {
        for (const MissingElement* const element : m_elements) {
            if (std::ranges::find(m_types, element->type()) == m_types.end()) {
                m_types.push_back(element->type());
            }
        }
    }

    void find(const StateManager::DeviceArray& all) {
        std::vector<const IDeviceImp*> devices;
        for (const auto& device : all) {
            if (isCandidate(*device)) {
                devices.push_back(device.get());
            }
        }
        std::vector<Kind> kinds = kindsOf(m_elements);
        if (!tryAll(kinds, devices, m_asked)) {
            return;
        }
        std::unordered_map<const IDeviceImp*, std::size_t> uses;
        for (const Kind& kind : kinds) {
            for (const IDeviceImp* const device : kind.fitting) {
                ++uses[device];
            }
        }
        for (const Kind& kind : kinds) {
            const bool isSure = kind.fitting.size() == kind.elements.size() &&
                                std::ranges::all_of(kind.fitting, [&](const IDeviceImp* device) {
                                    return uses[device] == 1 && m_free.isFree(*device) && m_free.isExtra(*device);
                                });
            for (std::size_t i = 0; isSure && i < kind.elements.size(); ++i) {
                give(*kind.elements[i], *kind.fitting[i], m_free);
            }
        }
    }

private:
    /// A device that nobody has, or that an element has which would take another as well.
    bool isCandidate(const IDeviceImp& device) const {
        const bool isOfType =
            std::ranges::any_of(m_types, [&device](const CapabilityImp& one) { return one.isCapable(device.type()); });
        if (!isOfType || m_free.isFree(device)) {
            return isOfType;
        }
        const XmlElement* const holder = m_inventory.holderOf(device);
        return holder != nullptr && askedFor(*holder, vocabulary::HW_LOCATOR).isEmpty() &&
               askedFor(*holder, vocabulary::OS_LOCATOR).isEmpty();
    }

    std::vector<MissingElement*> m_elements;
    std::vector<CapabilityImp> m_types;  ///< of them, each once
    const Inventory& m_inventory;
    FreeDevices& m_free;
    WantedDevices& m_asked;
};

}  // namespace

void pairByIdentity(std::vector<MissingElement>& missing, const StateManager& machine, FreeDevices& free) {
    Claims claims = claimsOf(missing);
    if (claims.empty()) {
        return;
    }
    addDevices(claims, machine);
    for (const auto& [key, claim] : claims) {
        if (claim.isOnlyOne && claim.devices == 1 && claim.element->device == nullptr &&
            (free.isFree(*claim.device) || free.exchange(*claim.device))) {
            give(*claim.element, *claim.device, free);
        }
    }
}

void pairByContent(std::vector<MissingElement>& missing, const Inventory& inventory, const StateManager& machine,
                   FreeDevices& free, WantedDevices& asked) {
    std::vector<MissingElement*> displaced;
    std::vector<MissingElement*> removed;
    for (MissingElement& one : missing) {
        if (one.device != nullptr || one.asked().hwLocator.isEmpty() || one.asks->hasIdentity) {
            continue;
        }
        const IDeviceImp* const there = free.at(one.asked(), one.type());
        if (there == nullptr) {
            removed.push_back(&one);
        } else if (free.isFree(*there)) {
            displaced.push_back(&one);
        }
    }
    Exchange(std::move(displaced), free, asked).find();
    if (!removed.empty()) {
        Removal(std::move(removed), inventory, free, asked).find(machine.devicesCapableOf(CapabilityImp::ALL()));
    }
}

}  // namespace vrx
