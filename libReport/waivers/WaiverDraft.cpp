#include "libReport/waivers/WaiverDraft.h"

#include <boost/json/parse.hpp>
#include <boost/json/value.hpp>
#include <set>

#include "libDiagnosis/FaultKindNames.h"

namespace vrx {

namespace {

using boost::json::object;
using boost::json::value;

const object& memberOf(const object& of, std::string_view key) {
    static const object none;
    const value* const member = of.if_contains(key);
    const object* const found = member == nullptr ? nullptr : member->if_object();
    return found == nullptr ? none : *found;
}

String textOf(const object& of, std::string_view key) {
    const value* const member = of.if_contains(key);
    const boost::json::string* const text = member == nullptr ? nullptr : member->if_string();
    return text == nullptr ? String() : String::UTF8Decode({text->data(), text->size()});
}

/// The keys of the properties that differ, each once; empty when anything else does, too.
std::set<String> differingProperties(const object& fault) {
    std::set<String> keys;
    const value* const member = fault.if_contains("differences");
    const boost::json::array* const differences = member == nullptr ? nullptr : member->if_array();
    for (const value& each : differences == nullptr ? boost::json::array() : *differences) {
        const String key = each.is_object() ? textOf(each.get_object(), "property") : String();
        if (key.isEmpty()) {
            return {};
        }
        keys.insert(key);
    }
    return keys;
}

/// What the waiver covers, but for a property.
Waiver waiverOf(const object& fault, const Waiver& decision) {
    Waiver waiver = decision;
    const object& asked = memberOf(fault, "asked");
    const object& device = memberOf(fault, "device");
    waiver.kind = faultKindNamed(textOf(fault, "kind").toUtf8());
    waiver.type = textOf(fault, "type");
    const object& place = textOf(asked, "hwLocator").isEmpty() && textOf(asked, "osLocator").isEmpty() ? device : asked;
    waiver.hwLocator = textOf(place, "hwLocator");
    if (waiver.hwLocator.isEmpty()) {
        waiver.osLocator = textOf(place, "osLocator");
    }
    if (waiver.kind == FaultKind::Extra) {
        waiver.serialNumber = textOf(device, "serialNumber");
    }
    return waiver;
}

void addWaivers(const object& fault, const Waiver& decision, WaiverDraft& draft) {
    Waiver waiver = waiverOf(fault, decision);
    if (!waiver.kind || (waiver.type.isEmpty() && waiver.hwLocator.isEmpty() && waiver.osLocator.isEmpty() &&
                         waiver.serialNumber.isEmpty())) {
        ++draft.leftOut;
        return;
    }
    const std::set<String> keys = differingProperties(fault);
    for (const String& key : keys) {
        waiver.property = key;
        draft.waivers.push_back(waiver);
    }
    if (keys.empty()) {
        draft.waivers.push_back(waiver);
    }
}

}  // namespace

WaiverDraft draftWaivers(std::string_view json, const Waiver& decision) {
    WaiverDraft draft;
    boost::json::error_code failure;
    const value report = boost::json::parse({json.data(), json.size()}, failure);
    const object* const root = report.if_object();
    const value* const faults = root == nullptr ? nullptr : root->if_contains("faults");
    if (failure || faults == nullptr || !faults->is_array()) {
        draft.error = failure ? "this is no JSON: " + failure.message() : "this JSON holds no list of faults";
        return draft;
    }
    for (const value& fault : faults->get_array()) {
        if (fault.is_object()) {
            addWaivers(fault.get_object(), decision, draft);
        }
    }
    return draft;
}

}  // namespace vrx
