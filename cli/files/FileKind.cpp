#include "cli/files/FileKind.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <utility>

#include "libMachine/RecordingFormat.h"

namespace vrx::cli {

namespace {

struct Start {
    std::string_view bytes;
    const char* text;
};

constexpr Start STARTS[] = {
    {"\x1F\x8B", "this is compressed (gzip); unpack it first"},
    {"BZh", "this is compressed (bzip2); unpack it first"},
    {"\xFD"
     "7zXZ",
     "this is compressed (xz); unpack it first"},
    {"\x28\xB5\x2F\xFD", "this is compressed (zstd); unpack it first"},
    {"PK\x03\x04", "this is a zip archive; unpack it first"},
    {"\xFF\xFE", "this is UTF-16 text; save it as UTF-8"},
    {"\xFE\xFF", "this is UTF-16 text; save it as UTF-8"},
    {std::string_view("<\0", 2), "this is UTF-16 text; save it as UTF-8"},
    {std::string_view("\0<", 2), "this is UTF-16 text; save it as UTF-8"},
};

/// The names of the first two elements.
struct FirstTags {
    std::string_view root;
    std::string_view child;
};

FirstTags firstTags(std::string_view bytes) {
    FirstTags tags;
    for (std::size_t at = bytes.find('<'); at != bytes.npos && tags.child.empty(); at = bytes.find('<', at + 1)) {
        const std::string_view rest = bytes.substr(at + 1);
        if (rest.starts_with("!--")) {
            at = std::min(bytes.find("-->", at), bytes.size() - 1);
        } else if (!rest.starts_with('?') && !rest.starts_with('!') && !rest.starts_with('/')) {
            (tags.root.empty() ? tags.root : tags.child) = rest.substr(0, rest.find_first_of(" \t\r\n/>"));
        }
    }
    return tags;
}

bool isMarkup(std::string_view bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        bytes.remove_prefix(3);
    }
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != bytes.npos && bytes[first] == '<';
}

bool isJson(std::string_view bytes) {
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    return first != bytes.npos && (bytes[first] == '{' || bytes[first] == '[');
}

/// What people do with a file of that kind.
std::string useOf(FileKind kind, std::string_view bytes) {
    switch (kind) {
        case FileKind::Script: return "this is an inventory script; check and lint read it";
        case FileKind::PartsList: return "this is a parts list; the commands of parts, and lint, read it";
        case FileKind::Filter: return "this is a filter; generate --filter reads it";
        case FileKind::Waivers: return "these are waivers; check --waivers reads them";
        case FileKind::Recording: {
            const RecordingFormat format = recognisedFormat(bytes);
            return fmt::format(
                "this is a recording of a machine ({}); --state takes it, and generate makes a script of it",
                isForeign(format) ? formatTitle(format) : "SysInfo XML");
        }
        default: return {};
    }
}

bool isWanted(FileKind kind, FileKind wanted) {
    return kind == wanted ||
           (wanted == FileKind::ScriptOrPartsList && (kind == FileKind::Script || kind == FileKind::PartsList));
}

/// Inside a tag every value stands in quotation marks, and behind the second one comes a blank or the end of the tag.
/// The first place where that does not hold is the one; an angle bracket in a value means that the value never ended.
class QuoteSearch {
public:
    explicit QuoteSearch(StringView text) : m_text(text) {}

    std::optional<MissingQuote> find() {
        while (m_index < m_text.size()) {
            if (const char* const problem = problemHere()) {
                return MissingQuote{m_row, m_column, problem};
            }
            advance();
        }
        return std::nullopt;
    }

private:
    static bool isBlank(char16_t unit) noexcept {
        return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
    }

    const char* problemHere() {
        const char16_t unit = m_text[m_index];
        return m_quote != 0 ? inValue(unit) : m_isInTag ? inTag(unit) : outside(unit);
    }

    const char* outside(char16_t unit) {
        constexpr StringView COMMENT = u"<!--";
        if (m_text.substr(m_index).starts_with(COMMENT)) {
            const std::size_t end = std::min(m_text.find(u"-->", m_index), m_text.size() - 1);
            while (m_index < end) {
                advance();
            }
        }
        m_isInTag = unit == u'<' && !m_text.substr(m_index).starts_with(u"<!") && m_text[m_index] == u'<';
        return nullptr;
    }

