#pragma once

#include <string>
#include <string_view>

namespace vrx {

/// The SMBIOS table in the bytes of a saved file: a copy of /sys/firmware/dmi/tables/DMI is the table itself, what
/// `dmidecode --dump-bin` wrote has an entry point before it, which says where the table stands. Empty when an entry
/// point leads out of the file.
std::string_view tableInFile(std::string_view file) noexcept;

}  // namespace vrx
