/// Batteries and power adapters, by the names that the firmware gives them. What a battery holds at the moment, and
/// what it still can hold, changes by itself; what it was made for does not. Batteries of mice and the like come and go
/// with them and are left out.
///
/// The firmware's table may have told of a battery already. Where it tells of as many as the kernel shows, they are the
/// same ones, in their order.

#include <cmath>

#include "libMachine/collect/CollectContext.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
const std::string SUPPLIES = "/sys/class/power_supply/";

/// One folder of the kernel's list; numbers in it are in millionths.
class Supply {
public:
    Supply(const RootFolder& root, const std::string& name) : m_root(root), m_folder(SUPPLIES + name + "/") {}

    std::string text(std::string_view file) const { return m_root.text(m_folder + std::string(file)); }
    bool isBattery() const { return text("type") == "Battery"; }
    bool isUps() const { return text("type") == "UPS"; }
    bool isPartOfMachine() const {
        return !text("type").empty() && text("scope") != "Device" && text("present") != "0";
    }

    /// In thousandths of the unit, which is what the numbers are good for; 0 when there is none.
    double units(std::string_view file) const {
        static constexpr double STEP = 1000;
        return std::round(static_cast<double>(m_root.number(m_folder + std::string(file)).value_or(0)) / STEP) / STEP;
    }

    std::optional<std::uint64_t> number(std::string_view file) const {
        return m_root.number(m_folder + std::string(file));
    }

private:
    const RootFolder& m_root;
    std::string m_folder;
};

/// What the kernel tells, which any user sees, counts more than what the firmware's table told.
void forget(DeviceRecord& device, StringView key) {
    std::erase_if(device.properties, [key](const PropertyRecord& property) { return property.key == key; });
}

void replaceText(DeviceRecord& device, StringView key, const std::string& value) {
    if (!cleanName(value).empty()) {
        forget(device, key);
    }
    device.text(key, value);
}

void addMeasure(DeviceRecord& device, StringView key, double number, StringView unit, Category category) {
    if (number > 0) {
        forget(device, key);
    }
    device.measure(key, number, unit, category);
}

/// Capacities are energies or charges, as the battery's own electronics count.
void addCapacity(DeviceRecord& battery, const Supply& supply, StringView key, const std::string& suffix,
                 Category category) {
    const double energy = supply.units("energy_" + suffix);
    if (energy > 0) {
        addMeasure(battery, key, energy, u"Wh", category);
    } else {
        addMeasure(battery, key, supply.units("charge_" + suffix), u"Ah", category);
    }
}

void addBattery(DeviceRecord& battery, const Supply& supply) {
    replaceText(battery, property::TECHNOLOGY, supply.text("technology"));
    addCapacity(battery, supply, property::DESIGN_CAPACITY, "full_design", Category::SysInfo());
    addMeasure(battery, property::DESIGN_VOLTAGE, supply.units("voltage_min_design"), u"V", Category::SysInfo());
    addCapacity(battery, supply, property::FULL_CAPACITY, "full", Category::Volatile());
    if (const auto charge = supply.number("capacity")) {
        battery.reading(property::CHARGE, static_cast<double>(*charge), u"%");
    }
    if (const auto cycles = supply.number("cycle_count"); cycles.value_or(0) > 0) {
        battery.number(property::CYCLES, cycles, Category::Volatile());
    }
    battery.text(property::STATUS, supply.text("status"), Category::Volatile());
}

/// The batteries that the firmware's table told of.
std::vector<std::size_t> knownBatteries(const Recording& recording) {
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < recording.size(); ++place) {
        if (recording.at(place).type == u"Battery") {
            places.push_back(place);
        }
    }
    return places;
}

DeviceRecord newSupply(const Supply& supply) {
    DeviceRecord device;
    device.type = supply.isBattery() ? StringView(u"Battery") : supply.isUps() ? u"Power" : u"PowerAdapter";
    device.parent = 0;
    return device;
}

void addSupply(DeviceRecord& device, const Supply& supply, const std::string& name) {
    device.hwLocator = (supply.isBattery() ? "battery:" : "power:") + name;
    device.osLocator = SUPPLIES + name;
    replaceText(device, property::VENDOR, supply.text("manufacturer"));
    replaceText(device, property::MODEL, supply.text("model_name"));
    replaceText(device, property::SERIAL_NUMBER, supply.text("serial_number"));
    if (supply.isBattery() || supply.isUps()) {
        addBattery(device, supply);
    } else if (const auto isOnline = supply.number("online")) {
        device.flag(property::ONLINE, *isOnline != 0, Category::Volatile());
    }
    device.name = nameFromModel(device, (supply.isBattery() ? "Battery " : "Power supply ") + name);
}

}  // namespace

void collectPower(CollectContext& context) {
    std::vector<std::string> names;
    std::size_t batteries = 0;
    for (std::string& name : context.root.list(SUPPLIES)) {
        const Supply supply(context.root, name);
        if (supply.isPartOfMachine()) {
            batteries += supply.isBattery() ? 1 : 0;
            names.push_back(std::move(name));
        }
    }
    std::vector<std::size_t> known = knownBatteries(context.recording);
    if (known.size() != batteries) {
        known.clear();
    }
    std::size_t next = 0;
    for (const std::string& name : names) {
        const Supply supply(context.root, name);
        const bool isKnown = supply.isBattery() && next < known.size();
        const std::size_t place = isKnown ? known[next++] : context.recording.add(newSupply(supply));
        addSupply(context.recording.amend(place), supply, name);
    }
}

}  // namespace vrx
