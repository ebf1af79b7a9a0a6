/// What an import passes over is found by a second walk, over the whole document, which goes the way of the import and
/// looks at what lies beside it. Devices are counted as they are added. It is made only when the import has met
/// something odd, so recordings without fault never pay for it.

#include "libInventory/recording/PassedOver.h"

#include <utility>

#include "libCommon/text/UuCode.h"
#include "libCommon/values/Unit.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/ImportReport.h"
#include "libInventory/recording/SysInfoStructure.h"
#include "libInventory/recording/SysInfoVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

namespace {

using Kind = ImportReport::PassedOver::Kind;

String itemOf(const XmlElement& element, StringView attributeName, StringView childName) {
    const StringView text = element.Attribute(attributeName);
    const XmlElement* const child = text.empty() ? element.FirstChildElement(childName) : nullptr;
    return child ? child->GetText() : String(text);
}

class PassedOverSearch {
public:
    explicit PassedOverSearch(ImportReport& report) : m_report(report) {}

    /// Looks at all that lies in an element whose devices are read, as the import does.
    void lookAtList(XmlElement& parent) {
        XmlElement* const first = sysInfo::firstDeviceOf(parent);
        for (XmlElement* const child : childElements(parent)) {
            if (first != nullptr && first->Parent() == child) {
                lookAtDevices(*child, first);
            } else if (first == nullptr || first->Parent() != &parent) {
                lookBeside(*child);
            }
        }
        if (first != nullptr && first->Parent() == &parent) {
            lookAtDevices(parent, first);
        }
    }

private:
    void lookAtDevices(XmlElement& list, const XmlElement* first) {
        bool isInList = false;
        for (XmlElement* const child : childElements(list)) {
            isInList = isInList || child == first;
            if (isInList && sysInfo::isDevice(child->Name())) {
                lookAtDevice(*child);
            } else {
                lookBeside(*child);
            }
        }
    }

    void lookAtDevice(XmlElement& device) {
        const std::uint32_t number = m_devices++;
        const String type = itemOf(device, sysInfo::TYPE, sysInfo::TYPE_ITEM);
        if (CapabilityImp(type).isInvalid()) {
            add(Kind::UnknownType, device, type);
        }
        lookAtProperties(device, number);
        if (device.FirstChildElement(sysInfo::DEVICE) != nullptr) {
            lookAtList(device);
            return;
        }
        for (XmlElement* const child : childElements(device)) {
            lookBeside(*child);
        }
    }

    // Contract: unknown units end a list of properties.
    void lookAtProperties(XmlElement& parent, std::uint32_t device) {
        for (XmlElement* property = sysInfo::firstPropertyOf(parent); property;
             property = property->NextSiblingElement()) {
            if (!sysInfo::isProperty(property->Name())) {
                continue;
            }
            const StringView units = property->Attribute(sysInfo::UNITS);
            if (!units.empty() && !Unit::lookupByString(units)) {
                return;
            }
            String key = itemOf(*property, sysInfo::KEY, sysInfo::KEY_ITEM);
            if (needsUuEncode(key)) {
                m_report.codedKeys.append({device, key, property->Row() + 1, property->Column() + 1});
            }
            const String text = property->Attribute(sysInfo::VALUE);
            bool isNumber = true;
            text.strToReal64(&isNumber);
            if (!units.empty() && !isNumber) {
                m_report.noNumbers.append({device, std::move(key), text, property->Row() + 1, property->Column() + 1});
            }
            lookAtProperties(*property, device);
        }
    }

    /// Looks at an element that the import does not look into.
    void lookBeside(XmlElement& top) {
        if (sysInfo::isDevice(top.Name())) {
            add(Kind::OutsideOfList, top, itemOf(top, sysInfo::TYPE, sysInfo::TYPE_ITEM));
        } else if (sysInfo::looksLikeDevice(top)) {
            add(Kind::OtherElement, top, itemOf(top, sysInfo::TYPE, sysInfo::TYPE_ITEM));
        }
        for (XmlElement* const child : childElements(top)) {
            lookBeside(*child);
        }
    }

    void add(Kind kind, const XmlElement& element, String type) {
        m_report.passedOver.append(
            {kind, String(element.Name()), std::move(type), element.Row() + 1, element.Column() + 1});
    }

    ImportReport& m_report;
    std::uint32_t m_devices = 0;
};

}  // namespace

void findPassedOver(XmlElement& root, ImportReport& report) { PassedOverSearch(report).lookAtList(root); }

}  // namespace vrx
