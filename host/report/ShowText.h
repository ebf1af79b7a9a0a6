#pragma once

#include <string>

#include "host/terminal/Console.h"
#include "libSystemState/StateManager.h"

namespace vrx::host {

/// The machine for people: its devices as a tree, with their locators, or with `withProperties` a block for each
/// device.
std::string showText(const StateManager& store, const std::string& machine, bool withProperties,
                     const TextFormat& format);

}  // namespace vrx::host
