#pragma once

#include <string>
#include <string_view>

namespace vrx {

/// The start of a recording, as text in which ASCII can be looked for, for those who tell formats apart.
///
/// Where something stands before the document (a shell's prompt, a warning of the program that wrote it), the first
/// line that looks like the start of XML or JSON counts.
class RecordingStart {
public:
    explicit RecordingStart(std::string_view bytes);
    RecordingStart(const RecordingStart&) = delete;
    RecordingStart& operator=(const RecordingStart&) = delete;

    /// All of it, without blanks before it.
    std::string_view text() const noexcept { return m_text; }

    /// Whether it is a tar archive.
    bool isArchive() const noexcept { return m_isArchive; }

    /// From the first "{" or "[" on; empty when it is no JSON.
    std::string_view json() const noexcept { return m_json; }

    /// XML from its root element on, and from the first element in the root on; empty when there is none.
    std::string_view root() const noexcept { return m_root; }
    std::string_view firstInRoot() const noexcept;

private:
    bool m_isArchive;
    std::string m_start;
    std::string_view m_text;
    std::string_view m_json;
    std::string_view m_root;
};

/// The name of the element that a text starts with.
std::string_view elementName(std::string_view text) noexcept;

}  // namespace vrx
