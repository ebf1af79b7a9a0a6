#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "libMachine/MachineImport.h"

namespace vrx {

/// What a recording may lack for damage.
enum class DamageLoss : std::uint8_t { Nothing, Sizes, Properties, Devices };  ///< Sizes: of modules and caches

DamageLoss lossOf(DamageKind kind) noexcept;

/// What was wrong with a recording by kind, so that a thousand bad bytes give one line and not a thousand.
class DamageList {
public:
    /// Counts damage. The first of each kind says where it is: a line of the text, from 1 (0 for none), and the name of
    /// a field or a locator.
    void add(DamageKind kind, std::size_t line = 0, std::string place = {}, std::size_t count = 1);

    /// Notes that the recording cannot be read at all, and why, as one sentence without a full stop.
    void refuse(std::string reason) { m_refusal = std::move(reason); }
    const std::string& refusal() const noexcept { return m_refusal; }

    const std::vector<ImportDamage>& all() const noexcept { return m_kinds; }
    std::vector<ImportDamage> takeAll() noexcept { return std::move(m_kinds); }

private:
    std::vector<ImportDamage> m_kinds;
    std::string m_refusal;
};

}  // namespace vrx
