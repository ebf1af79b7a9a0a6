#pragma once

#include <string>
#include <string_view>

namespace vrx {

/// Text as it stands between the tags and in the attributes of an XML document, whatever bytes it holds: what XML
/// cannot hold and what nobody sees becomes an escape that people can read.
std::string xmlText(std::string_view text);
std::string xmlAttribute(std::string_view text);

}  // namespace vrx
