/// A test of one text answers for every device that holds it, and of ten thousand numbers those in a range stand
/// together once they are in order. What comes out is what testing device by device gives, down to the count of tests
/// that had to be given up: such a test is repeated for each device, and for each element.

#include "libInventory/engine/sweep/CandidateColumn.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <optional>

#include "libInventory/Inventory.h"
#include "libInventory/engine/matching/Anchors.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/engine/matching/PropertyTest.h"
#include "libRegex/Regex.h"
#include "libRegex/WholeRange.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/RecordedTexts.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

constexpr std::size_t FEW_TEXTS = 8;             // are all tested
constexpr std::size_t MOST_ANSWERS = 1U << 16U;  // answers and ranges of them

/// The pattern for a value that is a text; nothing when more than one is asked for.
std::optional<StringView> patternFor(const PropertyExpectation& expectation) {
    const std::span<const StringView> entries = expectation.entries();
    if (entries.size() > 1) {
        return std::nullopt;
    }
    return entries.empty() ? expectation.value() : entries[0];
}

/// What every text begins with that the pattern matches; empty where that is not plain to see.
StringView prefixOf(StringView pattern) {
    const bool isPlain = pattern.starts_with(u'^') && pattern.find(u'|') == StringView::npos &&
                         pattern.find(u"(?") == StringView::npos &&
                         pattern.find(Regex::VRXRRANGE().view()) == StringView::npos;
    if (!isPlain) {
        return {};
    }
    const std::size_t end = std::min(pattern.find_first_of(u"\\^$.[](){}*+?#", 1), pattern.size());
    const bool mayRepeat = end < pattern.size() && StringView(u"*+?{").find(pattern[end]) != StringView::npos;
    return pattern.substr(1, end - 1 - (mayRepeat && end > 1 ? 1 : 0));
}

}  // namespace

CandidateColumn::CandidateColumn(const Array<boost::shared_ptr<IDeviceImp>>& devices, StringView key)
    : m_marks(devices.size() / 64 + 1) {
    for (std::uint32_t position = 0; position < devices.size(); ++position) {
        const IDeviceImp& device = *devices[position];
        RecordedTexts recorded(device.recordedProperties());
        if (const std::optional<StringView> text = recorded.find(key)) {
            hold(position, *text);
        } else if (const IPropertyImp* const property = device.findProperty(key); property == nullptr) {
            m_missing.append({position, position + 1});
        } else if (const String* const only = property->value().text()) {
            hold(position, *only);
        } else {
            m_others.emplace_back(position, property);
        }
    }
    m_present = CandidateRanges(static_cast<std::uint32_t>(devices.size())) - m_missing;
}

void CandidateColumn::hold(std::uint32_t position, StringView text) {
    auto at = m_textOf.find(text);
    if (at == m_textOf.end()) {
        at = m_textOf.emplace(m_texts.emplace_back(text).view(), static_cast<std::uint32_t>(m_holders.size())).first;
        m_holders.emplace_back();
    }
    m_holders[at->second].push_back(position);
}

CandidateRanges CandidateColumn::meeting(const PropertyExpectation& expectation) {
    if (expectation.asksForPresenceOnly()) {
        return m_present;
    }
    CandidateRanges others;
    for (const auto& [position, property] : m_others) {
        if (meets(*property, expectation)) {
            others.append({position, position + 1});
        }
    }
    const std::optional<StringView> pattern = patternFor(expectation);
    return pattern ? meetingText(*pattern) | others : others;
}

const CandidateRanges& CandidateColumn::meetingText(StringView pattern) {
    const String key(pattern);
    if (const auto at = m_known.find(key); at != m_known.end()) {
        return at->second;
    }
    const std::size_t givenUpBefore = Regex::exceededCount();
    markMatches(pattern);
    m_unkept = takeMarked();
    const std::size_t size = m_unkept.ranges().size() + 1;
    if (Regex::exceededCount() != givenUpBefore || m_knownSize + size > MOST_ANSWERS) {
        return m_unkept;
    }
    m_knownSize += size;
    return m_known.emplace(key, std::move(m_unkept)).first->second;
}

