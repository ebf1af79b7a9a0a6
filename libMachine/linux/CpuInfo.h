#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vrx {

/// What /proc/cpuinfo says of one logical processor: its lines as pairs. Borrows from the CpuInfo.
class CpuInfoBlock {
public:
    /// The value of a line ("model name"); empty when there is none.
    std::string_view value(std::string_view key) const noexcept;

    /// The same as a number.
    std::optional<std::uint64_t> number(std::string_view key) const noexcept;

private:
    friend class CpuInfo;
    std::vector<std::pair<std::string_view, std::string_view>> m_lines;
};

/// The content of /proc/cpuinfo.
class CpuInfo {
public:
    CpuInfo() = default;
    explicit CpuInfo(std::vector<char> text);
    CpuInfo(CpuInfo&&) = default;
    CpuInfo& operator=(CpuInfo&&) = default;

    /// One for each logical processor that is online.
    const std::vector<CpuInfoBlock>& blocks() const noexcept { return m_blocks; }

    /// The first logical processor of a package ("physical id"); null when there is none.
    const CpuInfoBlock* firstOfPackage(std::uint64_t package) const noexcept;

    /// Whether the processors say that they run under a hypervisor.
    bool isVirtual() const noexcept;

private:
    std::vector<char> m_text;
    std::vector<CpuInfoBlock> m_blocks;
};

}  // namespace vrx
