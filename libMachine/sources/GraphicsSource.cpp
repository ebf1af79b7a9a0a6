/// Graphics adapters and the monitors at their connectors. An adapter that is a PCI or USB device is that device; one
/// on the board becomes a device of its own. Frame buffers that the firmware leaves behind for the start are no
/// adapters.
///
/// A monitor stands below its adapter by connector. What it is comes from its EDID; one whose EDID is damaged is there,
/// but nothing is known of it.

#include <fmt/format.h>

#include <cmath>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/ids/Edid.h"
#include "libMachine/linux/DevicePlace.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
const std::string CARDS = "/sys/class/drm/";

/// Names of makers by their three letters: a table with lines "GSM<tab>LG Electronics".
class MakerNames {
public:
    explicit MakerNames(const RootFolder& root) {
        static constexpr std::size_t LARGEST_TABLE = std::size_t{1} << 20;
        for (const RootFolder& source : {root, RootFolder("/")}) {
            for (const char* const path : {"/usr/share/hwdata/pnp.ids", "/usr/share/misc/pnp.ids"}) {
                if (m_table.empty()) {
                    m_table = source.bytes(path, LARGEST_TABLE);
                }
            }
        }
    }

    /// The letters themselves where the table has no name.
    std::string name(const std::string& letters) const {
        const std::size_t at = m_table.find("\n" + letters + "\t");
        if (at == std::string::npos || letters.empty()) {
            return letters;
        }
        const std::size_t start = at + letters.size() + 2;
        return m_table.substr(start, m_table.find('\n', start) - start);
    }

private:
    std::string m_table;
};

bool isFirmwareFrameBuffer(std::string_view driver) noexcept {
    return driver.ends_with("-framebuffer") || driver == "simpledrm" || driver == "vkms";
}

void addAdapter(CollectContext& context, const std::string& card) {
    const RootFolder& root = context.root;
    const std::string sysPath = root.resolved(CARDS + card + "/device");
    const std::string driver = root.linkTarget(CARDS + card + "/device/driver");
    if (sysPath.empty() || isVirtualFolder(sysPath) || isFirmwareFrameBuffer(driver)) {
        return;
    }
    std::size_t place = context.recording.nearest(sysPath);
    if (place == Recording::NONE) {
        DeviceRecord adapter;
        adapter.type = u"Display";
        adapter.name = "Graphics adapter";
        adapter.hwLocator = placeOfFolder(context.recording, sysPath);
        adapter.osLocator = sysPath;
        adapter.sysPath = sysPath;
        adapter.text(property::DRIVER, driver, Category::Internal());
        place = context.recording.add(std::move(adapter));
    }
    DeviceRecord& adapter = context.recording.amend(place);
    adapter.isAlso(u"Display");
    adapter.size(property::VIDEO_MEMORY, root.number(CARDS + card + "/device/mem_info_vram_total").value_or(0));
}

void addIdentity(DeviceRecord& monitor, const Edid& edid, const MakerNames& makers) {
    const std::string vendor = makers.name(edid.vendorId);
    monitor.text(property::VENDOR, vendor);
    monitor.text(property::MODEL, edid.model);
    monitor.text(property::VENDOR_ID, edid.vendorId);
    monitor.add(property::DEVICE_ID, String::UTF8Decode(fmt::format("{:04x}", edid.productCode)));
    monitor.text(property::SERIAL_NUMBER, edid.serialNumber);
    if (edid.year != 0) {
        monitor.text(property::MANUFACTURE_DATE,
                     edid.week == 0 ? std::to_string(edid.year) : fmt::format("{}-W{:02}", edid.year, edid.week));
    }
    monitor.measure(property::WIDTH, edid.width, u"cm");
    monitor.measure(property::HEIGHT, edid.height, u"cm");
    if (edid.nativeWidth != 0) {
        monitor.text(property::NATIVE_MODE,
                     fmt::format("{}x{} @ {} Hz", edid.nativeWidth, edid.nativeHeight, std::round(edid.nativeRate)));
    }
    const std::string model = cleanName(edid.model);
    monitor.name = model.empty() ? fmt::format("Monitor {} {:04x}", edid.vendorId, edid.productCode) : model;
}

void addMonitor(CollectContext& context, const std::string& connector, const MakerNames& makers) {
    static constexpr std::size_t LONGEST_EDID = 32768;
    const RootFolder& root = context.root;
    const std::string folder = CARDS + connector;
    const std::string sysPath = root.resolved(folder);
    const std::string bytes = root.bytes(folder + "/edid", LONGEST_EDID);
    if (isVirtualFolder(sysPath) || (bytes.empty() && root.text(folder + "/status") != "connected")) {
        return;
    }
    const std::string port = connector.substr(connector.find('-') + 1);
    DeviceRecord monitor;
    monitor.type = u"Monitor";
    monitor.name = "Monitor";
    monitor.hwLocator = placeOfFolder(context.recording, sysPath) + "/" + port;
    monitor.osLocator = port;
    monitor.sysPath = sysPath;
    if (const std::optional<Edid> edid = decodeEdid(bytes)) {
        addIdentity(monitor, *edid, makers);
    } else if (!bytes.empty()) {
        context.note(folder + "/edid", CollectNote::Reason::Damaged, "damaged", "what the monitor is");
    }
    context.recording.add(std::move(monitor));
}

}  // namespace

void collectGraphics(CollectContext& context) {
    std::vector<std::string> connectors;
    for (const std::string& name : context.root.list(CARDS)) {
        if (!name.starts_with("card")) {
            continue;
        }
        if (name.find('-') == std::string::npos) {
            addAdapter(context, name);
        } else {
            connectors.push_back(name);
        }
    }
    if (!connectors.empty()) {
        const MakerNames makers(context.root);
        for (const std::string& connector : connectors) {
            addMonitor(context, connector, makers);
        }
    }
}

}  // namespace vrx
