#include "libMachine/import/DamageList.h"

#include <fmt/format.h>

#include <algorithm>

namespace vrx {

void DamageList::add(std::string_view kind, std::string_view place, std::size_t count) {
    const auto same = [kind](const Kind& other) {
        return other.sentence == kind;
    };
    auto at = std::find_if(m_kinds.begin(), m_kinds.end(), same);
    if (at == m_kinds.end()) {
        at = m_kinds.insert(m_kinds.end(), Kind{std::string(kind), std::string(place)});
    }
    at->count += count;
}

Array<String> DamageList::lines() const {
    Array<String> lines;
    for (const Kind& kind : m_kinds) {
        const std::string first = kind.firstPlace.empty() ? "" : fmt::format(" (first: {})", kind.firstPlace);
        lines.append(String::UTF8Decode(fmt::format("{}: {}{}", kind.sentence, kind.count, first)));
    }
    return lines;
}

}  // namespace vrx
