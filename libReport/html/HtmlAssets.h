#pragma once

#include <string_view>

/// What every page carries. A browser uses them only while the hashes fit: the base64 form of the SHA-256 of the text,
/// as `openssl dgst -sha256 -binary | base64` prints it. tests/html tells when they do not.
namespace vrx {

extern const std::string_view HTML_STYLE;
extern const std::string_view HTML_STYLE_HASH;
extern const std::string_view HTML_SCRIPT;
extern const std::string_view HTML_SCRIPT_HASH;

}  // namespace vrx
