#include "cli/input/GeneratedScript.h"

#include <optional>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "libCommon/text/UuCode.h"
#include "libInventory/script/ScriptContent.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libLint/Lint.h"
#include "libReport/CheckRun.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/filter/SysinfoFilter.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"

namespace vrx::cli {

namespace {

using vocabulary::ElementKind;
using Keys = std::vector<String>;

/// A device as a script names it: type, locators, and the keys of its properties in order. A script may leave a locator
/// open.
struct NamedDevice {
    String type;
    std::optional<String> hwLocator;
    std::optional<String> osLocator;
    Keys keys;
};

bool isNamedBy(const NamedDevice& device, const NamedDevice& named) {
    return named.type == device.type && (!named.hwLocator || named.hwLocator == device.hwLocator) &&
           (!named.osLocator || named.osLocator == device.osLocator) && named.keys == device.keys;
}

std::optional<String> locatorOf(const XmlElement& element, StringView name) {
    const XmlAttribute* const attribute = element.FindAttribute(name);
    return attribute != nullptr ? std::optional<String>(fromXmlSafe(attribute->Value())) : std::nullopt;
}

String decodedAttribute(const XmlElement& element, StringView name) { return fromXmlSafe(attributeOf(element, name)); }

std::vector<NamedDevice> devicesIn(const XmlElement& root) {
    std::vector<NamedDevice> devices;
    for (const XmlElement* const child : childElements(root)) {
        if (vocabulary::kindOf(*child) != ElementKind::Device) {
            continue;
        }
        NamedDevice& device = devices.emplace_back(NamedDevice{decodedAttribute(*child, vocabulary::TYPE),
                                                               locatorOf(*child, vocabulary::HW_LOCATOR),
                                                               locatorOf(*child, vocabulary::OS_LOCATOR),
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
            NamedDevice& named = devices.emplace_back(
                NamedDevice{device->type().toString(), device->hwLocator(), device->osLocator(), {}});
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
    while (at < should.size() && at < is.size() && isNamedBy(should[at], is[at])) {
        ++at;
    }
    if (at == should.size() && at == is.size()) {
        return {};
    }
    return at < should.size() ? fmt::format("it does not name the {} {} as it is", should[at].type.toUtf8(),
                                            should[at].hwLocator->toUtf8())
                              : "it names a device that the machine does not have";
}

std::string problemOfLoading(const String& script, CheckRun& check) {
    if (check.inventory().loadInventoryScriptBytes(script.toUtf8(), u"the generated script")) {
        return {};
    }
    return "it does not load: " + (check.fileErrors().isEmpty() ? "" : check.fileErrors()[0].toUtf8());
}

std::string problemOfRun(CheckRun& check, const CheckBasis& basis) {
    check.inventory().setAssignment(Inventory::Assignment::Auto);
    const CheckReport report = check.run(basis);
    return report.verdict == Verdict::Passed ? std::string() : report.headline;
}

/// The engine's answer: rules for extra devices of what could not be read are asked for all the same.
CheckBasis plainBasis() {
    CheckBasis basis;
    basis.isPlain = true;
    basis.listsElements = false;
    return basis;
}

}  // namespace

std::string problemOfGenerated(const String& script, StateManager& machine, const SysinfoFilter* filter,
                               bool hasAllCategories) {
    CheckRun check(machine);
    if (std::string problem = problemOfLoading(script, check); !problem.empty()) {
        return problem;
    }
    const std::string problem =
        difference(devicesOf(machine, filter, hasAllCategories), devicesIn(*check.inventory().script().RootElement()));
    return problem.empty() ? problemOfRun(check, plainBasis()) : problem;
}

std::string problemOnMachine(const String& script, StateManager& machine) {
    CheckRun check(machine);
    if (std::string problem = problemOfLoading(script, check); !problem.empty()) {
        return problem;
    }
    if (!contentOf(*check.inventory().script().RootElement()).asksForAnything()) {
        return {};
    }
    CheckBasis basis;
    basis.listsElements = false;
    return problemOfRun(check, basis);
}

std::string doubtAboutScript(const String& script) {
    Lint lint;
    if (lint.run(script.toUtf8()) != Lint::Result::Done) {
        return "it is no script";
    }
    for (const LintFinding& finding : lint.findings().list()) {
        if (finding.severity != Severity::Note) {
            return fmt::format("{}:{}: {} [{}]", finding.row + 1, finding.column + 1, finding.message(), finding.rule);
        }
    }
    return {};
}

}  // namespace vrx::cli
