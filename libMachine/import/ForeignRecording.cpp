#include "libMachine/import/ForeignRecording.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <utility>

#include "libCommon/text/TextHash.h"
#include "libMachine/import/FormatTable.h"
#include "libMachine/import/mending/TextMending.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

/// Parts of which no two have one serial number.
bool hasOwnSerialNumber(const DeviceRecord& device) {
    static constexpr StringView TYPES[] = {u"MemoryModule", u"HardDiskDrive", u"SolidStateDrive", u"NvmeDrive",
                                           u"Storage",      u"OpticalDrive",  u"TapeDrive"};
    return std::find(std::begin(TYPES), std::end(TYPES), device.type) != std::end(TYPES);
}

std::string serialNumberOf(const DeviceRecord& device) {
    for (const PropertyRecord& property : device.properties) {
        if (property.key == property::SERIAL_NUMBER) {
            return property.value.toString(false).toUtf8();
        }
    }
    return {};
}

/// Namespaces of one drive share its serial number.
std::string driveOf(const DeviceRecord& device) { return device.hwLocator.substr(0, device.hwLocator.rfind("/ns:")); }

void noteSerialNumbers(const Recording& recording, DamageList& damage) {
    std::unordered_map<std::string, std::string, TextHash> drives;
    for (std::size_t place = 0; place < recording.size(); ++place) {
        const DeviceRecord& device = recording.at(place);
        const std::string number = hasOwnSerialNumber(device) ? serialNumberOf(device) : std::string();
        if (number.empty()) {
            continue;
        }
        const auto [first, isNew] = drives.emplace(number, driveOf(device));
        if (!isNew && first->second != driveOf(device)) {
            damage.add(DamageKind::RepeatedSerialNumber, 0, device.hwLocator);
        }
    }
}

/// Addresses and ports that two devices claim; storing them tells them apart.
void noteLocators(const Recording& recording, DamageList& damage) {
    std::unordered_map<std::string_view, std::size_t, TextHash> places;
    for (std::size_t place = 0; place < recording.size(); ++place) {
        const std::string& locator = recording.at(place).hwLocator;
        if (!places.emplace(locator, place).second) {
            damage.add(DamageKind::RepeatedLocator, 0, locator);
        }
    }
}

CapabilityImp typesOf(DamageLoss loss) {
    return loss == DamageLoss::Sizes ? CapabilityImp(u"MemoryModule") | CapabilityImp(u"Cache") : CapabilityImp::ALL();
}

/// What is lost with damaged text may have been any device.
void noteLosses(const RecordingFormatRow& row, const DamageList& damage, Recording& recording) {
    for (const ImportDamage& one : damage.all()) {
        const DamageLoss loss = lossOf(one.kind);
        if (loss == DamageLoss::Nothing) {
            continue;
        }
        UnreadSource unread{String::UTF8Decode(row.title), typesOf(loss), String::UTF8Decode(damageText(one)), {}};
        if (loss != DamageLoss::Devices) {
            unread.properties.append(String(loss == DamageLoss::Sizes ? property::SIZE : UnreadSource::ANY_PROPERTY));
        }
        recording.addUnread(std::move(unread));
    }
}

/// Notes what is wrong with the recording and what it cannot tell. False when there is no device.
bool noteLimits(const RecordingFormatRow& row, Recording& recording, DamageList& damage) {
    noteSerialNumbers(recording, damage);
    noteLocators(recording, damage);
    noteLosses(row, damage, recording);
    noteGaps(row.gaps(), recording);
    recording.addUnread({u"properties that no device of its type has",
                         CapabilityImp::ALL(),
                         String::UTF8Decode(std::string(row.title) + " may not tell of them"),
                         {String(UnreadSource::UNTOLD_PROPERTY)}});
    return recording.size() > 0;
}

}  // namespace

bool convertForeign(RecordingFormat format, std::string_view bytes, Recording& recording, DamageList& damage) {
    const RecordingFormatRow* const row = rowOf(format);
    VRX_ASSERT(row != nullptr && row->convert != nullptr);
    if (row->mendsItself) {
        row->convert(bytes, recording, damage);
    } else {
        row->convert(mendedText(bytes, damage), recording, damage);
    }
    return noteLimits(*row, recording, damage);
}

bool convertForeignFolder(RecordingFormat format, const std::string& folder, Recording& recording, DamageList& damage) {
    const RecordingFormatRow* const row = rowOf(format);
    VRX_ASSERT(row != nullptr && row->convertFolder != nullptr);
    row->convertFolder(folder, recording, damage);
    return noteLimits(*row, recording, damage);
}

}  // namespace vrx
