#pragma once

#include <array>
#include <span>
#include <string_view>

#include "libCommon/text/String.h"

namespace vrx {

struct CollectContext;

/// One of the things that a recording is put together from.
struct Source {
    std::string_view name;
    std::string_view description;  ///< one line for people
    void (*collect)(CollectContext&);

    /// Types of the devices that it finds, the rest empty.
    std::array<StringView, 10> types;

    /// Others find the places of their devices by this one's, so it always runs.
    bool givesPlaces = false;

    /// Also says something when there is nothing but an SMBIOS table.
    bool readsTable = false;
};

/// All sources, in the order in which they run. The first makes the root device.
std::span<const Source> sources();

}  // namespace vrx
