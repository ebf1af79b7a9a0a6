#pragma once

#include <cstddef>
#include <optional>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/engine/findings/FiledFindings.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libSystemState/properties/ValueMoment.h"

namespace vrx {

/// The engine's words for the findings of one element. All the words that a run writes into its script are made here.
class FindingWords {
public:
    /// Values that were not copied are those of the moment; null for the present ones.
    FindingWords(const XmlElement& element, const ValueMoment* moment) : m_element(element), m_moment(moment) {}

    /// Appends the texts of a finding of the element: as many as it has tips.
    void append(const FiledFindings::Entry& entry, Array<String>& texts);

    /// The text of the element's being unsatisfied itself; empty for elements that have none.
    String ofUnsatisfied() const;

    /// What was found, as the entry has it or, when it has not, as it was at the moment.
    String foundBy(const FiledFindings::Entry& entry, StringView key) const;

    /// What the element asks for, of which so many children count.
    const PropertyExpectation& expectation(std::size_t children);

private:
    void appendMismatch(const FiledFindings::Entry& entry, Array<String>& texts);

    const XmlElement& m_element;
    const ValueMoment* m_moment;
    std::optional<PropertyExpectation> m_expectation;
    std::size_t m_children = 0;
};

}  // namespace vrx
