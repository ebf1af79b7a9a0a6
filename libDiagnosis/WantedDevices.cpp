#include "libDiagnosis/WantedDevices.h"

#include <algorithm>

#include "libCommon/text/NumberText.h"
#include "libDiagnosis/DeviceProblem.h"
#include "libDiagnosis/faults/AskedDevice.h"
#include "libDiagnosis/faults/DeviceTrial.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

namespace {

constexpr StringView KEY_SEPARATOR = u"\x1F";
constexpr StringView PATTERN_SEPARATOR = u"\x1E";

std::uint64_t numberOfPlace(const XmlElement& element) noexcept {
    return std::uint64_t{element.Row()} << 32 | element.Column();
}

String kindKey(const XmlElement& device) {
    String key = attributeOf(device, vocabulary::TYPE);
    for (const AskedProperty& property : askedProperties(device)) {
        if (isIdentity(property.key)) {
            continue;
        }
        key.append(KEY_SEPARATOR).append(property.key);
        for (const String& pattern : property.patterns) {
            key.append(PATTERN_SEPARATOR).append(pattern);
        }
    }
    return key;
}

bool asksForIdentity(const std::vector<AskedProperty>& properties) {
    return std::ranges::any_of(properties, [](const AskedProperty& property) {
        return isIdentity(property.key) && !property.literal().isEmpty();
    });
}

}  // namespace

std::size_t WantedDevices::numberOf(const String& key, Numbers& numbers) {
    return numbers.try_emplace(key, numbers.size()).first->second;
}

WantedDevices::WantedDevices() = default;
WantedDevices::~WantedDevices() = default;
WantedDevices::WantedDevices(WantedDevices&&) noexcept = default;

const WantedDevice& WantedDevices::of(const XmlElement& device) {
    const auto at = m_devices.find(numberOfPlace(device));
    return at != m_devices.end() ? at->second : m_devices.emplace(numberOfPlace(device), read(device)).first->second;
}

WantedDevice WantedDevices::read(const XmlElement& device) {
    WantedDevice asked{askedBy(device), CapabilityImp(attributeOf(device, vocabulary::TYPE)),
                       std::make_shared<const std::vector<AskedProperty>>(askedProperties(device))};
    asked.hasIdentity = asksForIdentity(*asked.properties);
    asked.sort = numberOf(
        concat(asked.spec.type, KEY_SEPARATOR, asked.spec.name, KEY_SEPARATOR, contentOfDevice(device)), m_sortNumbers);
    const String placed = concat(toText(std::uint64_t{asked.sort}), KEY_SEPARATOR, asked.spec.hwLocator, KEY_SEPARATOR,
                                 asked.spec.osLocator);
    asked.placedSort = numberOf(placed, m_placedNumbers);
    return asked;
}

const DeviceTrial& WantedDevices::trialOf(const XmlElement& device) {
    const WantedDevice& asked = of(device);
    m_trials.resize(std::max(m_trials.size(), asked.sort + 1));
    if (!m_trials[asked.sort]) {
        m_trials[asked.sort] = std::make_unique<const DeviceTrial>(asked, contentOfDevice(device));
    }
    return *m_trials[asked.sort];
}

std::size_t WantedDevices::kindOf(const XmlElement& device) {
    const auto [at, isNew] = m_kinds.try_emplace(numberOfPlace(device));
    if (isNew) {
        at->second = numberOf(kindKey(device), m_kindNumbers);
    }
    return at->second;
}

}  // namespace vrx
