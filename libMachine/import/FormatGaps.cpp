/// That a recording names no disks says that the machine has none only if the program that made it looks for disks.
/// Each format has two lists: what its program never records, and what it records under conditions that the recording
/// does not show (as root, where firmware tells of it, with a selection of its output). Whole types are listed, for a
/// check asks whether devices of a type may be there unseen; and of a type in neither list a recording without any
/// device says that there is none.
///
/// A type of which the recording holds a device was looked for. That goes by the type as it is listed: persistent
/// memory, which is Storage, does not show that dmidecode looks for SolidStateDrives.

#include "libMachine/import/FormatGaps.h"

#include <algorithm>
#include <set>
#include <vector>

#include "libMachine/record/Recording.h"
#include "libSystemState/UnreadSource.h"

namespace vrx {

namespace {

constexpr StringView NOT_IN_LSHW[] = {
    u"ProcessorCore", u"ManagementController", u"Monitor", u"Port", u"PowerAdapter", u"Cooling", u"Sensor",
    u"Security",      u"OperatingSystem",      u"Clock"};
constexpr StringView SELDOM_IN_LSHW[] = {u"Chassis",     u"Motherboard", u"BIOS",    u"Cache", u"MemoryModule",
                                         u"MemoryArray", u"PowerSupply", u"Battery", u"Input"};
constexpr FormatGap LSHW[] = {{"lshw does not record them", NOT_IN_LSHW},
                              {"lshw records them only for root, and where firmware tells of them", SELDOM_IN_LSHW}};

constexpr StringView NOT_IN_DMIDECODE[] = {u"ProcessorCore", u"Coprocessor",    u"HardDiskDrive", u"SolidStateDrive",
                                           u"NvmeDrive",     u"OpticalDrive",   u"FloppyDrive",   u"TapeDrive",
                                           u"FlashDrive",    u"MemoryCard",     u"Volume",        u"RaidController",
                                           u"Infiniband",    u"FibreChannel",   u"Monitor",       u"Camera",
                                           u"VideoCapture",  u"Input",          u"PciBridge",     u"UsbHub",
                                           u"UsbDevice",     u"Port",           u"PowerAdapter",  u"Sensor",
                                           u"Clock",         u"OperatingSystem"};
constexpr StringView SELDOM_IN_DMIDECODE[] = {u"Chassis",     u"Motherboard", u"BIOS",    u"ManagementController",
                                              u"Processor",   u"Cache",       u"Memory",  u"MemoryModule",
                                              u"MemoryArray", u"PowerSupply", u"Battery", u"Cooling",
                                              u"Security"};
constexpr StringView ON_CARDS[] = {u"SataController", u"SasController",   u"NvmeController",  u"IdeController",
                                   u"Ethernet",       u"WirelessNetwork", u"MobileBroadband", u"Bluetooth",
                                   u"Modem",          u"Display",         u"AudioDevice",     u"UsbController",
                                   u"PciDevice"};
constexpr FormatGap DMIDECODE[] = {{"dmidecode does not record them", NOT_IN_DMIDECODE},
                                   {"dmidecode records them only where firmware tells of them", SELDOM_IN_DMIDECODE},
                                   {"dmidecode records those on the board, and none on cards", ON_CARDS, true}};

constexpr StringView NOT_IN_HWLOC[] = {u"ManagementController",
                                       u"MemoryArray",
                                       u"Volume",
                                       u"Monitor",
                                       u"Camera",
                                       u"VideoCapture",
                                       u"Input",

                                       u"UsbDevice",
                                       u"Port",
                                       u"Power",
                                       u"Cooling",
                                       u"Sensor",
                                       u"Security",
                                       u"Slot",
                                       u"OperatingSystem",
                                       u"Clock"};
constexpr StringView SELDOM_IN_HWLOC[] = {
    u"Chassis",     u"Motherboard",  u"BIOS",    u"Processor",         u"ProcessorCore", u"Cache",
    u"Coprocessor", u"MemoryModule", u"Storage", u"StorageController", u"Network",       u"Bluetooth",
    u"Display",     u"AudioDevice",  u"Bus",     u"PciDevice"};
constexpr FormatGap HWLOC[] = {{"hwloc does not record them", NOT_IN_HWLOC},
                               {"hwloc records them only if asked to, or for root", SELDOM_IN_HWLOC}};

constexpr StringView NOT_IN_REDFISH[] = {u"Motherboard", u"ProcessorCore", u"Cache",           u"MemoryArray",
                                         u"Bluetooth",   u"Modem",         u"Monitor",         u"Multimedia",
                                         u"Input",       u"PciBridge",     u"UsbHub",          u"UsbDevice",
                                         u"Port",        u"PowerAdapter",  u"OperatingSystem", u"Clock"};
constexpr StringView SELDOM_IN_REDFISH[] = {u"Chassis",           u"BIOS",        u"ManagementController",
                                            u"Processor",         u"Coprocessor", u"Memory",
                                            u"MemoryModule",      u"Storage",     u"Volume",
                                            u"StorageController", u"Network",     u"Display",
                                            u"UsbController",     u"PciDevice",   u"PowerSupply",
                                            u"Battery",           u"Cooling",     u"Sensor",
                                            u"Security"};
constexpr FormatGap REDFISH[] = {{"Redfish does not tell of them", NOT_IN_REDFISH},
                                 {"a Redfish service tells only of what it has resources for", SELDOM_IN_REDFISH}};

/// Each once.
std::vector<CapabilityImp> recordedTypes(const Recording& recording) {
    std::vector<CapabilityImp> types;
    std::set<StringView> names;
    for (std::size_t place = 0; place < recording.size(); ++place) {
        if (names.insert(recording.at(place).type).second) {
            types.emplace_back(recording.at(place).type);
        }
    }
    return types;
}

}  // namespace

std::span<const FormatGap> lshwGaps() noexcept { return LSHW; }

std::span<const FormatGap> dmidecodeGaps() noexcept { return DMIDECODE; }

std::span<const FormatGap> hwlocGaps() noexcept { return HWLOC; }

std::span<const FormatGap> redfishGaps() noexcept { return REDFISH; }

void noteGaps(std::span<const FormatGap> gaps, Recording& recording) {
    const std::vector<CapabilityImp> recorded = recordedTypes(recording);
    for (const FormatGap& gap : gaps) {
        CapabilityImp unread;
        for (const StringView name : gap.types) {
            const CapabilityImp type(name);
            const auto isOfType = [&type](const CapabilityImp& one) {
                return type.isCapable(one);
            };
            if (gap.isAlways || std::none_of(recorded.begin(), recorded.end(), isOfType)) {
                unread = unread | type;
            }
        }
        if (!unread.isEmpty()) {
            recording.addUnread({u"devices of these types", unread, String::UTF8Decode(gap.reason), {}});
        }
    }
}

}  // namespace vrx
