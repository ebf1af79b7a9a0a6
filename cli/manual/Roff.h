#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vrx::cli {

/// A manual page in the making, in the language of man(7). Texts may hold the marks of Markdown for code, links and
/// emphasis; whatever else means something to roff is escaped.
class Roff {
public:
    Roff(const std::string& name, int section, std::string_view summary);

    void heading(std::string_view text);
    void subheading(std::string_view text);
    void paragraph(std::string_view text);
    void entry(std::string_view term, std::string_view text);
    void item(std::string_view mark, std::string_view text);

    /// Lines that stand as they are.
    void code(std::string_view lines);

    /// What other pages there are: "vrx-inventory-check(1)".
    void seeAlso(const std::vector<std::string>& pages);

    std::string take() { return std::move(m_text); }

private:
    void head(const char* macro, const std::string& text);
    void beginParagraph();
    void line(const std::string& text);

    std::string m_text;
    bool m_isBehindHeading = false;
};

}  // namespace vrx::cli
