#include "libDiagnosis/FaultKindNames.h"

#include <algorithm>

namespace vrx {

std::span<const FaultKind> allFaultKinds() noexcept {
    static constexpr FaultKind KINDS[] = {FaultKind::Missing,   FaultKind::Wrong,       FaultKind::Extra,
                                          FaultKind::Moved,     FaultKind::Swapped,     FaultKind::Replaced,
                                          FaultKind::Forbidden, FaultKind::Undetermined};
    return KINDS;
}

std::optional<FaultKind> faultKindNamed(std::string_view name) noexcept {
    const auto kinds = allFaultKinds();
    const auto at = std::ranges::find(kinds, name, [](FaultKind kind) { return nameOf(kind); });
    return at == kinds.end() ? std::nullopt : std::optional(*at);
}

}  // namespace vrx
