/// Two ways to tell parts apart that claim the same devices: by what the parts ask for already (where one asks for more
/// than the other, the other can be made to forbid it), and by what the devices are (a property in which they differ
/// can be added to a part's description).

#include "libReport/parts/PartDifferences.h"

#include <algorithm>
#include <map>
#include <set>

#include "libCommon/text/PrintableText.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libInventory/script/XmlChildren.h"
#include "libReport/patterns/ReadablePattern.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

std::string decodedPattern(StringView pattern) { return readablePattern(fromXmlSafe(pattern)); }

std::string propertyTest(const XmlElement& property) {
    const std::string key = printable(attributeOf(property, vocabulary::KEY));
    std::string values;
    if (property.FindAttribute(vocabulary::VALUE) != nullptr) {
        values = decodedPattern(property.Attribute(vocabulary::VALUE));
    }
    for (const XmlElement* const child : childElements(property)) {
        values += (values.empty() ? "" : ", ") + decodedPattern(child->Attribute(vocabulary::VALUE));
    }
    return values.empty() ? "a property " + key : key + " = " + values;
}

void addDeviceTests(const XmlElement& device, const std::string& negation, std::multiset<std::string>& tests) {
    tests.insert(negation + "a device of type " + printable(attributeOf(device, vocabulary::TYPE)));
    if (const StringView name = attributeOf(device, vocabulary::NAME); !name.empty()) {
        tests.insert(negation + "name = " + decodedPattern(name));
    }
    for (const StringView locator : {vocabulary::HW_LOCATOR, vocabulary::OS_LOCATOR}) {
        if (const StringView text = attributeOf(device, locator); !text.empty()) {
            tests.insert(negation + printable(locator) + " = " + printable(text));
        }
    }
}

/// Every test of the part; "not " stands before it once for each `not` that it lies in.
std::multiset<std::string> testsIn(const XmlElement& part) {
    std::multiset<std::string> tests;
    for (ScriptWalk walk(part); walk; ++walk) {
        std::string negation;
        for (unsigned i = 0; i < walk->nots; ++i) {
            negation += "not ";
        }
        if (walk->kind == vocabulary::ElementKind::Property) {
            tests.insert(negation + propertyTest(*walk->element));
            walk.skipContent();
        } else if (walk->kind == vocabulary::ElementKind::Device) {
            addDeviceTests(*walk->element, negation, tests);
        }
    }
    return tests;
}

std::multiset<std::string> testsOf(const Inventory::PartSpec& part, const Array<Inventory::PartSpec>& list) {
    const auto listed = std::find(list.begin(), list.end(), part);
    XmlDocument document;
    const bool isListed = listed != list.end() && document.Parse(listed->xml);
    return isListed ? testsIn(*document.RootElement()) : std::multiset<std::string>();
}

std::vector<PartDifferences::Asked> askedBySome(const Array<Inventory::PartSpec>& group,
                                                const Array<Inventory::PartSpec>& list) {
    std::vector<std::multiset<std::string>> tests;
    for (const Inventory::PartSpec& part : group) {
        tests.push_back(testsOf(part, list));
    }
    std::vector<PartDifferences::Asked> asked;
    for (std::size_t i = 0; i < group.size(); ++i) {
        PartDifferences::Asked ofPart{group[i].name, {}};
        for (auto test = tests[i].begin(); test != tests[i].end(); test = tests[i].upper_bound(*test)) {
            const bool allAsk = std::all_of(tests.begin(), tests.end(), [&](const auto& others) {
                return others.count(*test) >= tests[i].count(*test);
            });
            if (!allAsk) {
                ofPart.tests.push_back(*test);
            }
        }
        if (!ofPart.tests.empty()) {
            asked.push_back(std::move(ofPart));
        }
    }
    return asked;
}

/// The values of one property over some devices.
struct Values {
    std::size_t holders = 0;
    std::vector<std::string> different;
    std::set<std::string> seen;

    void add(const std::string& value) {
        ++holders;
        if (seen.insert(value).second) {
            different.push_back(value);
        }
    }
};

void addDiffering(const StateManager::DeviceArray& devices, std::vector<PartDifferences::Differing>& out) {
    std::vector<std::string> keys;
    std::map<std::string, Values> byKey;
    for (const auto& device : devices) {
        for (const auto& property : device->properties(PropertyCategoryImp::ALL())) {
            const auto [entry, isNew] = byKey.try_emplace(printable(property->key().view()));
            if (isNew) {
                keys.push_back(entry->first);
            }
            entry->second.add(printableValue(property->value().toString(true)));
        }
    }
    for (const std::string& key : keys) {
        Values& values = byKey[key];
        if (values.holders < devices.size()) {
            values.different.emplace_back("-");
        }
        if (values.different.size() > 1) {
            out.push_back({key, std::move(values.different)});
        }
    }
}

}  // namespace

PartDifferences differencesOf(const Array<Inventory::PartSpec>& group, const PartGenerationReport& report) {
    PartDifferences result;
    std::map<std::string, std::size_t> claims;
    std::set<std::string> types;
    for (const Inventory::PartSpec& part : group) {
        for (const String& guid : part.devices) {
            const auto device = report.machine->deviceByGuid(guid);
            const std::size_t count = device ? ++claims[guid.toUtf8()] : 0;
            if (count == 2) {
                result.sharedDevices.push_back(device);
            }
            if (count == 2 && types.insert(device->type().toString(0, false).toUtf8()).second) {
                const StateManager::DeviceArray& alike = report.machine->devicesCapableOf(device->type());
                result.alikeCount += alike.size();
                addDiffering(alike, result.differing);
            }
        }
    }
    result.asked = askedBySome(group, report.partsList);
    return result;
}

}  // namespace vrx
