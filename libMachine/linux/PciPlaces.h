#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "libCommon/text/TextHash.h"

namespace vrx {

class Recording;

/// The PCI functions of a recording by their place on the bus.
class PciPlaces {
public:
    explicit PciPlaces(const Recording& recording);

    /// Places in the recording of all functions of the device at an address ("0000:3b:00.0"), whichever function the
    /// address names. Where that is a root port, whose slot is behind it: of what sits there.
    std::vector<std::size_t> inSlot(std::string_view address) const;

    /// Place in the recording of the function at exactly that address; Recording::NONE when there is none.
    std::size_t function(std::string_view address) const;

    /// All functions: address and place in the recording.
    const std::map<std::string, std::size_t, std::less<>>& functions() const noexcept { return m_functions; }

private:
    bool isRootPort(std::size_t place) const;

    const Recording& m_recording;
    std::map<std::string, std::size_t, std::less<>> m_functions;
    std::unordered_map<std::string, std::vector<std::size_t>, TextHash> m_byFolder;  ///< by their sysfs folder
};

}  // namespace vrx
