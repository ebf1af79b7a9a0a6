#pragma once

#include <boost/container/small_vector.hpp>
#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

/// What one `property` element of a script asks for, decoded. Borrows from the element wherever decoding changes
/// nothing.
class PropertyExpectation {
public:
    static constexpr std::size_t ALL_CHILDREN = static_cast<std::size_t>(-1);

    /// Reads the element with its first so many child elements: those behind them are `error` elements that were
    /// written after it was matched.
    explicit PropertyExpectation(const XmlElement& element, std::size_t children = ALL_CHILDREN);
    PropertyExpectation(const PropertyExpectation&) = delete;
    PropertyExpectation& operator=(const PropertyExpectation&) = delete;

    StringView key() const noexcept { return m_key; }
    StringView units() const noexcept { return m_units; }
    bool hasValue() const noexcept { return m_hasValue; }

    /// The `value` attribute; empty when absent.
    StringView value() const noexcept { return m_value; }

    /// One entry for each child element, whatever its name.
    std::span<const StringView> entries() const noexcept { return m_entries; }

    /// Nothing but the presence of the key is asked for.
    bool asksForPresenceOnly() const noexcept { return !m_hasValue && m_entries.empty(); }

    /// What a value has to match: the entries, or the value when there are none.
    Array<String> patterns() const;

    /// The text that a failure quotes: the value, directly followed by the entries joined with ", ".
    String quoted() const;

private:
    StringView decoded(StringView text);

    Array<String> m_decodedTexts;  ///< what had to be copied; reserved beforehand, so that views into it stay valid
    StringView m_key;
    StringView m_units;
    StringView m_value;
    bool m_hasValue = false;
    boost::container::small_vector<StringView, 1> m_entries;
};

/// What the `property` elements of one element's content ask for, read once for all candidates.
class KnownExpectations {
public:
    const PropertyExpectation& of(const XmlElement& element) {
        // Nearly always it is the one after the last that was asked for.
        m_next = m_next < m_known.size() ? m_next : 0;
        if (m_next == m_known.size() || m_known[m_next].element != &element) {
            m_next = positionOf(element);
        }
        return *m_known[m_next++].expectation;
    }

private:
    struct Known {
        const XmlElement* element;
        std::unique_ptr<const PropertyExpectation> expectation;
    };

    std::size_t positionOf(const XmlElement& element) {
        const auto [at, isNew] = m_places.try_emplace(&element, m_known.size());
        if (isNew) {
            m_known.push_back({&element, std::make_unique<const PropertyExpectation>(element)});
        }
        return at->second;
    }

    std::vector<Known> m_known;  ///< in the order of the first questions
    std::size_t m_next = 0;
    boost::unordered_flat_map<const XmlElement*, std::size_t> m_places;
};

}  // namespace vrx
