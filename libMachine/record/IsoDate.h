#pragma once

#include <string>
#include <string_view>

namespace vrx {

/// A date as firmware writes them, as "2023-12-15": "12/15/2023", "12/15/23", "2023/12/15", "20231215", "15.12.2023",
/// "Dec 15 2023", "15 December, 2023". Years of two digits are those from 1980 to 2079. What is no such date stays as
/// it is.
std::string isoDate(std::string_view text);

}  // namespace vrx
