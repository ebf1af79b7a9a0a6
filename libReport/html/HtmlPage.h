#pragma once

#include <string_view>

#include "libReport/html/HtmlWriter.h"

/// The frame of a page that needs nothing from outside: its policy lets a browser run the page's own script and style,
/// by their hashes, and load nothing.
namespace vrx {

void beginPage(HtmlWriter& html, std::string_view title);
void endPage(HtmlWriter& html);

/// What a page has that is not the page of a check: a style beside the common one, and a script in place of that one's.
/// The hashes are as HtmlAssets.h has them.
struct HtmlPageAssets {
    std::string_view style;
    std::string_view styleHash;
    std::string_view script;
    std::string_view scriptHash;
};
void beginPage(HtmlWriter& html, std::string_view title, const HtmlPageAssets& assets);
void endPage(HtmlWriter& html, const HtmlPageAssets& assets);

/// A field that hides every element with the attribute `data-entry` whose text holds not all of the words that are
/// typed.
void writeSearch(HtmlWriter& html);

/// The attribute's name.
inline constexpr std::string_view HTML_ENTRY = "data-entry";

}  // namespace vrx
