#pragma once

#include <span>
#include <string_view>

#include "libCommon/text/String.h"

namespace vrx {

class Recording;

/// Types of devices which a recording of some format may lack though the machine has them. One of them is not known of
/// a machine when its recording holds no device of that type.
struct FormatGap {
    std::string_view reason;
    std::span<const StringView> types;
    bool isAlways = false;  ///< nor is it known when the recording holds some: there may be more
};

std::span<const FormatGap> lshwGaps() noexcept;
std::span<const FormatGap> dmidecodeGaps() noexcept;
std::span<const FormatGap> hwlocGaps() noexcept;
std::span<const FormatGap> redfishGaps() noexcept;

/// Notes those types of which the recording holds no device, and those that it never holds all of. Requires: all
/// devices are there.
void noteGaps(std::span<const FormatGap> gaps, Recording& recording);

}  // namespace vrx