    const char* inValue(char16_t unit) {
        if (unit == u'<') {
            m_row = m_valueRow;
            m_column = m_valueColumn;
            return "the value that begins here has no closing quotation mark";
        }
        if (unit == m_quote) {
            m_quote = 0;
            m_wantsGap = true;
        }
        return nullptr;
    }

    const char* inTag(char16_t unit) {
        if (unit == u'"' || unit == u'\'') {
            m_quote = unit;
            m_valueRow = m_row;
            m_valueColumn = m_column;
            return std::exchange(m_wantsValue, false) ? nullptr : "a quotation mark is missing before this one";
        }
        if (!isBlank(unit) && m_wantsValue) {
            return "the value that begins here has no opening quotation mark";
        }
        if (!isBlank(unit) && m_wantsGap && unit != u'>' && unit != u'/' && unit != u'?') {
            return "a quotation mark is missing before this place";
        }
        m_wantsGap = false;
        m_wantsValue = m_wantsValue || unit == u'=';
        m_isInTag = unit != u'>';
        return nullptr;
    }

    void advance() {
        const bool isLineEnd = m_text[m_index++] == u'\n';
        m_row += isLineEnd ? 1 : 0;
        m_column = isLineEnd ? 0 : m_column + 1;
    }

    StringView m_text;
    std::size_t m_index = 0;
    std::uint32_t m_row = 0;
    std::uint32_t m_column = 0;
    std::uint32_t m_valueRow = 0;
    std::uint32_t m_valueColumn = 0;
    bool m_isInTag = false;
    char16_t m_quote = 0;       ///< the one that a value ends with; 0 outside of values
    bool m_wantsValue = false;  ///< behind an equals sign
    bool m_wantsGap = false;    ///< behind a value
};

}  // namespace

std::string expectedText(FileKind wanted) {
    switch (wanted) {
        case FileKind::Script: return "expected an inventory script, XML with the root <inventory-check>";
        case FileKind::PartsList: return "expected a parts list, XML with <part> elements in its root";
        case FileKind::ScriptOrPartsList:
            return "expected an inventory script (root <inventory-check>) or a parts list (<part> elements in the "
                   "root)";
        case FileKind::Filter: return "expected a filter, XML with the root <system-information-filter>";
        case FileKind::Waivers: return "expected waivers, XML with the root <waivers>";
        default:
            return "expected a recording of a machine: SysInfo XML, what lshw, dmidecode or hwloc wrote, or the "
                   "resources of Redfish";
    }
}

FileKind kindOf(std::string_view bytes) {
    bytes = bytes.substr(0, RECOGNITION_SIZE);
    if (isForeign(recognisedFormat(bytes))) {
        return FileKind::Recording;
    }
    const FirstTags tags = isMarkup(bytes) ? firstTags(bytes) : FirstTags();
    const auto isNamed = [](std::string_view name, std::string_view known) {
        return std::ranges::equal(name, known, {}, [](char each) { return static_cast<char>(std::tolower(each)); });
    };
    return isNamed(tags.root, "inventory-check")             ? FileKind::Script
           : isNamed(tags.root, "system-information-filter") ? FileKind::Filter
           : isNamed(tags.root, "waivers")                   ? FileKind::Waivers
           : isNamed(tags.root, "sysinfo")                   ? FileKind::Recording
           : isNamed(tags.child, "part")                     ? FileKind::PartsList
                                                             : FileKind::Unknown;
}

std::string otherKind(std::string_view bytes, FileKind wanted) {
    if (bytes.find_first_not_of(" \t\r\n") == bytes.npos) {
        return "it is empty; " + expectedText(wanted);
    }
    const FileKind kind = kindOf(bytes);
    if (isWanted(kind, wanted)) {
        return {};  // recordings of other programs in UTF-16 are read as well
    }
    for (const Start& start : STARTS) {
        if (bytes.starts_with(start.bytes)) {
            return start.text;
        }
    }
    if (kind != FileKind::Unknown) {
        return useOf(kind, bytes) + "; " + expectedText(wanted);
    }
    const char* const other = bytes.substr(0, RECOGNITION_SIZE).find('\0') != bytes.npos ? "this is a binary file"
                              : isJson(bytes)                                            ? "this is JSON"
                              : !isMarkup(bytes)                                         ? "this is no XML"
                                                                                         : "";
    return *other == '\0' ? std::string() : std::string(other) + "; " + expectedText(wanted);
}

std::optional<MissingQuote> findMissingQuote(StringView text) { return QuoteSearch(text).find(); }

}  // namespace vrx::cli
