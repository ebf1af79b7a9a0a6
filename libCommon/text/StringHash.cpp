/// The hash of texts: a multiply-and-fold hash that takes 16 bytes a step. The product of two 64-bit words is folded
/// (high half xor low half), which spreads every input bit over the whole result; the tables rely on that and do not
/// mix again. The last words may overlap words that were read already, so that no length needs a loop over units.

#include <cstring>

#include "libCommon/text/String.h"

namespace vrx {

namespace {

__extension__ using Product = unsigned __int128;

constexpr std::size_t WORD = 4;  // units that one 64-bit word holds

constexpr std::uint64_t SEED_A = 0x9E3779B97F4A7C15;
constexpr std::uint64_t SEED_B = 0xD1B54A32D192ED03;
constexpr std::uint64_t SEED_C = 0x8CB92BA72F3D8DD7;

std::uint64_t fold(std::uint64_t a, std::uint64_t b) noexcept {
    const Product product = Product{a} * b;
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

std::uint64_t word(const char16_t* units) noexcept {
    std::uint64_t value = 0;
    std::memcpy(&value, units, sizeof value);
    return value;
}

/// One to three units, each in 16 bits of its own.
std::uint64_t shortWord(const char16_t* units, std::size_t count) noexcept {
    const std::uint64_t first = units[0];
    const std::uint64_t middle = units[count / 2];
    const std::uint64_t last = units[count - 1];
    return first | middle << 16 | last << 32;
}

}  // namespace

std::size_t hashOf(StringView text) noexcept {
    const char16_t* units = text.data();
    std::size_t left = text.size();
    std::uint64_t state = SEED_A;
    for (; left > 2 * WORD; left -= 2 * WORD, units += 2 * WORD) {
        state = fold(word(units) ^ SEED_B, word(units + WORD) ^ state);
    }
    std::uint64_t a = 0;
    std::uint64_t b = 0;
    if (left >= WORD) {
        a = word(units);
        b = word(units + left - WORD);
    } else if (left > 0) {
        a = shortWord(units, left);
    }
    return fold(fold(a ^ SEED_B, b ^ state) ^ SEED_C, text.size() ^ SEED_B);
}

}  // namespace vrx
