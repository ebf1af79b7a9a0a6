#include "libFleet/results/FleetFault.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <utility>

#include "libCommon/text/PrintableText.h"
#include "libReport/faults/FaultJson.h"
#include "libReport/faults/FaultText.h"
#include "libReport/patterns/ReadablePattern.h"

namespace vrx {

namespace {

constexpr char BETWEEN = '\x1f';

/// Some places are named after what is in them.
bool namesOneDevice(const FaultFacts& facts) {
    return !facts.deviceSerial.empty() && facts.deviceHwLocator.find(facts.deviceSerial) != std::string::npos;
}

std::string placeOf(const FaultFacts& facts) {
    if (!facts.askedHwLocator.empty() || !facts.askedOsLocator.empty()) {
        return facts.askedHwLocator.empty() ? facts.askedOsLocator : facts.askedHwLocator;
    }
    return namesOneDevice(facts) ? std::string() : facts.deviceHwLocator;
}

}  // namespace

std::string FaultKey::text() const {
    std::string all = kind;
    for (const std::string* const part : {&type, &place, &name}) {
        all += BETWEEN + *part;
    }
    for (const std::string& property : properties) {
        all += BETWEEN + property;
    }
    return all;
}

std::string FaultKey::title() const {
    std::string all = kind + " " + (type.empty() ? "device" : type);
    if (!name.empty()) {
        all += " " + readablePattern(String::UTF8Decode(name));
    }
    if (!place.empty()) {
        all += " at " + place;
    }
    return printable(
        std::string_view(properties.empty() ? all : all + fmt::format(": {}", fmt::join(properties, ", "))));
}

FaultKey keyOf(FaultFacts facts) {
    FaultKey key;
    key.place = placeOf(facts);
    key.kind = std::move(facts.kind);
    key.type = std::move(facts.type);
    key.name = std::move(facts.askedName);
    key.properties = std::move(facts.differences);
    std::ranges::sort(key.properties);
    key.properties.erase(std::ranges::unique(key.properties).begin(), key.properties.end());
    if (key.place.empty() && key.type.empty() && key.name.empty()) {
        key.place = fmt::format("{}:{}", facts.row, facts.column);
    }
    return key;
}

FleetFault fleetFault(const Fault& fault) {
    FaultFacts facts;
    facts.kind = nameOf(fault.kind);
    facts.type = (fault.device ? fault.device->spec.type : fault.asked.type).toUtf8();
    facts.askedName = fault.asked.name.toUtf8();
    facts.askedHwLocator = fault.asked.hwLocator.toUtf8();
    facts.askedOsLocator = fault.asked.osLocator.toUtf8();
    if (fault.device) {
        facts.deviceHwLocator = fault.device->spec.hwLocator.toUtf8();
        facts.deviceSerial = fault.device->serialNumber.toUtf8();
    }
    facts.row = fault.place.row;
    facts.column = fault.place.column;
    for (const Difference& difference : fault.differences) {
        facts.differences.push_back(difference.what == Difference::What::Property
                                        ? difference.key.toUtf8()
                                        : std::string(nameOfWhat(difference)));
    }
    return {keyOf(std::move(facts)), faultText(fault)};
}

}  // namespace vrx
