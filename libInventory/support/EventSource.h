#pragma once

#include "libCommon/text/String.h"
#include "libSystemState/results/TestRunEventImp.h"

/// What the module's events carry as their origin, and their types.
namespace vrx::eventSource {

inline constexpr const char16_t* NAME = u"libInventory";
inline constexpr const char16_t* SOURCE_FILE = u"libInventory/Inventory";
inline constexpr const char16_t* TEST_FAILED = u"InventoryTestFailed";
inline constexpr EventTypeImp TEST_ENDED{1};
inline constexpr EventTypeImp SCRIPT_NOTICE{2};

}  // namespace vrx::eventSource
