#pragma once

#include <string>

#include "libSystemState/StateManager.h"

namespace vrx::host {

/// The machine for programs: one object with all devices, in the store's order, and their properties.
std::string showJson(const StateManager& store);

}  // namespace vrx::host
