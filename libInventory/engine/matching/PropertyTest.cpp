/// Whether the value of a property is what an element asks for: one pattern for the value as text, or one pattern for
/// each entry of a list, in any order.

#include "libInventory/engine/matching/PropertyTest.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <span>
#include <vector>

#include "libCommon/text/TextHash.h"
#include "libInventory/Inventory.h"
#include "libInventory/engine/matching/Anchors.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/support/InventoryLog.h"
#include "libRegex/Regex.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

bool matchesPattern(const ValueImp& value, StringView expected) {
    const String* const text = value.text();
    return text != nullptr ? Inventory::matchString(expected, *text)
                           : Inventory::matchString(expected, value.toString(true));
}

/// The device's values of which each may satisfy one expected entry. Entries that were taken are marked; those at the
/// front are passed over for good, so that equal lists in equal order are matched in linear time. An entry that stands
/// for one text finds its value in an index, so that the order of equal lists does not matter for that.
class RemainingValues {
public:
    explicit RemainingValues(const ValueImp& value) : m_texts(value.toStringArray(false)) {
        m_taken.assign(m_texts.size(), false);
    }

    /// Takes the first remaining value that the pattern accepts; false when there is none.
    bool takeFirstMatch(StringView pattern) {
        const std::size_t found = firstMatch(pattern);
        if (found >= m_texts.size()) {
            return false;
        }
        m_taken[found] = true;
        while (m_first < m_taken.size() && m_taken[m_first]) {
            ++m_first;
        }
        return true;
    }

private:
    static constexpr std::size_t FEW = 8;

    /// Positions of equal values; those before `next` are taken.
    struct Places {
        std::vector<std::size_t> all;
        std::size_t next = 0;
    };
    template <typename Key>
    using Index = boost::unordered_flat_map<Key, Places, TextHash>;

    std::size_t firstMatch(StringView pattern) {
        if (accepts(pattern, m_first)) {
            return m_first;
        }
        String literal;
        if (m_texts.size() - m_first > FEW && Regex::isAnchoredLiteral(pattern, literal)) {
            index();
            return std::min(firstLeft(m_byText, StringView(literal)),
                            firstLeft(m_byFoldedText, foldCase(withoutAnchors(pattern))));
        }
        std::size_t at = m_first + 1;
        while (at < m_texts.size() && !accepts(pattern, at)) {
            ++at;
        }
        return at;
    }

    bool accepts(StringView pattern, std::size_t at) const {
        return !m_taken[at] && Inventory::matchString(pattern, m_texts[at]);
    }

    void index() {
        if (!m_byText.empty()) {
            return;
        }
        for (std::size_t i = 0; i < m_texts.size(); ++i) {
            m_byText[m_texts[i]].all.push_back(i);
            m_byFoldedText[foldCase(m_texts[i])].all.push_back(i);
        }
    }

    template <typename Key>
    std::size_t firstLeft(Index<Key>& index, const Key& text) const {
        const auto at = index.find(text);
        if (at == index.end()) {
            return m_texts.size();
        }
        Places& places = at->second;
        while (places.next < places.all.size() && m_taken[places.all[places.next]]) {
            ++places.next;
        }
        return places.next < places.all.size() ? places.all[places.next] : m_texts.size();
    }

    Array<String> m_texts;
    std::vector<bool> m_taken;
    std::size_t m_first = 0;
    Index<StringView> m_byText;
    Index<String> m_byFoldedText;
};

/// Whether each expected entry finds a value of its own. Requires: there are as many of one as of the other.
bool takesAll(const ValueImp& value, std::span<const StringView> expected) {
    if (const String* const onlyText = value.text()) {
        return Inventory::matchString(expected[0], *onlyText);
    }
    // Contract: greedy in the order of the expected entries, without backtracking.
    RemainingValues remaining(value);
    return std::all_of(expected.begin(), expected.end(),
                       [&remaining](StringView entry) { return remaining.takeFirstMatch(entry); });
}

bool matchesEntries(const ValueImp& value, std::span<const StringView> expected) {
    return value.arraySize() == expected.size() && takesAll(value, expected);
}

void logSizes(const IPropertyImp& property, const PropertyExpectation& expectation) {
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchProperty(arr) key = " << property.key() << u" syssize = " << property.value().arraySize()
                                         << u" invsize = " << expectation.entries().size());
}

void logMismatch(const IPropertyImp& property, const PropertyExpectation& expectation) {
    const String* const text = property.value().text();
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchProperty() key = " << property.key() << u" not matched value = "
                                      << (text != nullptr ? *text : property.value().toString(true)) << u" inventory = "
                                      << expectation.value());
}

StringView answerForTheLog(const IPropertyImp& property, const PropertyExpectation& expectation, bool matched) {
    if (matched) {
        return u"matched key = ";
    }
    return property.value().arraySize() == expectation.entries().size() ? u"no matching value for key = "
                                                                        : u"size mismatch key = ";
}

}  // namespace

bool meets(const IPropertyImp& property, const PropertyExpectation& expectation) {
    if (expectation.asksForPresenceOnly()) {
        return true;
    }
    return expectation.entries().empty() ? matchesPattern(property.value(), expectation.value())
                                         : matchesEntries(property.value(), expectation.entries());
}

bool meets(StringView text, const PropertyExpectation& expectation) {
    if (expectation.asksForPresenceOnly()) {
        return true;
    }
    const std::span<const StringView> entries = expectation.entries();
    return entries.size() <= 1 && Inventory::matchString(entries.empty() ? expectation.value() : entries[0], text);
}

bool meetsAloud(const IPropertyImp& property, const PropertyExpectation& expectation) {
    if (expectation.entries().empty()) {
        const bool matched = meets(property, expectation);
        if (!matched) {
            logMismatch(property, expectation);
        }
        return matched;
    }
    logSizes(property, expectation);
    const bool matched = meets(property, expectation);
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchProperty(arr) " << answerForTheLog(property, expectation, matched) << property.key());
    return matched;
}

}  // namespace vrx
