#include "libReport/golden/GoldenDecisionsJson.h"

#include "libReport/json/JsonWriter.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using Subject = GoldenDecision::Subject;
using Choice = GoldenDecision::Choice;
using Reason = GoldenDecision::Reason;
using Presence = GoldenDevice::Presence;

std::string_view nameOf(Subject subject) {
    switch (subject) {
        case Subject::Name: return "name";
        case Subject::HwLocator: return "hwLocator";
        case Subject::OsLocator: return "osLocator";
        case Subject::Property: break;
    }
    return "property";
}

std::string_view nameOf(Choice choice) {
    switch (choice) {
        case Choice::Exact: return "exact";
        case Choice::Range: return "range";
        case Choice::Alternatives: return "alternatives";
        case Choice::LeftOut: break;
    }
    return "leftOut";
}

std::string_view nameOf(Reason reason) {
    switch (reason) {
        case Reason::None: break;
        case Reason::Identity: return "identity";
        case Reason::Unique: return "unique";
        case Reason::Place: return "place";
        case Reason::TooManyValues: return "tooManyValues";
        case Reason::NotEverywhere: return "notEverywhere";
        case Reason::Unread: return "unread";
        case Reason::ChangesByItself: return "changesByItself";
        case Reason::NotWritable: return "notWritable";
        case Reason::NotNeeded: return "notNeeded";
        case Reason::NotWanted: return "notWanted";
    }
    return "none";
}

std::string_view nameOf(Presence presence) {
    switch (presence) {
        case Presence::Everywhere: return "everywhere";
        case Presence::NotEverywhere: return "notEverywhere";
        case Presence::Unread: break;
    }
    return "unread";
}

void writeMachines(JsonWriter& json, const std::vector<std::size_t>& machines) {
    json.key("machines").beginArray();
    for (const std::size_t machine : machines) {
        json.value(static_cast<std::int64_t>(machine));
    }
    json.endArray();
}

void writeTexts(JsonWriter& json, std::string_view key, const Array<String>& texts) {
    json.key(key).beginArray();
    for (const String& text : texts) {
        json.value(text);
    }
    json.endArray();
}

void writeDecision(JsonWriter& json, const GoldenDecision& decision) {
    json.beginObject();
    json.key("subject").value(nameOf(decision.subject));
    json.key("key").value(decision.key);
    json.key("choice").value(nameOf(decision.choice));
    json.key("reason").value(nameOf(decision.reason));
    if (decision.choice == Choice::Range) {
        json.key("low").value(decision.low);
        json.key("high").value(decision.high);
        json.key("units").value(decision.units);
    }
    json.key("variants").beginArray();
    for (const ValueVariant& variant : decision.variants) {
        json.beginObject();
        json.key("isList").value(variant.isList);
        writeTexts(json, "values", variant.texts);
        writeMachines(json, variant.machines);
        json.endObject();
    }
    json.endArray();
    json.endObject();
}

void writeGoldenDevice(JsonWriter& json, const GoldenDevice& device) {
    json.beginObject();
    json.key("type").value(device.first().type().toString(0, false));
    json.key("name").value(device.first().name());
    json.key("place").value(device.first().hwLocator());
    json.key("presence").value(nameOf(device.presence));
    writeMachines(json, device.holders());
    json.key("decisions").beginArray();
    for (const GoldenDecision& decision : device.decisions) {
        writeDecision(json, decision);
    }
    json.endArray();
    json.endObject();
}

}  // namespace

std::string goldenDecisionsJson(const GoldenDraft& draft) {
    JsonWriter json;
    json.beginObject();
    json.key("schema").value(std::string_view("vrx-inventory.generate-decisions/1"));
    json.key("machines").beginArray();
    for (const std::string& name : draft.machines) {
        json.value(std::string_view(name));
    }
    json.endArray();
    writeTexts(json, "closedTypes", draft.closedTypes);
    json.key("devices").beginArray();
    for (const GoldenDevice& device : draft.devices) {
        writeGoldenDevice(json, device);
    }
    json.endArray();
    json.endObject();
    return json.take();
}

}  // namespace vrx
