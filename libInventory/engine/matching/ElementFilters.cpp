#include "libInventory/engine/matching/ElementFilters.h"

#include "libCommon/text/UuCode.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/matching/DeviceAttributes.h"

namespace vrx {

ElementFilters::ElementFilters(const XmlElement& element, const InventoryState& state) {
    for (const XmlAttribute& attribute : element.Attributes()) {
        switch (deviceAttributeOf(attribute.Name())) {
            case DeviceAttribute::Type: break;
            case DeviceAttribute::Name:
                if (state.m_checkNames) {
                    add(ElementFilter::Kind::Name, attribute);
                }
                break;
            case DeviceAttribute::OsLocator:
                if (state.m_checkOsLocators) {
                    add(ElementFilter::Kind::OsLocator, attribute);
                }
                break;
            case DeviceAttribute::HwLocator:
                if (state.m_checkHwLocators) {
                    add(ElementFilter::Kind::HwLocator, attribute);
                }
                break;
            case DeviceAttribute::Invalid: m_invalid = &attribute; return;
        }
    }
}

void ElementFilters::add(ElementFilter::Kind kind, const XmlAttribute& attribute) {
    const StringView text = attribute.Value();
    const StringView decoded = needsUuDecode(text) ? m_decodedTexts.emplace_front(fromXmlSafe(text)).view() : text;
    m_filters.push_back({kind, &attribute, decoded});
}

}  // namespace vrx
