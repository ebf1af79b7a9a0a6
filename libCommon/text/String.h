#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "libCommon/Assertion.h"
#include "libCommon/Export.h"

namespace vrx {

/// A borrowed piece of 16-bit text. Operations take it wherever they need not own the text.
using StringView = std::u16string_view;

/// What was wrong with bytes that should have been UTF-8.
struct Utf8Damage {
    std::size_t count = 0;     ///< number of invalid sequences, each of which became one U+FFFD
    std::uint32_t row = 0;     ///< 0-based line of the first one
    std::uint32_t column = 0;  ///< 0-based column of the first one, in UTF-16 code units
};

/// Text of 16-bit code units (UTF-16). Any sequence of units is legal, unpaired surrogates included.
///
///     const String name = String::UTF8Decode("Intel® Xeon®");
///     const bool isXeon = name.view().find(u"Xeon") != StringView::npos;
///     std::cout << name.toUtf8() << '\n';
class VRX_EXPORT String {
public:
    static constexpr std::size_t npos = std::u16string::npos;

    /// The empty text.
    static const String EMPTY;

    String() noexcept = default;
    String(StringView text) : m_text(text) {}
    String(const char16_t* text) : m_text(text) {}
    explicit String(std::u16string&& text) noexcept : m_text(std::move(text)) {}
    String(std::size_t count, char16_t unit) : m_text(count, unit) {}

    /// Decodes UTF-8. Each maximal invalid sequence becomes U+FFFD; `damage`, when given, says how many and where the
    /// first one stood. A leading byte-order mark is dropped. ASCII takes a fast path.
    static String UTF8Decode(std::string_view bytes, Utf8Damage* damage = nullptr);

    /// Encodes as UTF-8; an unpaired surrogate becomes the bytes of U+FFFD.
    std::string toUtf8() const;

    /// The low byte of every code unit.
    std::string getLowerByteString() const;

    operator StringView() const noexcept { return m_text; }
    StringView view() const noexcept { return m_text; }
    const std::u16string& raw() const noexcept { return m_text; }
    const char16_t* data() const noexcept { return m_text.data(); }
    std::size_t size() const noexcept { return m_text.size(); }
    bool isEmpty() const noexcept { return m_text.empty(); }
    void clear() noexcept { m_text.clear(); }
    void reserve(std::size_t units) { m_text.reserve(units); }

    /// Requires: index < size().
    char16_t operator[](std::size_t index) const {
        VRX_ASSERT(index < size());
        return m_text[index];
    }

    String& append(StringView text) {
        m_text.append(text);
        return *this;
    }
    String& append(char16_t unit) {
        m_text.push_back(unit);
        return *this;
    }
    String& operator+=(StringView text) { return append(text); }

    /// Removes `count` units from `position` on (fewer when the text ends before). Requires: position <= size().
    String& remove(std::size_t position, std::size_t count) {
        VRX_ASSERT(position <= size());
        m_text.erase(position, count);
        return *this;
    }

    /// Replaces every occurrence of `from`, scanning left to right without re-reading what was put in. An empty `from`
    /// changes nothing.
    String& replace(StringView from, StringView to);

    /// Drops white space (space, tab, line feed, carriage return, vertical tab, form feed) at both ends.
    String& trim();

    /// Equality without letter case: each code unit folded by Unicode simple case folding.
    bool equalNoCase(StringView other) const noexcept;

    /// Order without letter case: negative, 0 or positive.
    int compareNoCase(StringView other) const noexcept;

    /// "true", "1", "yes", "on" (trimmed, any letter case) are true, everything else is false.
    bool strToBoolean() const noexcept;

    /// The decimal number that the whole trimmed text is; 0 when it is none. Locale-independent; "inf", "nan" and
    /// hexadecimal are no numbers. `isNumber`, when given, tells whether it was one.
    double strToReal64(bool* isNumber = nullptr) const noexcept;

    /// Escapes what XML cannot hold; see text/UuCode.h for the two flags and the format.
    String uuEncode(bool escapeUnrepresentable, bool protectLiterals) const;

    /// Undoes `uuEncode`.
    String uuDecode(bool escapeUnrepresentable, bool protectLiterals) const;

    friend bool operator==(const String& a, const String& b) noexcept { return a.m_text == b.m_text; }
    friend bool operator==(const String& a, StringView b) noexcept { return a.view() == b; }
    friend bool operator==(const String& a, const char16_t* b) noexcept { return a.view() == StringView(b); }
    friend std::strong_ordering operator<=>(const String& a, const String& b) noexcept {
        return a.m_text.compare(b.m_text) <=> 0;
    }

private:
    std::u16string m_text;
};

/// Concatenates pieces into one new text with a single allocation.
template <typename... Pieces>
String concat(const Pieces&... pieces) {
    const StringView views[] = {StringView(pieces)...};
    std::size_t total = 0;
    for (const StringView view : views) {
        total += view.size();
    }
    String result;
    result.reserve(total);
    for (const StringView view : views) {
        result.append(view);
    }
    return result;
}

inline String operator+(const String& a, StringView b) { return concat(a, b); }
inline String operator+(const char16_t* a, const String& b) { return concat(StringView(a), b); }

/// Equality without letter case of two borrowed texts (same folding as String::equalNoCase).
VRX_EXPORT bool equalNoCase(StringView a, StringView b) noexcept;

/// Order without letter case of two borrowed texts.
VRX_EXPORT int compareNoCase(StringView a, StringView b) noexcept;

/// The text with each code unit folded: two texts are equal without case exactly when their folded texts are equal.
VRX_EXPORT String foldCase(StringView text);

/// The text without white space at both ends.
VRX_EXPORT StringView trimmed(StringView text) noexcept;

/// Encodes borrowed text as UTF-8 (see String::toUtf8).
VRX_EXPORT std::string toUtf8(StringView text);

/// Appends borrowed text, encoded as UTF-8, to `out`.
VRX_EXPORT void appendUtf8(std::string& out, StringView text);

/// Hash of borrowed text. Each process has another: nobody can make texts beforehand that share one.
VRX_EXPORT std::size_t hashOf(StringView text) noexcept;
VRX_EXPORT std::size_t hashOf(std::string_view bytes) noexcept;

}  // namespace vrx
