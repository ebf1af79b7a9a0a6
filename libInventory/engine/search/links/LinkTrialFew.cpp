/// The reduction where there are so few devices that sets of them, and mostly sets of elements, are single words.
///
/// How many links elements have is kept as sets of elements, one for each binary digit of the numbers. So the fewest of
/// many are found, and one is taken from many, in a step for each digit, and without jumps that depend on the
/// combination: mostly they would be guessed wrong, which costs more than all else.

#include <algorithm>
#include <array>
#include <bit>

#include "libInventory/engine/search/links/LinkTrial.h"

namespace vrx {

namespace {

/// A set of elements.
template <std::size_t WORDS>
struct FewElements {
    using Word = BitRow::Word;

    std::array<Word, WORDS> words;

    FewElements() = default;  ///< of nothing in particular
    explicit FewElements(const Word* first) { std::copy_n(first, WORDS, words.begin()); }

    bool any() const noexcept {
        return std::ranges::any_of(words, [](Word word) { return word != 0; });
    }
    bool hasMany() const noexcept { return (*this - first()).any(); }

    /// Itself without all but the first.
    FewElements first() const noexcept {
        FewElements one;
        bool isFound = false;
        for (std::size_t i = 0; i < WORDS; ++i) {
            one.words[i] = isFound ? 0 : words[i] & (~words[i] + 1);
            isFound = isFound || words[i] != 0;
        }
        return one;
    }

    friend FewElements operator&(FewElements a, const FewElements& b) noexcept {
        return a.combine(b, [](Word x, Word y) { return x & y; });
    }
    friend FewElements operator|(FewElements a, const FewElements& b) noexcept {
        return a.combine(b, [](Word x, Word y) { return x | y; });
    }
    friend FewElements operator^(FewElements a, const FewElements& b) noexcept {
        return a.combine(b, [](Word x, Word y) { return x ^ y; });
    }
    friend FewElements operator-(FewElements a, const FewElements& b) noexcept {
        return a.combine(b, [](Word x, Word y) { return x & ~y; });
    }

private:
    template <typename Join>
    FewElements combine(const FewElements& other, const Join& join) noexcept {
        for (std::size_t i = 0; i < WORDS; ++i) {
            words[i] = join(words[i], other.words[i]);
        }
        return *this;
    }
};

/// How many links each element has.
template <std::size_t WORDS>
class LinkCounts {
public:
    using Set = FewElements<WORDS>;

    LinkCounts(const std::vector<BitRow::Word>& counts, const Set& elements) : m_digits(counts.size() / WORDS) {
        for (std::size_t digit = 0; digit < m_digits; ++digit) {
            m_sets[digit] = Set(counts.data() + digit * WORDS) & elements;
        }
    }

    /// The first of those with the fewest links: digit by digit, from the highest on, those with a 0 have fewer.
    Set fewest(Set left) const noexcept {
        for (std::size_t digit = m_digits; digit-- > 0;) {
            const Set fewer = left - m_sets[digit];
            left = fewer.any() ? fewer : left;
        }
        return left.first();
    }

    /// Each of them has a link less.
    void takeOne(const Set& elements) noexcept {
        Set borrow = elements;
        for (std::size_t digit = 0; digit < m_digits; ++digit) {
            const Set before = m_sets[digit];
            m_sets[digit] = before ^ borrow;
            borrow = borrow - before;
        }
    }

    void setOne(const Set& element) noexcept {
        m_sets[0] = m_sets[0] | element;
        for (std::size_t digit = 1; digit < m_digits; ++digit) {
            m_sets[digit] = m_sets[digit] - element;
        }
    }

    Set withLinks() const noexcept {
        Set some = m_sets[0];
        for (std::size_t digit = 1; digit < m_digits; ++digit) {
            some = some | m_sets[digit];
        }
        return some;
    }

private:
    std::size_t m_digits;
    std::array<Set, std::bit_width(BitRow::BITS)> m_sets;
};

}  // namespace

void LinkTrial::prepareFew() {
    m_counts.resize(m_words);
    for (std::size_t element = 0; element < m_elements.size(); ++element) {
        const std::vector<std::uint32_t>& devices = m_elements[element].devices;
        Word all = 0;
        for (const std::uint32_t device : devices) {
            all |= Word{1} << device;
        }
        m_devicesOf.push_back(all);
        for (std::size_t digit = 0; devices.size() >> digit != 0; ++digit) {
            m_counts.resize(std::max(m_counts.size(), (digit + 1) * m_words));
            m_counts[digit * m_words + element / BitRow::BITS] |= Word{devices.size() >> digit & 1}
                                                                  << (element % BitRow::BITS);
        }
    }
}

template <std::size_t WORDS>
void LinkTrial::reduceFew(const BitRow& elements) {
    using Set = FewElements<WORDS>;
    const Set chosen(elements.words());
    const std::size_t devices = m_deviceCount;
    std::array<Set, FEW_DEVICES> rows;
    for (std::size_t device = 0; device < devices; ++device) {
        rows[device] = Set(m_takers.data() + device * WORDS) & chosen;
    }
    LinkCounts<WORDS> counts(m_counts, chosen);
    Set keepers = chosen - chosen;  // they have dropped their other devices
    Word kept = 0;
    meetFew(elements);
    for (const std::uint32_t device : m_order) {
        const Set row = rows[device] - keepers;
        if (row.hasMany()) {
            rows[device] = counts.fewest(row);
            counts.takeOne(row - rows[device]);
            counts.setOne(rows[device]);
            keepers = keepers | rows[device];
            kept |= Word{1} << device;
        }
    }
    for (std::size_t device = 0; device < devices; ++device) {
        const Set left = (kept >> device & 1) != 0 ? rows[device] : rows[device] - keepers;
        std::ranges::copy(left.words, rowOf(device));
    }
    m_missing = elements;
    m_missing.remove(counts.withLinks().words.data());
}

template void LinkTrial::reduceFew<1>(const BitRow& elements);
template void LinkTrial::reduceFew<2>(const BitRow& elements);

/// Puts the devices in order. Each is written down behind the last one, and counts if it is new.
void LinkTrial::meetFew(const BitRow& elements) {
    m_order.resize(m_deviceCount + 1);
    std::uint32_t* end = m_order.data();
    Word met = 0;
    elements.forEach([&](std::size_t element) {
        const Word added = m_devicesOf[element] & ~met;
        met |= added;
        if (added != 0) {
            for (const std::uint32_t device : m_elements[element].devices) {
                *end = device;
                end += added >> device & 1;
            }
        }
    });
    m_order.resize(static_cast<std::size_t>(end - m_order.data()));
}

}  // namespace vrx
