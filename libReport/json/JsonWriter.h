#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"

namespace vrx {

/// Writes JSON for people and programs: two blanks of indent, members in the order in which they are written. A machine
/// may have a million properties, so text is written as it comes and no tree is built.
///
/// The output is always valid UTF-8: an unpaired surrogate becomes U+FFFD, because an escape for half a character would
/// be refused by many readers.
class JsonWriter {
public:
    enum class Layout { Indented, OneLine };

    explicit JsonWriter(Layout layout = Layout::Indented) noexcept : m_layout(layout) {}

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    /// The name of the next value; only inside an object.
    JsonWriter& key(std::string_view name);

    void value(bool flag) { scalar(flag ? "true" : "false"); }
    void value(std::int64_t number) { scalar(std::to_string(number)); }
    void value(double number);
    void value(StringView text) { quoted(toUtf8(text)); }
    void value(const String& text) { value(text.view()); }
    void value(std::string_view text);  ///< what is no UTF-8 in it, as paths may be, becomes U+FFFD
    void value(const char*) = delete;   // would be taken for a flag
    void null() { scalar("null"); }

    /// An array of texts on one line.
    void inlineArray(const Array<String>& texts);

    /// What was written so far, with a line end after a finished value.
    std::string take();

private:
    void begin(char bracket);
    void end(char bracket);
    void startValue();
    void scalar(std::string_view text);
    void quoted(std::string_view utf8);
    void newLine();

    Layout m_layout;
    std::string m_text;
    std::vector<bool> m_hasMembers;  ///< for each open object and array
    bool m_afterKey = false;
};

}  // namespace vrx
