#include "libMachine/linux/CpuInfo.h"

#include <algorithm>

#include "libMachine/linux/RootFolder.h"
#include "libMachine/record/CleanText.h"

namespace vrx {

namespace {

std::string_view withoutBlanks(std::string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace

std::string_view CpuInfoBlock::value(std::string_view key) const noexcept {
    const auto line =
        std::find_if(m_lines.begin(), m_lines.end(), [key](const auto& candidate) { return candidate.first == key; });
    return line == m_lines.end() ? std::string_view() : line->second;
}

std::optional<std::uint64_t> CpuInfoBlock::number(std::string_view key) const noexcept {
    return parseNumber(value(key));
}

CpuInfo::CpuInfo(std::vector<char> text) : m_text(std::move(text)) {
    std::string_view rest(m_text.data(), m_text.size());
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::string_view key = withoutBlanks(line.substr(0, colon));
        if (key == "processor") {
            m_blocks.emplace_back();
        }
        if (!m_blocks.empty()) {
            m_blocks.back().m_lines.emplace_back(key, withoutBlanks(line.substr(colon + 1)));
        }
    }
}

const CpuInfoBlock* CpuInfo::firstOfPackage(std::uint64_t package) const noexcept {
    const auto block = std::find_if(m_blocks.begin(), m_blocks.end(), [package](const CpuInfoBlock& candidate) {
        return candidate.number("physical id") == package;
    });
    return block == m_blocks.end() ? nullptr : &*block;
}

bool CpuInfo::isVirtual() const noexcept {
    return !m_blocks.empty() && hasWord(m_blocks.front().value("flags"), "hypervisor", ' ');
}

}  // namespace vrx
