#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "libMachine/import/mending/DamageList.h"

namespace vrx {

/// Hears of one file: its path in the mirror ("Systems/1/index.json"), and what it holds.
using RedfishFileReader = std::function<void(const std::string& name, std::string_view bytes)>;

/// Hands out every file of a mirror that may be a resource, in the order of their paths. Links are not followed, and
/// nothing outside the folder is read. False, with the damage list's refusal, when it is larger than a service's
/// resources can be.
bool readRedfishFolder(const std::string& folder, const RedfishFileReader& reader, DamageList& damage);

/// The same for a tar archive in memory, in the archive's order; nothing is unpacked to files.
bool readRedfishArchive(std::string_view bytes, const RedfishFileReader& reader, DamageList& damage);

}  // namespace vrx
