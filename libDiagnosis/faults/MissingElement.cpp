#include "libDiagnosis/faults/MissingElement.h"

#include <algorithm>
#include <iterator>

#include "libDiagnosis/DeviceProblem.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

MissingElement::MissingElement(const XmlElement& asking)
    : element(&asking),
      asked(askedBy(asking)),
      type(attributeOf(asking, vocabulary::TYPE)),
      properties(askedProperties(asking)) {}

bool MissingElement::asksForIdentity() const {
    return std::ranges::any_of(properties, [](const AskedProperty& property) {
        return isIdentity(property.key) && !property.literal().isEmpty();
    });
}

const DeviceOutcome& Outcomes::of(const MissingElement& missing) {
    if (missing.namesPlace()) {
        m_last = m_inventory.outcomeOf(*missing.element);
        return m_last;
    }
    const auto [at, isNew] = m_shared.try_emplace(askedKey(*missing.element));
    if (isNew) {
        at->second = m_inventory.outcomeOf(*missing.element);
    }
    return at->second;
}

String askedKey(const XmlElement& device) {
    const Inventory::DeviceSpec asked = askedBy(device);
    return concat(asked.type, u"\x1F", asked.name, u"\x1F", contentOfDevice(device));
}

bool isIdentity(StringView key) noexcept {
    static constexpr StringView KEYS[] = {property::SERIAL_NUMBER, property::UUID, property::WWN, property::ADDRESS,
                                          property::NODE_GUID};
    return std::ranges::find(KEYS, key) != std::end(KEYS);
}

}  // namespace vrx
