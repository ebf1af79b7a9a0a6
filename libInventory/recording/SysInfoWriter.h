#pragma once

#include <string>

#include "libCommon/Export.h"
#include "libSystemState/Forward.h"

/// Writing what a store holds, so that it can be read back another day, or compared with another machine.
///
///     StateManager machine;
///     ...
///     std::ofstream("machine.xml") << sysInfoXml(machine, false);
///
/// Any number of threads may write, each from a store of its own.
namespace vrx {

/// A store as a SysInfo recording: UTF-8 with declaration, formatted, devices nested as their tree is. Reading it back
/// gives devices with the same types, capabilities, names, locators, and properties with the same keys and values, in
/// this order; what could not be read comes back as well. An empty store gives an empty `SysInfo` element, which is no
/// recording.
///
/// Properties in the categories Volatile, Internal or Group are left out unless `allCategories`, because reading gives
/// every property the category SysInfo.
///
/// What the format cannot hold: parents (reading hangs every device below the root), descriptions, categories, types of
/// values (a number comes back as its text, which matches the same), that an array has just one entry or none (they
/// come back as that entry and as an empty text), that a property is another's child (it follows it), and code units
/// that XML has no room for (control characters, unpaired surrogates), which stay visible as `%u` and four digits.
VRX_EXPORT std::string sysInfoXml(const StateManager& store, bool allCategories);

}  // namespace vrx
