#pragma once

#include <boost/shared_ptr.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/text/TextHash.h"
#include "libInventory/engine/sweep/CandidateRanges.h"
#include "libSystemState/Forward.h"

namespace vrx {

class PropertyExpectation;
class WholeRange;

/// What the devices of a list hold under one key, so that all of them are tested at once: each text is tested once
/// however many devices hold it, numbers in a range are looked up among the sorted ones, and a literal among the texts.
class CandidateColumn {
public:
    CandidateColumn(const Array<boost::shared_ptr<IDeviceImp>>& devices, StringView key);

    /// The devices without such a property.
    const CandidateRanges& missing() const noexcept { return m_missing; }

    /// The devices whose property is what is asked for.
    CandidateRanges meeting(const PropertyExpectation& expectation);

private:
    using Number = std::pair<double, std::uint32_t>;  ///< and the text that has it

    void hold(std::uint32_t position, StringView text);
    const CandidateRanges& meetingText(StringView pattern);
    void markMatches(StringView pattern);
    void markRange(const WholeRange& range);
    void testAll(StringView pattern);
    void testFrom(StringView prefix, StringView pattern);
    void test(std::uint32_t text, StringView pattern);
    void markIgnoringCase(StringView text);
    void mark(std::uint32_t text);
    CandidateRanges takeMarked();
    const std::vector<Number>& numbersOf(const WholeRange& range);

    std::deque<String> m_texts;                                           ///< each once
    std::vector<std::vector<std::uint32_t>> m_holders;                    ///< of each text
    std::vector<std::pair<std::uint32_t, const IPropertyImp*>> m_others;  ///< devices whose value is more than a text
    CandidateRanges m_missing;
    CandidateRanges m_present;
    boost::unordered_flat_map<StringView, std::uint32_t, TextHash> m_textOf;

    std::vector<std::uint32_t> m_sortedTexts;                                               ///< when they are needed
    boost::unordered_flat_map<String, std::vector<std::uint32_t>, TextHash> m_foldedTexts;  ///< when it is needed
    boost::unordered_flat_map<String, std::vector<Number>, TextHash> m_numbers;  ///< in order, by the unit of patterns

    boost::unordered_flat_map<String, CandidateRanges, TextHash> m_known;  ///< by pattern
    std::size_t m_knownSize = 0;
    CandidateRanges m_unkept;

    std::vector<std::uint64_t> m_marks;  ///< a bit for each device
};

}  // namespace vrx
