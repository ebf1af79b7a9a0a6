#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace vrx {

/// A set of a few numbers: in order, none twice.
using NumberList = std::vector<std::uint32_t>;

/// A set of small numbers. Sets that are put together have the same size.
class BitRow {
public:
    using Word = std::uint64_t;
    static constexpr std::size_t BITS = 64;

    static std::size_t wordsFor(std::size_t bits) noexcept { return (bits + BITS - 1) / BITS; }

    explicit BitRow(std::size_t bits = 0) : m_words(wordsFor(bits)) {}

    void set(std::size_t bit) { m_words[bit / BITS] |= Word{1} << (bit % BITS); }
    void reset(std::size_t bit) { m_words[bit / BITS] &= ~(Word{1} << (bit % BITS)); }
    bool test(std::size_t bit) const { return (m_words[bit / BITS] >> (bit % BITS) & 1) != 0; }
    void clear() noexcept { m_words.assign(m_words.size(), 0); }
    bool any() const noexcept {
        for (const Word word : m_words) {
            if (word != 0) {
                return true;
            }
        }
        return false;
    }
    bool meets(const BitRow& other) const noexcept {
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            if ((m_words[i] & other.m_words[i]) != 0) {
                return true;
            }
        }
        return false;
    }
    bool isWithin(const BitRow& other) const noexcept {
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            if ((m_words[i] & ~other.m_words[i]) != 0) {
                return false;
            }
        }
        return true;
    }
    BitRow& operator&=(const BitRow& other) noexcept {
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            m_words[i] &= other.m_words[i];
        }
        return *this;
    }
    /// Takes the numbers of another set of the same size out.
    void remove(const Word* other) noexcept {
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            m_words[i] &= ~other[i];
        }
    }
    bool meets(const NumberList& numbers) const {
        return std::any_of(numbers.begin(), numbers.end(), [this](std::uint32_t number) { return test(number); });
    }
    BitRow& operator|=(const NumberList& numbers) {
        for (const std::uint32_t number : numbers) {
            set(number);
        }
        return *this;
    }

    /// The bits, the lowest first.
    const Word* words() const noexcept { return m_words.data(); }

    /// Calls `visit` with each number, in order. The set may change for numbers that were visited.
    template <typename Visit>
    void forEach(const Visit& visit) const {
        for (std::size_t i = 0; i < m_words.size(); ++i) {
            for (Word rest = m_words[i]; rest != 0; rest &= rest - 1) {
                visit(i * BITS + static_cast<std::size_t>(std::countr_zero(rest)));
            }
        }
    }

private:
    std::vector<Word> m_words;
};

}  // namespace vrx
