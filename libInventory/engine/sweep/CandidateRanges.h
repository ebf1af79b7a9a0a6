#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vrx {

/// A set of candidates by their positions. It is held as ranges of positions, because candidates in a row are mostly
/// alike: all but a few of them fail a test.
class CandidateRanges {
public:
    /// The positions from `first` to the one before `end`.
    struct Range {
        std::uint32_t first;
        std::uint32_t end;

        friend bool operator==(const Range&, const Range&) noexcept = default;
    };

    CandidateRanges() = default;

    /// The first so many.
    explicit CandidateRanges(std::uint32_t count) { append({0, count}); }

    /// Adds a range that begins no earlier than the last one.
    void append(const Range& range);

    CandidateRanges operator|(const CandidateRanges& other) const;
    CandidateRanges operator&(const CandidateRanges& other) const;

    /// What the other does not hold.
    CandidateRanges operator-(const CandidateRanges& other) const;

    /// Ranges that neither touch nor overlap, in order.
    const std::vector<Range>& ranges() const noexcept { return m_ranges; }

    bool isEmpty() const noexcept { return m_ranges.empty(); }
    std::size_t count() const noexcept;

    template <typename Visit>
    void forEach(const Visit& visit) const {
        for (const Range& range : m_ranges) {
            for (std::uint32_t position = range.first; position < range.end; ++position) {
                visit(position);
            }
        }
    }

private:
    std::vector<Range> m_ranges;
};

}  // namespace vrx
