#pragma once

#include <string_view>

/// What the page of a fleet carries beside what every page does; the hashes are as HtmlAssets.h has them.
namespace vrx {

extern const std::string_view FLEET_STYLE;
extern const std::string_view FLEET_STYLE_HASH;
extern const std::string_view FLEET_SCRIPT;
extern const std::string_view FLEET_SCRIPT_HASH;

}  // namespace vrx
