#pragma once

#include <string>
#include <vector>

#include "libReport/text/TextFormat.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// A machine for people: `devices`, which are some or all of the store's in its order, as a tree with what matters
/// first, or with `withProperties` a block of everything for each. `machine` is its name for the head line.
std::string showText(const StateManager& store, const std::vector<const IDeviceImp*>& devices,
                     const std::string& machine, bool withProperties, const TextFormat& format);

}  // namespace vrx
