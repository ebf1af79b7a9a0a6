/// The text is a list of structures:
///
///     Handle 0x1100, DMI type 17, 84 bytes        the head; older versions write the type on a line of its own
///     Memory Device                               the title
///         Size: 16384 MB                          fields
///         Supported SRAM Types:                   a field with a list
///             Synchronous                         items of the list
///
/// Indentation tells titles, fields and items apart. What counts is only more or less of it, because tabs become blanks
/// of any number when texts are copied; where all of it was lost, lines with a colon are fields and the others items.
///
/// Before the first structure the text says how many there are or where the table lies; a text that says so and has
/// fewer, or no end of the table, was cut off.

#include "libMachine/import/dmidecode/DmidecodeText.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "libMachine/linux/RootFolder.h"

namespace vrx {

namespace {

constexpr unsigned ONBOARD_LIST = 10;
constexpr unsigned ADDITIONAL_INFORMATION = 40;
constexpr unsigned INACTIVE = 126;
constexpr unsigned END_OF_TABLE = 127;

struct Line {
    std::string_view text;  ///< without blanks at both ends
    std::size_t indent = 0;
    std::size_t number = 0;
};

constexpr bool isBlank(char character) noexcept { return character == ' ' || character == '\t' || character == '\r'; }

Line lineOf(std::string_view raw, std::size_t number) {
    static constexpr std::size_t TAB = 8;
    Line line;
    line.number = number;
    std::size_t first = 0;
    for (; first < raw.size() && isBlank(raw[first]); ++first) {
        line.indent = raw[first] == '\t' ? (line.indent / TAB + 1) * TAB : line.indent + 1;
    }
    std::size_t end = raw.size();
    while (end > first && isBlank(raw[end - 1])) {
        --end;
    }
    line.text = raw.substr(first, end - first);
    return line;
}

/// The number behind a text, up to what is no digit of it; empty when there is none.
std::optional<unsigned> numberAfter(std::string_view text, std::string_view label) {
    const std::size_t at = text.find(label);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(at + label.size());
    const std::size_t end = std::min(text.find_first_not_of("0123456789abcdefABCDEFx"), text.size());
    const auto number = parseNumber(text.substr(0, end));
    return number && *number <= 0xFFFFFFFF ? std::optional(static_cast<unsigned>(*number)) : std::nullopt;
}

/// What people put in the place of lines that they do not want to show.
bool isHash(std::string_view text) noexcept {
    return text.size() >= 16 && text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

/// What the program says when the table that it reads makes no sense to it.
bool isComplaint(std::string_view text) noexcept {
    return text.starts_with("Wrong DMI structures") || text.find("DMI table is broken") != std::string_view::npos ||
           text == "<TRUNCATED>";
}

bool sameFields(const DmidecodeStructure& one, const DmidecodeStructure& other) {
    return one.type == other.type && std::equal(one.fields.begin(), one.fields.end(), other.fields.begin(),
                                                other.fields.end(), [](const auto& left, const auto& right) {
                                                    return left.key == right.key && left.value == right.value;
                                                });
}

class Parser {
public:
    explicit Parser(DamageList& damage) : m_damage(damage) {}

    DmidecodeText parse(std::string_view text) {
        const bool endsInLine = !text.ends_with('\n');
        std::size_t number = 0;
        while (!text.empty()) {
            ++number;
            const std::size_t end = std::min(text.find('\n'), text.size());
            take(lineOf(text.substr(0, end), number));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        const bool isWhole = !countMissing();
        if (!isWhole && endsInLine) {
            dropFieldOf(number);
        }
        dropRepeated();
        return {std::move(m_structures), isWhole};
    }

private:
    /// What the next line of a structure is.
    enum class Expected : std::uint8_t { Nothing, Type, Title, Body };

    void take(const Line& line) {
        if (line.text.empty()) {
            m_isAfterBlank = true;
            return;
        }
        if (line.text.starts_with("Handle ")) {
            takeHead(line);
        } else if (isComplaint(line.text)) {
            m_damage.add(DamageKind::TableComplaint, line.number);
        } else if (!line.text.starts_with('#')) {
            takeContent(line);
        }
        m_isAfterBlank = false;
    }

    void takeHead(const Line& line) {
        const std::optional<unsigned> handle = numberAfter(line.text, "Handle ");
        const std::optional<unsigned> type = numberAfter(line.text, "DMI type ");
        const bool isShort = line.text.find(',') == std::string_view::npos;
        ++m_heads;
        m_expected = Expected::Nothing;
        if (!handle || (!type && !isShort)) {
            m_damage.add(DamageKind::StructureHead, line.number);
            return;
        }
        m_structures.emplace_back();
        m_structures.back().handle = *handle;
        m_structures.back().line = line.number;
        setType(type);
    }

    void setType(std::optional<unsigned> type) {
        m_expected = type ? Expected::Title : Expected::Type;
        m_structures.back().type = type.value_or(INACTIVE);
        m_hasEnd = m_hasEnd || type == END_OF_TABLE;
    }

    void takeContent(const Line& line) {
        switch (m_expected) {
            case Expected::Nothing: takePreamble(line); break;
            case Expected::Type: takeType(line); break;
            case Expected::Title:
                m_structures.back().title = line.text;
                m_titleIndent = line.indent;
                m_fieldIndent = NOT_KNOWN;
                m_expected = Expected::Body;
                break;
            case Expected::Body: takeBody(line); break;
        }
    }

    void takePreamble(const Line& line) {
        if (m_heads != 0) {
            return;
        }
        if (line.text.find(" structures occupying ") != std::string_view::npos) {
            m_announced = numberAfter(line.text, "");
        }
        m_isWholeTable = m_isWholeTable || m_announced || line.text.starts_with("Table at ");
    }

    void takeType(const Line& line) {
        const std::optional<unsigned> type = numberAfter(line.text, "DMI type ");
        if (!type) {
            m_damage.add(DamageKind::StructureHead, line.number);
            m_structures.pop_back();
            m_expected = Expected::Nothing;
            return;
        }
        setType(type);
    }

    void takeBody(const Line& line) {
        DmidecodeStructure& structure = m_structures.back();
        const bool isOutside = line.indent <= m_titleIndent && m_fieldIndent != m_titleIndent;
        if (isOutside && m_fieldIndent != NOT_KNOWN) {
            takeOutside(line, structure);
            return;
        }
        m_fieldIndent = m_fieldIndent == NOT_KNOWN ? line.indent : m_fieldIndent;
        const std::size_t colon = line.text.find(':');
        if (line.indent > m_fieldIndent) {
            structure.items.push_back(line.text);
        } else if (colon != std::string_view::npos) {
            const std::size_t value = std::min(line.text.find_first_not_of(" \t", colon + 1), line.text.size());
            structure.fields.push_back({line.text.substr(0, colon), line.text.substr(value), line.number});
        } else if (m_fieldIndent == m_titleIndent) {
            structure.items.push_back(line.text);
        } else if (!isHash(line.text)) {
            m_damage.add(DamageKind::StructureLine, line.number);
        }
    }

    /// A line that is not indented: a second title in structures that have several, the program's talk behind the last
    /// structure, or what is left of a line.
    void takeOutside(const Line& line, const DmidecodeStructure& structure) {
        const bool hasTitles = structure.type == ADDITIONAL_INFORMATION || structure.type == ONBOARD_LIST;
        if (!m_isAfterBlank && !hasTitles && !isHash(line.text)) {
            m_damage.add(DamageKind::StructureLine, line.number);
        }
    }

    /// Whether something is missing.
    bool countMissing() {
        if (m_announced && *m_announced > m_heads) {
            m_damage.add(DamageKind::StructuresMissing, 0, {}, *m_announced - m_heads);
            return true;
        }
        if (m_isWholeTable && !m_announced && !m_hasEnd) {
            m_damage.add(DamageKind::TableCutOff);
            return true;
        }
        return false;
    }

    /// Where the text was cut in the middle of a line, what is left of its value is no value.
    void dropFieldOf(std::size_t lineNumber) {
        if (!m_structures.empty()) {
            std::erase_if(m_structures.back().fields,
                          [lineNumber](const DmidecodeStructure::Field& field) { return field.line == lineNumber; });
        }
    }

    void dropRepeated() {
        std::multimap<unsigned, std::size_t> byHandle;
        std::vector<DmidecodeStructure> kept;
        for (DmidecodeStructure& structure : m_structures) {
            if (structure.type == INACTIVE || structure.type == END_OF_TABLE) {
                continue;
            }
            const auto [first, last] = byHandle.equal_range(structure.handle);
            const bool isRepeated =
                std::any_of(first, last, [&](const auto& entry) { return sameFields(kept[entry.second], structure); });
            if (first != last) {
                m_damage.add(DamageKind::StructureHandle, structure.line,
                             fmt::format("handle 0x{:04X}", structure.handle));
            }
            if (!isRepeated) {
                byHandle.emplace(structure.handle, kept.size());
                kept.push_back(std::move(structure));
            }
        }
        m_structures = std::move(kept);
    }

    static constexpr std::size_t NOT_KNOWN = static_cast<std::size_t>(-1);

    DamageList& m_damage;
    std::vector<DmidecodeStructure> m_structures;
    Expected m_expected = Expected::Nothing;
    std::size_t m_titleIndent = 0;
    std::size_t m_fieldIndent = NOT_KNOWN;
    std::optional<unsigned> m_announced;
    unsigned m_heads = 0;
    bool m_isWholeTable = false;
    bool m_hasEnd = false;
    bool m_isAfterBlank = false;
};

}  // namespace

const DmidecodeStructure::Field* DmidecodeStructure::field(std::string_view key) const noexcept {
    const auto at = std::find_if(fields.begin(), fields.end(), [key](const Field& field) { return field.key == key; });
    return at == fields.end() ? nullptr : &*at;
}

bool DmidecodeStructure::hasItem(std::string_view item) const noexcept {
    return std::find(items.begin(), items.end(), item) != items.end();
}

DmidecodeText parseDmidecode(std::string_view text, DamageList& damage) { return Parser(damage).parse(text); }

}  // namespace vrx
