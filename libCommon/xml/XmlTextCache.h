#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "libCommon/text/String.h"

namespace vrx {

/// Short texts that a document holds already, to be held once: types and keys come back in every element.
class XmlTextCache {
public:
    static constexpr std::size_t LONGEST = 23;

    struct Text {
        StringView kept;
        std::uint8_t size = 0;
        char bytes[LONGEST] = {};  ///< the same in UTF-8

        bool is(std::string_view text) const noexcept {
            return size == text.size() && std::memcmp(bytes, text.data(), size) == 0;
        }
        void set(std::string_view text, StringView keptText) noexcept {
            kept = keptText;
            size = static_cast<std::uint8_t>(text.size());
            std::memcpy(bytes, text.data(), size);
        }
    };

    static bool mayHold(std::string_view text) noexcept { return text.size() >= WORD && text.size() <= LONGEST; }

    /// Where the text is, if it is there. Requires: it may be held.
    Text& slotOf(std::string_view text) noexcept {
        std::uint32_t first = 0;
        std::uint32_t last = 0;
        std::memcpy(&first, text.data(), WORD);
        std::memcpy(&last, text.data() + text.size() - WORD, WORD);
        const std::uint64_t mixed = (std::uint64_t{first} << 32 | last) * 0x9E3779B97F4A7C15U;
        return m_texts[mixed >> (64 - BITS)];
    }

private:
    static constexpr std::size_t WORD = sizeof(std::uint32_t);
    static constexpr unsigned BITS = 8;

    std::array<Text, std::size_t{1} << BITS> m_texts;
};

}  // namespace vrx
