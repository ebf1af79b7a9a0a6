#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "libCommon/text/String.h"
#include "libInventory/Finding.h"
#include "libInventory/support/SharedLists.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

/// What one error slot holds against one element, in order.
///
/// A failed property test leaves a finding for every candidate device, most of which nobody ever reads: with a thousand
/// devices that only their properties tell apart there are millions. Candidates in a row that fail alike are therefore
/// noted as a range of them, which becomes entries when somebody asks for entries; and an entry only refers to the
/// device, whose value is copied when the finding is gathered. Entries count as the number of tips (texts in the
/// script) that they become.
class FiledFindings {
public:
    struct Entry {
        /// By kind: the name of the attribute, the text of the exception, the value that was found. Null where the kind
        /// has none, and for a mismatch whose value has not been copied yet.
        std::unique_ptr<const String> text;
        boost::shared_ptr<IDeviceImp> device;
        FindingKind kind : 8;
        std::uint32_t expectedEntries : 24;  ///< for a property: how many children of the element counted as entries
        std::uint32_t candidate;             ///< for a property: the device's position among the candidates

        const String& textOrEmpty() const noexcept { return text ? *text : String::EMPTY; }
    };
    /// What the count of entries that an element asks for is cut to.
    static constexpr std::uint32_t MOST_ENTRIES = 0xFFFFFF;

    static constexpr std::size_t tipsOf(FindingKind kind) noexcept {
        switch (kind) {
            case FindingKind::PropertyMismatch: return 3;
            case FindingKind::PropertyMatched: return 2;
            default: return 1;
        }
    }

    void append(Entry entry) {
        spreadOut();
        m_count += tipsOf(entry.kind);
        m_entries.push_back(std::move(entry));
    }

    /// The entries of a property test that so many of the candidates, from that one on, failed alike.
    void append(FindingKind kind, std::uint32_t expectedEntries, std::uint32_t candidate, std::uint32_t count,
                const SharedLists::Pointer& candidates) {
        if (m_candidates != candidates) {
            spreadOut();
            m_candidates = candidates;
        }
        m_count += tipsOf(kind) * count;
        m_inRanges += count;
        if (!m_ranges.empty() && m_ranges.back().isFollowedBy(kind, expectedEntries, candidate)) {
            m_ranges.back().count += count;
        } else {
            m_ranges.push_back({kind, expectedEntries & MOST_ENTRIES, candidate, count});
        }
    }

    /// Makes room for so many ranges, of which there may be millions in all.
    void expectRanges(std::size_t count) {
        if (m_ranges.empty()) {
            m_ranges.reserve(count);
        }
    }

    void clear() noexcept {
        m_entries.clear();
        m_ranges.clear();
        m_inRanges = 0;
        m_count = 0;
        m_firstOfRun = 0;
    }

    /// Takes back what was filed of that kind. Requires: nothing was filed before this run.
    void remove(FindingKind kind) {
        spreadOut();
        const auto removed = std::erase_if(m_entries, [kind](const Entry& entry) { return entry.kind == kind; });
        m_count -= removed * tipsOf(kind);
    }

    /// Entries from here on are those of the run that begins.
    void beginRun() noexcept { m_firstOfRun = m_entries.size() + m_inRanges; }
    std::size_t firstOfRun() const noexcept { return m_firstOfRun; }

    /// Number of tips, not of entries.
    std::size_t count() const noexcept { return m_count; }
    std::vector<Entry>& entries() {
        spreadOut();
        return m_entries;
    }
    const std::vector<Entry>& entries() const {
        spreadOut();
        return m_entries;
    }

private:
    struct Range {
        FindingKind kind : 8;
        std::uint32_t expectedEntries : 24;
        std::uint32_t first;
        std::uint32_t count;

        bool isFollowedBy(FindingKind nextKind, std::uint32_t nextEntries, std::uint32_t candidate) const noexcept {
            return kind == nextKind && expectedEntries == nextEntries && candidate == first + count;
        }
    };
    static_assert(sizeof(Range) == 12, "there may be millions");

    void spreadOut() const {
        if (m_inRanges == 0) {
            return;
        }
        m_entries.reserve(m_entries.size() + m_inRanges);
        for (const Range& range : m_ranges) {
            for (std::uint32_t candidate = range.first; candidate < range.first + range.count; ++candidate) {
                m_entries.push_back(
                    {nullptr, (*m_candidates)[candidate], range.kind, range.expectedEntries, candidate});
            }
        }
        std::vector<Range>().swap(m_ranges);
        m_inRanges = 0;
    }

    mutable std::vector<Entry> m_entries;
    mutable std::vector<Range> m_ranges;  ///< behind those entries
    mutable std::size_t m_inRanges = 0;   ///< how many entries the ranges stand for
    SharedLists::Pointer m_candidates;    ///< of the ranges
    std::size_t m_count = 0;
    std::size_t m_firstOfRun = 0;
};

}  // namespace vrx
