/// What the drivers of RAID, SAS and Fibre Channel controllers know of their hardware: board, serial number, firmware.
/// Each driver has names of its own for the same things; the first file that is there counts. A controller is a PCI
/// function that is recorded already.

#include "libMachine/collect/CollectContext.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

struct HostFile {
    StringView key;
    const char* file;
};

constexpr HostFile FILES[] = {
    {property::FIRMWARE_VERSION, "version_fw"},
    {property::FIRMWARE_VERSION, "firmware_revision"},
    {property::FIRMWARE_VERSION, "firmware_version"},
    {property::FIRMWARE_VERSION, "host_fw_version"},
    {property::FIRMWARE_VERSION, "fwrev"},
    {property::FIRMWARE_VERSION, "fw_version"},
    {property::FIRMWARE_VERSION, "hba_kernel_version"},
    {property::PART_NUMBER, "board_assembly"},
    {property::PART_NUMBER, "model_name"},
    {property::PART_NUMBER, "modelname"},
    {property::SERIAL_NUMBER, "board_tracer"},
    {property::SERIAL_NUMBER, "serial_number"},
    {property::SERIAL_NUMBER, "serialnum"},
    {property::SERIAL_NUMBER, "serial_num"},
    {property::WWN, "host_sas_address"},
};

void addHost(DeviceRecord& controller, const RootFolder& root, const std::string& host) {
    const std::string folder = "/sys/class/scsi_host/" + host + "/";
    for (const HostFile& file : FILES) {
        if (!controller.has(file.key)) {
            controller.text(file.key, root.text(folder + file.file));
        }
    }
    if (!controller.has(property::WWN)) {
        controller.text(property::WWN, root.text("/sys/class/fc_host/" + host + "/port_name"));
    }
}

}  // namespace

void collectStorageControllers(CollectContext& context) {
    static const CapabilityImp controllers =
        CapabilityImp(StringView(u"StorageController")) | CapabilityImp(StringView(u"FibreChannel"));
    static const std::string HOSTS = "/sys/class/scsi_host/";
    for (const std::string& host : context.root.list(HOSTS)) {
        const std::size_t place = context.recording.nearest(context.root.resolved(HOSTS + host));
        const bool isController = place != Recording::NONE && place != 0 &&
                                  controllers.isCapable(CapabilityImp(context.recording.at(place).type));
        if (isController) {
            addHost(context.recording.amend(place), context.root, host);
        }
    }
}

}  // namespace vrx
