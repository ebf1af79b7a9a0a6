#include "host/report/ShowText.h"

#include "host/report/TextPieces.h"
#include "host/terminal/PrintableText.h"
#include "host/terminal/TextTable.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx::host {

namespace {

std::string orDash(const String& text) { return text.isEmpty() ? "-" : printable(text.view()); }

std::string titleOf(const IDeviceImp& device) {
    const std::string type = printable(device.type().toString().view());
    return device.name().isEmpty() ? type : type + "  " + printable(device.name().view());
}

void addToTree(TextTable& table, const IDeviceImp& device, std::size_t depth) {
    table.addRow(
        {std::string(2 * depth, ' ') + titleOf(device), orDash(device.hwLocator()), orDash(device.osLocator())});
    for (const auto& child : device.children()) {
        addToTree(table, *child, depth + 1);
    }
}

void writeBlock(std::string& out, const IDeviceImp& device, const TextFormat& format) {
    out += "\n" + styled(titleOf(device), Style::Bold, format.colour) + "\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"guid", printable(device.guid().view())});
    table.addRow({"hardware locator", orDash(device.hwLocator())});
    table.addRow({"OS locator", orDash(device.osLocator())});
    for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
        table.addRow({printable(property->key().view()), printableValue(property->value().toString(true))});
    }
    table.write(out, format);
}

}  // namespace

std::string showText(const StateManager& store, const std::string& machine, bool withProperties,
                     const TextFormat& format) {
    std::string out = printable(std::string_view(machine)) + ": " + counted(store.deviceCount(), "device") + "\n";
    if (withProperties) {
        for (const auto& device : store.devicesCapableOf(CapabilityImp::ALL())) {
            writeBlock(out, *device, format);
        }
        return out;
    }
    if (const auto root = store.rootDevice()) {
        out += "\n";
        TextTable table(0, {Style::Plain, Style::Dim, Style::Dim});
        table.setHeader({"device", "hardware locator", "OS locator"});
        addToTree(table, *root, 0);
        table.write(out, format);
    }
    return out;
}

}  // namespace vrx::host
