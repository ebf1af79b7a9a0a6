/// The hash of texts: SipHash-1-3 under a key that each process draws for itself. Texts come from recordings and
/// scripts of strangers; without the key nobody can find texts that fall into one place of a table and make every
/// look-up a walk. Nothing may therefore depend on a hash value: tables that are listed keep the order of insertion.

#include <sys/random.h>

#include <bit>
#include <chrono>
#include <cstring>

#include "libCommon/text/String.h"

namespace vrx {

namespace {

struct HashKey {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

/// Where the kernel has no random numbers, the address space and the clock differ from run to run at least.
HashKey drawHashKey() noexcept {
    HashKey key;
    if (getrandom(&key, sizeof key, GRND_NONBLOCK) != sizeof key) {
        key.first = std::bit_cast<std::uintptr_t>(&key);
        key.second = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
    return key;
}

const HashKey& hashKey() noexcept {
    static const HashKey key = drawHashKey();
    return key;
}

class SipState {
public:
    explicit SipState(const HashKey& key) noexcept
        : m_a(key.first ^ 0x736F6D6570736575),
          m_b(key.second ^ 0x646F72616E646F6D),
          m_c(key.first ^ 0x6C7967656E657261),
          m_d(key.second ^ 0x7465646279746573) {}

    void add(std::uint64_t word) noexcept {
        m_d ^= word;
        round();
        m_a ^= word;
    }

    std::uint64_t finish() noexcept {
        m_c ^= 0xFF;
        round();
        round();
        round();
        return m_a ^ m_b ^ m_c ^ m_d;
    }

private:
    void round() noexcept {
        m_a += m_b;
        m_c += m_d;
        m_b = std::rotl(m_b, 13) ^ m_a;
        m_d = std::rotl(m_d, 16) ^ m_c;
        m_a = std::rotl(m_a, 32) + m_d;
        m_c += m_b;
        m_d = std::rotl(m_d, 21) ^ m_a;
        m_b = std::rotl(m_b, 17) ^ m_c;
        m_c = std::rotl(m_c, 32);
    }

    std::uint64_t m_a;
    std::uint64_t m_b;
    std::uint64_t m_c;
    std::uint64_t m_d;
};

/// The last word holds what is left of the text and, in its top byte, the length.
template <typename Unit>
std::size_t hashOfUnits(const Unit* units, std::size_t size) noexcept {
    constexpr std::size_t WORD = sizeof(std::uint64_t) / sizeof(Unit);
    SipState state(hashKey());
    std::size_t left = size;
    for (; left >= WORD; left -= WORD, units += WORD) {
        std::uint64_t word = 0;
        std::memcpy(&word, units, sizeof word);
        state.add(word);
    }
    std::uint64_t last = std::uint64_t{size * sizeof(Unit)} << 56;
    for (std::size_t i = 0; i < left; ++i) {
        last |= std::uint64_t{static_cast<std::make_unsigned_t<Unit>>(units[i])} << (i * 8 * sizeof(Unit));
    }
    state.add(last);
    return state.finish();
}

}  // namespace

std::size_t hashOf(StringView text) noexcept { return hashOfUnits(text.data(), text.size()); }

std::size_t hashOf(std::string_view bytes) noexcept { return hashOfUnits(bytes.data(), bytes.size()); }

}  // namespace vrx
