/// A value that begins with a digit is meant as a number; anything else in its place is one of many words for "none" or
/// "unknown" and no damage.

#include "libMachine/import/dmidecode/DmidecodeValues.h"

#include <algorithm>
#include <charconv>

#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"
#include "libMachine/record/Letters.h"

namespace vrx {

std::string_view DmidecodeValues::raw(std::string_view key) const noexcept {
    const DmidecodeStructure::Field* const field = m_structure.field(key);
    return field == nullptr ? std::string_view() : field->value;
}

std::string DmidecodeValues::text(std::string_view key) const { return textIn(raw(key)); }

std::string DmidecodeValues::word(std::string_view key) const { return wordIn(raw(key)); }

std::string DmidecodeValues::textIn(std::string_view value) {
    return value == "Not Specified" || value == "<BAD INDEX>" ? std::string() : std::string(value);
}

std::string DmidecodeValues::wordIn(std::string_view value) {
    const bool isNone = value == "Other" || value == "Unknown" || value == "Not Specified" || value.starts_with('<');
    return isNone ? std::string() : std::string(value);
}

unsigned DmidecodeValues::number(std::string_view key) const {
    const std::string_view value = raw(key);
    const auto number = parseNumber(value);
    if (!number && !value.empty() && isDigit(value.front())) {
        countUnreadable(key);
    }
    return number && *number <= 0xFFFFFFFF ? static_cast<unsigned>(*number) : 0;
}

std::optional<unsigned> DmidecodeValues::handle(std::string_view key) const {
    const auto number = parseNumber(raw(key));
    return number && *number <= 0xFFFF ? std::optional(static_cast<unsigned>(*number)) : std::nullopt;
}

std::uint64_t DmidecodeValues::size(std::string_view key) const {
    struct SizeUnit {
        std::string_view names;
        unsigned bits;
    };
    static constexpr SizeUnit UNITS[] = {{"bytes|byte|B", 0}, {"kB|KB|kbytes", 10}, {"MB|MiB", 20},
                                         {"GB|GiB", 30},      {"TB|TiB", 40},       {"PB", 50}};
    double number = 0;
    std::string_view name;
    if (!split(key, number, name)) {
        return 0;
    }
    const auto unit = std::find_if(std::begin(UNITS), std::end(UNITS),
                                   [name](const SizeUnit& known) { return hasWord(known.names, name, '|'); });
    static constexpr double LARGEST = 1e18;
    const double bytes =
        unit == std::end(UNITS) ? LARGEST : number * static_cast<double>(std::uint64_t{1} << unit->bits);
    if (bytes >= LARGEST) {
        countUnreadable(key);
        return 0;
    }
    return static_cast<std::uint64_t>(bytes);
}

double DmidecodeValues::measure(std::string_view key, std::string_view units) const {
    double number = 0;
    std::string_view unit;
    if (!split(key, number, unit)) {
        return 0;
    }
    static constexpr double LARGEST = 1e9;
    if (!hasWord(units, unit, '|') || number > LARGEST) {
        countUnreadable(key);
        return 0;
    }
    return number;
}

bool DmidecodeValues::split(std::string_view key, double& number, std::string_view& unit) const {
    const std::string_view value = raw(key);
    if (value.empty() || !isDigit(value.front())) {
        return false;
    }
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    const std::string_view rest = value.substr(static_cast<std::size_t>(end - value.data()));
    if (error != std::errc() || !rest.starts_with(' ')) {
        countUnreadable(key);
        return false;
    }
    unit = rest.substr(1, rest.find(' ', 1) - 1);
    return true;
}

void DmidecodeValues::countUnreadable(std::string_view key) const {
    const DmidecodeStructure::Field* const field = m_structure.field(key);
    m_damage.add(DamageKind::StructureNumber, field->line, std::string(key));
}

}  // namespace vrx
