#include "libMachine/collect/DmiFields.h"

#include <fmt/format.h>

#include <cstddef>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/smbios/SmbiosNames.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

constexpr std::string_view FOLDER = "/sys/class/dmi/id/";

/// The kernel's copy of a text.
template <typename Facts>
struct Copy {
    std::string Facts::*text;
    std::string_view file;
    StringView key;  ///< under which a recording has it
};

constexpr Copy<SystemFacts> SYSTEM_COPIES[] = {
    {&SystemFacts::vendor, "sys_vendor", property::VENDOR},
    {&SystemFacts::model, "product_name", property::MODEL},
    {&SystemFacts::version, "product_version", property::VERSION},
    {&SystemFacts::family, "product_family", property::FAMILY},
    {&SystemFacts::sku, "product_sku", property::SKU},
    {&SystemFacts::serialNumber, "product_serial", property::SERIAL_NUMBER},
    {&SystemFacts::uuid, "product_uuid", property::UUID},
};

constexpr Copy<BoardFacts> BOARD_COPIES[] = {
    {&BoardFacts::vendor, "board_vendor", property::VENDOR},
    {&BoardFacts::model, "board_name", property::MODEL},
    {&BoardFacts::version, "board_version", property::VERSION},
    {&BoardFacts::serialNumber, "board_serial", property::SERIAL_NUMBER},
    {&BoardFacts::assetTag, "board_asset_tag", property::ASSET_TAG},
};

constexpr Copy<ChassisFacts> CHASSIS_COPIES[] = {
    {&ChassisFacts::vendor, "chassis_vendor", property::VENDOR},
    {&ChassisFacts::version, "chassis_version", property::VERSION},
    {&ChassisFacts::serialNumber, "chassis_serial", property::SERIAL_NUMBER},
    {&ChassisFacts::assetTag, "chassis_asset_tag", property::ASSET_TAG},
};

constexpr Copy<BiosFacts> BIOS_COPIES[] = {
    {&BiosFacts::vendor, "bios_vendor", property::VENDOR},
    {&BiosFacts::version, "bios_version", property::FIRMWARE_VERSION},
    {&BiosFacts::releaseDate, "bios_date", property::RELEASE_DATE},
    {&BiosFacts::revision, "bios_release", property::REVISION},
    {&BiosFacts::controllerRevision, "ec_firmware_release", property::CONTROLLER_REVISION},
};

/// Puts the kernel's copies over the facts of the device of that type.
template <typename Facts, std::size_t Size>
Facts withCopies(CollectContext& context, Facts facts, const Copy<Facts> (&copies)[Size], StringView type) {
    std::string denied;
    std::vector<StringView> keys;
    for (const Copy<Facts>& copy : copies) {
        const std::string path = std::string(FOLDER).append(copy.file);
        std::string text = context.root.text(path);
        if (!text.empty()) {
            facts.*copy.text = std::move(text);
        } else if (context.smbios.isEmpty && context.root.access(path) == RootFolder::Access::Denied) {
            denied += (denied.empty() ? "" : ", ") + toUtf8(copy.key);
            keys.push_back(copy.key);
        }
    }
    if (!denied.empty()) {
        context.noteAccess(FOLDER.substr(0, FOLDER.size() - 1), RootFolder::Access::Denied,
                           {fmt::format("{} of the {}", denied, toUtf8(type)), {type}, keys});
    }
    return facts;
}

/// The first of a list; empty facts when there is none.
template <typename Facts>
Facts firstOf(const std::vector<Facts>& list) {
    return list.empty() ? Facts() : list.front();
}

}  // namespace

SystemFacts dmiSystem(CollectContext& context) {
    return withCopies(context, context.smbios.system.value_or(SystemFacts()), SYSTEM_COPIES, u"System");
}

BoardFacts dmiBoard(CollectContext& context) {
    return withCopies(context, firstOf(context.smbios.boards), BOARD_COPIES, u"Motherboard");
}

ChassisFacts dmiChassis(CollectContext& context) {
    ChassisFacts facts = withCopies(context, firstOf(context.smbios.chassis), CHASSIS_COPIES, u"Chassis");
    if (const auto number = context.root.number(std::string(FOLDER) + "chassis_type")) {
        facts.type = chassisTypeName(static_cast<unsigned>(*number));
    }
    return facts;
}

BiosFacts dmiBios(CollectContext& context) {
    return withCopies(context, context.smbios.bios.value_or(BiosFacts()), BIOS_COPIES, u"BIOS");
}

}  // namespace vrx
