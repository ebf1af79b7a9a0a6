#pragma once

#include <string>
#include <vector>

#include "libSystemState/StateManager.h"

namespace vrx::cli {

/// Guids of the store that look like the one that it does not have, the most similar first; a few at most.
std::vector<std::string> nearGuids(const String& guid, const StateManager& store);

/// The same for a text that may stand for a guid, a locator or a name: of each near device the one of these that looks
/// most like it.
std::vector<std::string> nearDevices(const String& text, const StateManager& store);

}  // namespace vrx::cli
