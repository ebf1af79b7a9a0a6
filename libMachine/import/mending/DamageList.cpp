#include "libMachine/import/mending/DamageList.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace vrx {

namespace {

struct Title {
    DamageKind kind;
    std::string_view text;
};

constexpr Title TITLES[] = {
    {DamageKind::BytesNotUtf8, "bytes that are no UTF-8, replaced"},
    {DamageKind::ControlCharacters, "control characters, left out"},
    {DamageKind::XmlCutOff, "XML that ends too early, closed"},
    {DamageKind::XmlNotClosed, "XML elements that are not closed, closed"},
    {DamageKind::XmlNoTag, "XML tags that make no sense, left out"},
    {DamageKind::XmlTooDeep, "XML elements that are nested too deep, left out"},
    {DamageKind::JsonNoComma, "missing commas in JSON, put in"},
    {DamageKind::JsonCutOff, "JSON that ends too early"},
    {DamageKind::JsonNotParsed, "JSON that does not parse, left out from there on"},
    {DamageKind::StructureHead, "structures whose first line cannot be read, left out"},
    {DamageKind::StructureLine, "lines that cannot be read, left out"},
    {DamageKind::StructureNumber, "numbers that cannot be read, left out"},
    {DamageKind::StructureHandle, "structures with the handle of another one"},
    {DamageKind::StructuresMissing, "structures that the recording announces and does not have"},
    {DamageKind::TableComplaint, "complaints of dmidecode about the table"},
    {DamageKind::TableCutOff, "recordings that end before the end of the table"},
    {DamageKind::RepeatedSerialNumber, "modules or disks with the serial number of another one"},
    {DamageKind::RepeatedLocator, "devices at the place of another one, told apart by a number"},
};

std::string firstOf(const ImportDamage& damage) {
    if (damage.firstLine == 0) {
        return damage.firstPlace;
    }
    return fmt::format("line {}{}{}", damage.firstLine, damage.firstPlace.empty() ? "" : ", ", damage.firstPlace);
}

}  // namespace

void DamageList::add(DamageKind kind, std::size_t line, std::string place, std::size_t count) {
    auto at = std::ranges::find(m_kinds, kind, &ImportDamage::kind);
    if (at == m_kinds.end()) {
        at = m_kinds.insert(m_kinds.end(), ImportDamage{kind, 0, line, std::move(place)});
    }
    at->count += count;
}

std::string_view damageTitle(DamageKind kind) noexcept {
    const auto* const title = std::ranges::find(TITLES, kind, &Title::kind);
    return title == std::end(TITLES) ? std::string_view() : title->text;
}

std::string damageText(const ImportDamage& damage) {
    const std::string first = firstOf(damage);
    return fmt::format("{}: {}{}", damageTitle(damage.kind), damage.count,
                       first.empty() ? first : fmt::format(" (first: {})", first));
}

}  // namespace vrx
