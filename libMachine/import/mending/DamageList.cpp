#include "libMachine/import/mending/DamageList.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace vrx {

namespace {

struct Title {
    DamageKind kind;
    DamageLoss loss;
    std::string_view text;
};

constexpr Title TITLES[] = {
    {DamageKind::BytesNotUtf8, DamageLoss::Nothing, "bytes that are no UTF-8, replaced"},
    {DamageKind::ControlCharacters, DamageLoss::Nothing, "control characters, left out"},
    {DamageKind::XmlCutOff, DamageLoss::Devices, "XML that ends too early, closed"},
    {DamageKind::XmlNotClosed, DamageLoss::Nothing, "XML elements that are not closed, closed"},
    {DamageKind::XmlNoTag, DamageLoss::Devices, "XML tags that make no sense, left out"},
    {DamageKind::XmlTooDeep, DamageLoss::Devices, "XML elements that are nested too deep, left out"},
    {DamageKind::JsonNoComma, DamageLoss::Nothing, "missing commas in JSON, put in"},
    {DamageKind::JsonCutOff, DamageLoss::Devices, "JSON that ends too early"},
    {DamageKind::JsonNotParsed, DamageLoss::Devices, "JSON that does not parse, left out from there on"},
    {DamageKind::StructureHead, DamageLoss::Devices, "structures whose first line cannot be read, left out"},
    {DamageKind::StructureLine, DamageLoss::Properties, "lines that cannot be read, left out"},
    {DamageKind::StructureNumber, DamageLoss::Properties, "numbers that cannot be read, left out"},
    {DamageKind::StructureHandle, DamageLoss::Nothing, "structures with the handle of another one"},
    {DamageKind::StructuresMissing, DamageLoss::Devices, "structures that the recording announces and does not have"},
    {DamageKind::TableComplaint, DamageLoss::Nothing, "complaints of dmidecode about the table"},
    {DamageKind::TableCutOff, DamageLoss::Devices, "recordings that end before the end of the table"},
    {DamageKind::ArchiveCutOff, DamageLoss::Devices, "archives that are damaged or end too early"},
    {DamageKind::ResourceLeftOut, DamageLoss::Devices, "resources that cannot be read, left out"},
    {DamageKind::ResourceMissing, DamageLoss::Nothing,  // its types are known
     "resources that others refer to and the recording does not have"},
    {DamageKind::ResourceTwice, DamageLoss::Properties,
     "resources that are there twice and differ, the first one taken"},
    {DamageKind::PartNotHealthy, DamageLoss::Nothing, "parts that report a health other than OK"},
    {DamageKind::ModuleCalledEmpty, DamageLoss::Sizes,
     "memory modules that are called empty and have a part or serial number, kept"},
    {DamageKind::SizeMissing, DamageLoss::Sizes,
     "memory modules and caches that do not tell their size, kept without one"},
    {DamageKind::RepeatedSerialNumber, DamageLoss::Nothing, "modules or disks with the serial number of another one"},
    {DamageKind::RepeatedLocator, DamageLoss::Nothing, "devices at the place of another one, told apart by a number"},
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

DamageLoss lossOf(DamageKind kind) noexcept {
    const auto* const title = std::ranges::find(TITLES, kind, &Title::kind);
    return title == std::end(TITLES) ? DamageLoss::Devices : title->loss;
}

std::string damageText(const ImportDamage& damage) {
    const std::string first = firstOf(damage);
    return fmt::format("{}: {}{}", damageTitle(damage.kind), damage.count,
                       first.empty() ? first : fmt::format(" (first: {})", first));
}

}  // namespace vrx
