#pragma once

#include <cstddef>
#include <optional>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/engine/findings/FiledFindings.h"
#include "libInventory/engine/matching/PropertyExpectation.h"

namespace vrx {

/// The engine's words for the findings of one element. All the words that a run writes into its script are made here.
class FindingWords {
public:
    explicit FindingWords(const XmlElement& element) : m_element(element) {}

    /// Appends the texts of a finding of the element: as many as it has tips.
    void append(const FiledFindings::Entry& entry, Array<String>& texts);

    /// The text of the element's being unsatisfied itself; empty for elements that have none.
    String ofUnsatisfied() const;

    /// What was found, as the entry has it or, when it has not, as it is now.
    static String foundBy(const FiledFindings::Entry& entry, StringView key);

    /// What the element asks for, of which so many children count.
    const PropertyExpectation& expectation(std::size_t children);

private:
    void appendMismatch(const FiledFindings::Entry& entry, Array<String>& texts);

    const XmlElement& m_element;
    std::optional<PropertyExpectation> m_expectation;
    std::size_t m_children = 0;
};

}  // namespace vrx
