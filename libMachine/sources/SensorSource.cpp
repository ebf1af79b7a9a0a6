/// Sensors of the chips that watch a machine: fan speeds, temperatures, voltages, currents, powers. Each channel of a
/// chip is a device of its own, below the device that the chip belongs to; what it reads is Volatile.
///
/// The kernel numbers chips as their drivers load (hwmon3). A sensor's locator is the place of its chip, the kind, and
/// the label that the driver or the board gives the channel, or else the channel's name, which the chip's own numbering
/// decides.

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <tuple>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/linux/DevicePlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

const std::string CHIPS = "/sys/class/hwmon/";

/// A kind of channel. Files of it start with the prefix and a number.
struct SensorKind {
    std::string_view prefix;
    std::string_view input;  ///< behind the number: the file with what it reads
    StringView type;
    StringView key;
    StringView unit;
    double step;  ///< of the numbers in the file, in the unit
};

constexpr SensorKind KINDS[] = {
    {"fan", "_input", u"FanSensor", property::SPEED, u"RPM", 1},
    {"temp", "_input", u"TemperatureSensor", property::TEMPERATURE, u"degC", 1e3},
    {"in", "_input", u"VoltageSensor", property::VOLTAGE, u"V", 1e3},
    {"curr", "_input", u"CurrentSensor", property::CURRENT, u"A", 1e3},
    {"power", "_input", u"PowerSensor", property::POWER, u"W", 1e6},
    {"power", "_average", u"PowerSensor", property::POWER, u"W", 1e6},
};

/// The kind of channel that a file reads, and the channel's name ("temp1"); null for another file.
const SensorKind* kindOf(std::string_view file, std::string_view& channel) noexcept {
    const auto* const kind = std::find_if(std::begin(KINDS), std::end(KINDS), [&](const SensorKind& candidate) {
        if (!file.starts_with(candidate.prefix) || !file.ends_with(candidate.input)) {
            return false;
        }
        channel = file.substr(0, file.size() - candidate.input.size());
        return channel.size() > candidate.prefix.size() &&
               channel.find_first_not_of("0123456789", candidate.prefix.size()) == std::string_view::npos;
    });
    return kind == std::end(KINDS) ? nullptr : kind;
}

std::optional<double> signedNumber(const std::string& text) {
    const bool isNegative = text.starts_with('-');
    const auto number = parseNumber(std::string_view(text).substr(isNegative ? 1 : 0));
    if (!number) {
        return std::nullopt;
    }
    return isNegative ? -static_cast<double>(*number) : static_cast<double>(*number);
}

struct Chip {
    std::string folder;   ///< with the files of its channels
    std::string sysPath;  ///< of the device that it belongs to
    std::string name;     ///< of its driver: "coretemp"
    std::string place;    ///< the device's locator
};

/// Where a chip of a disk sits is the disk's place, which is below the folder that the chip names.
std::string diskBelow(const RootFolder& root, const Recording& recording, const std::string& sysPath) {
    for (const std::string& disk : root.list(sysPath + "/block")) {
        const std::size_t place = recording.nearest(sysPath + "/block/" + disk);
        if (place != Recording::NONE && recording.at(place).sysPath == sysPath + "/block/" + disk) {
            return recording.at(place).sysPath;
        }
    }
    return sysPath;
}

/// Zones that the firmware measures belong to no device; their chip tells what they are called.
std::string placeOfChip(const Recording& recording, const Chip& chip) {
    return isVirtualFolder(chip.sysPath) ? "thermal:" + chip.name : placeOfFolder(recording, chip.sysPath);
}

Chip readChip(const CollectContext& context, const std::string& name) {
    const RootFolder& root = context.root;
    Chip chip;
    chip.folder = CHIPS + name;
    chip.name = cleanName(root.text(chip.folder + "/name"));
    if (chip.name.empty()) {  // drivers of old keep their files in the device
        chip.folder += "/device";
        chip.name = cleanName(root.text(chip.folder + "/name"));
    }
    chip.sysPath = root.resolved(CHIPS + name + "/device");
    if (chip.sysPath.empty()) {
        chip.sysPath = root.resolved(CHIPS + name);
    }
    chip.sysPath = diskBelow(root, context.recording, chip.sysPath);
    chip.place = placeOfChip(context.recording, chip);
    return chip;
}

DeviceRecord readSensor(const RootFolder& root, const Chip& chip, const SensorKind& kind, const std::string& channel) {
    const std::string label = cleanName(root.text(chip.folder + "/" + channel + "_label"));
    const std::string& shown = label.empty() ? channel : label;
    DeviceRecord sensor;
    sensor.type = kind.type;
    sensor.name = chip.name + " " + shown;
    sensor.hwLocator = fmt::format("{}/{}:{}", chip.place, kind.prefix, shown);
    sensor.osLocator = fmt::format("{}{}/{}", CHIPS, chip.name, channel);
    sensor.text(property::LABEL, label);
    const bool isFaulty = root.text(chip.folder + "/" + channel + "_fault") == "1";
    const auto value = signedNumber(root.text(chip.folder + "/" + channel + std::string(kind.input)));
    if (value && !isFaulty) {
        sensor.reading(kind.key, *value / kind.step, kind.unit);
    }
    return sensor;
}

void addSensors(CollectContext& context, const Chip& chip) {
    std::string before;
    for (const std::string& file : context.root.list(chip.folder)) {
        std::string_view channel;
        const SensorKind* const kind = kindOf(file, channel);
        if (kind == nullptr || channel == before) {
            continue;  // a power that is read twice, at the moment and on average
        }
        before = channel;
        DeviceRecord sensor = readSensor(context.root, chip, *kind, before);
        const std::size_t above = context.recording.nearest(chip.sysPath);
        sensor.parent = above == Recording::NONE ? 0 : above;
        context.recording.add(std::move(sensor));
    }
}

}  // namespace

void collectSensors(CollectContext& context) {
    std::vector<Chip> chips;
    for (const std::string& name : context.root.list(CHIPS)) {
        Chip chip = readChip(context, name);
        const bool isOfSupply = chip.sysPath.find("/power_supply/") != std::string::npos;
        if (!chip.name.empty() && !isOfSupply) {
            chips.push_back(std::move(chip));
        }
    }
    // Chips of one place are numbered in this order, which must not be that of their drivers.
    std::stable_sort(chips.begin(), chips.end(), [](const Chip& a, const Chip& b) {
        return std::tie(a.place, a.sysPath) < std::tie(b.place, b.sysPath);
    });
    for (const Chip& chip : chips) {
        addSensors(context, chip);
    }
}

}  // namespace vrx
