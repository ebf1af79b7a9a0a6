#include "libMachine/linux/PciPlaces.h"

#include "libMachine/record/Recording.h"

namespace vrx {

namespace {

constexpr std::string_view PREFIX = "pci:";

std::string folderAbove(std::string_view path) { return std::string(path.substr(0, path.rfind('/'))); }

/// Whether a locator is that of a function and not of something on it ("pci:0000:00:17.0/ata:3").
bool isFunction(std::string_view hwLocator) {
    return hwLocator.starts_with(PREFIX) && hwLocator.find('/') == std::string_view::npos;
}

}  // namespace

PciPlaces::PciPlaces(const Recording& recording) : m_recording(recording) {
    for (std::size_t place = 0; place < recording.size(); ++place) {
        const DeviceRecord& device = recording.at(place);
        if (!isFunction(device.hwLocator)) {
            continue;
        }
        m_functions.emplace(device.hwLocator.substr(PREFIX.size()), place);
        if (!device.sysPath.empty()) {
            m_byFolder[folderAbove(device.sysPath)].push_back(place);
        }
    }
}

std::vector<std::size_t> PciPlaces::inSlot(std::string_view address) const {
    const std::size_t named = function(address);
    std::vector<std::size_t> places;
    if (named != Recording::NONE && isRootPort(named)) {
        const auto behind = m_byFolder.find(m_recording.at(named).sysPath);
        return behind == m_byFolder.end() ? places : behind->second;
    }
    const std::string_view device = address.substr(0, address.rfind('.') + 1);
    for (auto at = m_functions.lower_bound(device); at != m_functions.end() && at->first.starts_with(device); ++at) {
        places.push_back(at->second);
    }
    return places;
}

std::size_t PciPlaces::function(std::string_view address) const {
    const auto at = m_functions.find(address);
    return at == m_functions.end() ? Recording::NONE : at->second;
}

/// A bridge that stands on no other PCI function.
bool PciPlaces::isRootPort(std::size_t place) const {
    const DeviceRecord& device = m_recording.at(place);
    return device.type == u"PciBridge" && !device.sysPath.empty() &&
           m_recording.nearest(folderAbove(device.sysPath)) == Recording::NONE;
}

}  // namespace vrx
