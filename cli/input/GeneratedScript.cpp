#include "cli/input/GeneratedScript.h"

#include <utility>
#include <vector>

#include "libCommon/text/UuCode.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libReport/CheckRun.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/DeviceImp.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"

namespace vrx::cli {

namespace {

using vocabulary::ElementKind;
using Keys = std::vector<String>;

/// A device as a script names it: type, guid, and the keys of its properties in order.
struct NamedDevice {
    String type;
    String guid;
    Keys keys;

    bool operator==(const NamedDevice&) const = default;
};

String decodedAttribute(const XmlElement& element, StringView name) { return fromXmlSafe(attributeOf(element, name)); }

std::vector<NamedDevice> devicesIn(const XmlElement& root) {
    std::vector<NamedDevice> devices;
    for (const XmlElement* const child : childElements(root)) {
        if (vocabulary::kindOf(*child) != ElementKind::Device) {
            continue;
        }
        NamedDevice& device =
            devices.emplace_back(NamedDevice{decodedAttribute(*child, vocabulary::TYPE),
                                             DeviceImp::guid(decodedAttribute(*child, vocabulary::HW_LOCATOR),
                                                             decodedAttribute(*child, vocabulary::OS_LOCATOR)),
                                             {}});
        for (const XmlElement* const property : childElements(*child)) {
            device.keys.push_back(decodedAttribute(*property, vocabulary::KEY));
        }
    }
    return devices;
}

std::vector<NamedDevice> devicesOf(const StateManager& machine, const SysinfoFilter* filter, bool hasAllCategories) {
    const PropertyCategoryImp leftOut =
        hasAllCategories
            ? PropertyCategoryImp()
            : PropertyCategoryImp::Volatile() | PropertyCategoryImp::Internal() | PropertyCategoryImp::Group();
    std::vector<NamedDevice> devices;
    std::vector<StateManager::DevicePointer> pending;
    if (machine.rootDevice()) {
        pending.push_back(machine.rootDevice());
    }
    while (!pending.empty()) {
        const StateManager::DevicePointer device = std::move(pending.back());
        pending.pop_back();
        Array<boost::shared_ptr<IPropertyImp>> properties = device->properties(PropertyCategoryImp::ALL());
        if (filter == nullptr || filter->includeDevice(*device, properties)) {
            NamedDevice& named = devices.emplace_back(NamedDevice{device->type().toString(), device->guid(), {}});
            for (const auto& property : properties) {
                if (!property->category().intersect(leftOut)) {
                    named.keys.push_back(property->key());
                }
            }
        }
        const Array<StateManager::DevicePointer> children = device->children();
        pending.insert(pending.end(), std::make_reverse_iterator(children.end()),
                       std::make_reverse_iterator(children.begin()));
    }
    return devices;
}

/// The first device that the script should name and does not.
std::string difference(const std::vector<NamedDevice>& should, const std::vector<NamedDevice>& is) {
    std::size_t at = 0;
    while (at < should.size() && at < is.size() && should[at] == is[at]) {
        ++at;
    }
    if (at == should.size() && at == is.size()) {
        return {};
    }
    return at < should.size() ? "it does not name the device " + should[at].guid.toUtf8() + " as it is"
                              : "it names a device that the machine does not have";
}

}  // namespace

std::string problemOfGenerated(const String& script, StateManager& machine, const SysinfoFilter* filter,
                               bool hasAllCategories) {
    CheckRun check(machine);
    if (!check.inventory().loadInventoryScriptBytes(script.toUtf8(), u"the generated script")) {
        return "it does not load: " + (check.fileErrors().isEmpty() ? "" : check.fileErrors()[0].toUtf8());
    }
    const std::string problem =
        difference(devicesOf(machine, filter, hasAllCategories), devicesIn(*check.inventory().script().RootElement()));
    if (!problem.empty()) {
        return problem;
    }
    const CheckReport report = check.run({nullptr, true});
    return report.verdict == Verdict::Passed ? std::string() : report.headline;
}

}  // namespace vrx::cli