void CandidateColumn::markMatches(StringView pattern) {
    String literal;
    if (m_texts.size() <= FEW_TEXTS) {
        testAll(pattern);
    } else if (const auto range = WholeRange::parse(pattern)) {
        markRange(*range);
        markIgnoringCase(withoutAnchors(pattern));
    } else if (Regex::isAnchoredLiteral(pattern, literal)) {
        if (const auto at = m_textOf.find(literal); at != m_textOf.end()) {
            mark(at->second);
        }
        markIgnoringCase(withoutAnchors(pattern));
    } else if (const StringView prefix = prefixOf(pattern); !prefix.empty()) {
        testFrom(prefix, pattern);
        markIgnoringCase(withoutAnchors(pattern));
    } else {
        testAll(pattern);
    }
}

void CandidateColumn::testAll(StringView pattern) {
    for (std::uint32_t text = 0; text < m_texts.size(); ++text) {
        test(text, pattern);
    }
}

/// Tests the texts that begin so.
void CandidateColumn::testFrom(StringView prefix, StringView pattern) {
    const auto textOf = [this](std::uint32_t text) {
        return m_texts[text].view();
    };
    if (m_sortedTexts.empty()) {
        m_sortedTexts.resize(m_texts.size());
        std::iota(m_sortedTexts.begin(), m_sortedTexts.end(), 0U);
        std::ranges::sort(m_sortedTexts, {}, textOf);
    }
    for (auto at = std::ranges::lower_bound(m_sortedTexts, prefix, {}, textOf);
         at != m_sortedTexts.end() && textOf(*at).starts_with(prefix); ++at) {
        test(*at, pattern);
    }
}

void CandidateColumn::test(std::uint32_t text, StringView pattern) {
    const std::size_t givenUpBefore = Regex::exceededCount();
    if (Inventory::matchString(pattern, m_texts[text])) {
        mark(text);
    }
    const std::size_t others = Regex::exceededCount() == givenUpBefore ? 0 : m_holders[text].size() - 1;
    for (std::size_t i = 0; i < others; ++i) {
        Inventory::matchString(pattern, m_texts[text]);
    }
}

void CandidateColumn::markRange(const WholeRange& range) {
    const std::vector<Number>& numbers = numbersOf(range);
    const auto [low, high] = range.range();
    for (auto at = std::lower_bound(numbers.begin(), numbers.end(), Number(low, 0));
         at != numbers.end() && at->first <= high; ++at) {
        mark(at->second);
    }
}

const std::vector<CandidateColumn::Number>& CandidateColumn::numbersOf(const WholeRange& range) {
    const auto [at, isNew] = m_numbers.try_emplace(String(range.unitText()));
    if (isNew) {
        for (std::uint32_t text = 0; text < m_texts.size(); ++text) {
            if (const std::optional<double> number = range.numberOf(m_texts[text])) {
                at->second.emplace_back(*number, text);
            }
        }
        std::ranges::sort(at->second);
    }
    return at->second;
}

void CandidateColumn::markIgnoringCase(StringView text) {
    if (m_foldedTexts.empty()) {
        for (std::uint32_t i = 0; i < m_texts.size(); ++i) {
            m_foldedTexts[foldCase(m_texts[i])].push_back(i);
        }
    }
    if (const auto at = m_foldedTexts.find(foldCase(text)); at != m_foldedTexts.end()) {
        std::ranges::for_each(at->second, [this](std::uint32_t same) { mark(same); });
    }
}

void CandidateColumn::mark(std::uint32_t text) {
    for (const std::uint32_t holder : m_holders[text]) {
        m_marks[holder / 64] |= std::uint64_t{1} << (holder % 64);
    }
}

/// The marked devices, of which none is marked any more.
CandidateRanges CandidateColumn::takeMarked() {
    CandidateRanges marked;
    for (std::uint32_t word = 0; word < m_marks.size(); ++word) {
        for (std::uint64_t& bits = m_marks[word]; bits != 0;) {
            const auto first = static_cast<std::uint32_t>(std::countr_zero(bits));
            const auto count = static_cast<std::uint32_t>(std::countr_one(bits >> first));
            marked.append({word * 64 + first, word * 64 + first + count});
            bits &= count == 64 ? 0 : ~(((std::uint64_t{1} << count) - 1) << first);
        }
    }
    return marked;
}

}  // namespace vrx
