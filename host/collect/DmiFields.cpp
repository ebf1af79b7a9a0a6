#include "host/collect/DmiFields.h"

#include <fmt/format.h>

#include "host/collect/CollectContext.h"
#include "host/collect/SmbiosNames.h"

namespace vrx::host {

namespace {

/// How a field stands in its SMBIOS structure.
enum class Form : std::uint8_t { Text, Uuid, ChassisType, Date, Release };

struct DmiField {
    SmbiosTable::Type type;
    StringView key;
    std::string_view file;  ///< in /sys/class/dmi/id
    std::uint8_t offset;    ///< in the structure
    Form form = Form::Text;
};

constexpr std::string_view FOLDER = "/sys/class/dmi/id/";

constexpr DmiField FIELDS[] = {
    {SmbiosTable::SYSTEM, property::VENDOR, "sys_vendor", 0x04},
    {SmbiosTable::SYSTEM, property::MODEL, "product_name", 0x05},
    {SmbiosTable::SYSTEM, property::VERSION, "product_version", 0x06},
    {SmbiosTable::SYSTEM, property::FAMILY, "product_family", 0x1A},
    {SmbiosTable::SYSTEM, property::SKU, "product_sku", 0x19},
    {SmbiosTable::SYSTEM, property::SERIAL_NUMBER, "product_serial", 0x07},
    {SmbiosTable::SYSTEM, property::UUID, "product_uuid", 0x08, Form::Uuid},
    {SmbiosTable::BOARD, property::VENDOR, "board_vendor", 0x04},
    {SmbiosTable::BOARD, property::MODEL, "board_name", 0x05},
    {SmbiosTable::BOARD, property::VERSION, "board_version", 0x06},
    {SmbiosTable::BOARD, property::SERIAL_NUMBER, "board_serial", 0x07},
    {SmbiosTable::BOARD, property::ASSET_TAG, "board_asset_tag", 0x08},
    {SmbiosTable::CHASSIS, property::VENDOR, "chassis_vendor", 0x04},
    {SmbiosTable::CHASSIS, property::CHASSIS_TYPE, "chassis_type", 0x05, Form::ChassisType},
    {SmbiosTable::CHASSIS, property::VERSION, "chassis_version", 0x06},
    {SmbiosTable::CHASSIS, property::SERIAL_NUMBER, "chassis_serial", 0x07},
    {SmbiosTable::CHASSIS, property::ASSET_TAG, "chassis_asset_tag", 0x08},
    {SmbiosTable::BIOS, property::VENDOR, "bios_vendor", 0x04},
    {SmbiosTable::BIOS, property::FIRMWARE_VERSION, "bios_version", 0x05},
    {SmbiosTable::BIOS, property::RELEASE_DATE, "bios_date", 0x08, Form::Date},
    {SmbiosTable::BIOS, property::REVISION, "bios_release", 0x14, Form::Release},
};

/// The sixteen bytes of a UUID as text; the first three groups are stored with their lowest byte first.
std::string uuidText(const SmbiosStructure& structure, std::size_t offset) {
    if (!structure.has(offset, 16)) {
        return {};
    }
    std::string text = fmt::format("{:08x}-{:04x}-{:04x}-", structure.dword(offset), structure.word(offset + 4),
                                   structure.word(offset + 6));
    for (std::size_t i = 8; i < 16; ++i) {
        text += fmt::format("{}{:02x}", i == 10 ? "-" : "", structure.byte(offset + i));
    }
    return text;
}

/// "5.14" from two bytes; 255 stands for "not known".
std::string releaseText(const SmbiosStructure& structure, std::size_t offset) {
    const unsigned major = structure.byte(offset);
    const unsigned minor = structure.byte(offset + 1);
    return !structure.has(offset, 2) || major == 0xFF || minor == 0xFF ? std::string()
                                                                       : fmt::format("{}.{}", major, minor);
}

/// "12/15/2023" as "2023-12-15"; any other form stays as it is.
std::string dateText(std::string_view text) {
    const bool isAmerican = text.size() == 10 && text[2] == '/' && text[5] == '/';
    return isAmerican ? fmt::format("{}-{}-{}", text.substr(6), text.substr(0, 2), text.substr(3, 2))
                      : std::string(text);
}

/// The field as the structure has it, in the form that the kernel's copy would have.
std::string rawText(const SmbiosStructure& structure, const DmiField& field) {
    static constexpr unsigned LOCK_BIT = 0x80;
    switch (field.form) {
        case Form::Uuid: return uuidText(structure, field.offset);
        case Form::ChassisType: return std::to_string(structure.byte(field.offset) & ~LOCK_BIT);
        case Form::Release: return releaseText(structure, field.offset);
        default: return std::string(structure.text(field.offset));
    }
}

void addField(DeviceRecord& device, const DmiField& field, const std::string& raw) {
    if (field.form == Form::ChassisType) {
        device.text(field.key, chassisTypeName(static_cast<unsigned>(parseNumber(raw).value_or(0))));
    } else {
        device.text(field.key, field.form == Form::Date ? dateText(raw) : raw);
    }
}

}  // namespace

void addDmiFields(CollectContext& context, SmbiosTable::Type type, DeviceRecord& device) {
    const SmbiosStructure* const structure = context.smbios.first(type);
    std::string denied;
    for (const DmiField& field : FIELDS) {
        if (field.type != type) {
            continue;
        }
        const std::string path = std::string(FOLDER).append(field.file);
        std::string raw = context.root.text(path);
        if (raw.empty() && structure != nullptr) {
            raw = rawText(*structure, field);
        } else if (raw.empty() && context.root.access(path) == RootFolder::Access::Denied) {
            denied += (denied.empty() ? "" : ", ") + toUtf8(field.key);
        }
        addField(device, field, raw);
    }
    if (!denied.empty()) {
        context.noteAccess(FOLDER.substr(0, FOLDER.size() - 1), RootFolder::Access::Denied,
                           fmt::format("{} of the {}", denied, toUtf8(device.type)));
    }
}

std::string nameFromModel(const DeviceRecord& device, std::string_view otherwise, StringView modelKey) {
    std::string vendor;
    std::string model;
    for (const PropertyRecord& property : device.properties) {
        if (property.key == property::VENDOR) {
            vendor = property.value.toString(false).toUtf8();
        } else if (property.key == modelKey) {
            model = property.value.toString(false).toUtf8();
        }
    }
    if (model.empty()) {
        return std::string(otherwise);
    }
    return vendor.empty() || model.starts_with(vendor) ? model : vendor + " " + model;
}

}  // namespace vrx::host
