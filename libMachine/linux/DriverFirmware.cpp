#include "libMachine/linux/DriverFirmware.h"

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <iterator>

#include "libCommon/io/FileDescriptor.h"

namespace vrx {

std::string driverFirmware(const std::string& interface) {
    const FileDescriptor anySocket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ifreq request{};
    if (!anySocket.isOpen() || interface.size() >= sizeof request.ifr_name) {
        return {};
    }
    std::copy(interface.begin(), interface.end(), request.ifr_name);
    ethtool_drvinfo info{};
    info.cmd = ETHTOOL_GDRVINFO;
    request.ifr_data = reinterpret_cast<char*>(&info);
    if (ioctl(anySocket.number(), SIOCETHTOOL, &request) != 0) {
        return {};
    }
    const char* const end = std::find(std::cbegin(info.fw_version), std::cend(info.fw_version), '\0');
    const std::string version(std::cbegin(info.fw_version), end);
    return version == "N/A" ? std::string() : version;  // the kernel's word for none
}

}  // namespace vrx
