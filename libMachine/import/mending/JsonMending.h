#pragma once

#include <string>
#include <string_view>

#include "libMachine/import/mending/DamageList.h"

namespace vrx {

/// JSON text as one array of whatever values stand in it: several objects in a row become its entries. Commas between
/// values that lack one are put in and counted, line ends inside strings become blanks, and what stands before the
/// first object or array is left out. Whether the result parses is for the parser to say.
std::string mendedJson(std::string_view text, DamageList& damage);

}  // namespace vrx
