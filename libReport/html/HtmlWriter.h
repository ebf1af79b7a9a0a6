#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vrx {

/// Writes HTML. Whatever a text or the value of an attribute holds, it stays text: markup in it is escaped, and what a
/// browser would not show is made visible. Elements end in the order in which they began.
///
///     HtmlWriter html;
///     html.begin("p", "note").text("a < b").element("b", "", "!").end();
///     html.take();  // <p class="note">a &lt; b<b>!</b></p>
class HtmlWriter {
public:
    /// Requires: the name outlives the element's end.
    HtmlWriter& begin(std::string_view tag, std::string_view cssClass = {});

    /// Requires: nothing was written since an element began.
    HtmlWriter& attribute(std::string_view name, std::string_view value);

    /// UTF-8.
    HtmlWriter& text(std::string_view text);

    HtmlWriter& end();

    /// An element with nothing but a text.
    HtmlWriter& element(std::string_view tag, std::string_view cssClass, std::string_view text);

    /// An element that has neither content nor end, as `meta`.
    HtmlWriter& voidElement(std::string_view tag);

    /// Text that stands as it is: the project's own styles and scripts, never anything of a machine or a script.
    HtmlWriter& raw(std::string_view text);

    /// What was written so far of a document that is too long to be held; the rest follows.
    std::string takePart();

    /// The document. Requires: every element has ended.
    std::string take();

private:
    void closeTag();

    std::string m_text;
    std::vector<std::string_view> m_open;
    bool m_isInTag = false;
};

}  // namespace vrx
