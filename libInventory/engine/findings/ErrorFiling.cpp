/// Filing findings: every finding of a run is put down against a script element in one of four error slots, counted
/// there, and forgotten again when the element turns out satisfied (ErrorFilingSubtree.cpp). The script itself is not
/// touched while the search runs; ErrorGathering writes the chosen slot into it at the end.

#include "libInventory/engine/findings/ErrorFiling.h"

#include "libCommon/Assertion.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/engine/sweep/CandidateRanges.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

namespace {

std::uint32_t entriesOf(const PropertyExpectation& expectation) {
    return static_cast<std::uint32_t>(expectation.entries().size());
}

FiledFindings::Entry entryOfProperty(FindingKind kind, const boost::shared_ptr<IDeviceImp>& device,
                                     std::uint32_t candidate, const PropertyExpectation& expectation) {
    return {nullptr, device, kind, entriesOf(expectation) & FiledFindings::MOST_ENTRIES, candidate};
}

}  // namespace

void ErrorFiling::fileUnsatisfied(XmlElement* element, unsigned slot) {
    m_state.contextOf(element);
    m_state.m_errorElementLists[slot].prepend(element);
}

void ErrorFiling::file(XmlElement* element, FindingKind kind, unsigned slot, const String& text) {
    VRX_ASSERT(element);
    m_state.contextOf(element);
    auto kept = text.isEmpty() ? nullptr : std::make_unique<const String>(text);
    m_state.m_tipTables[slot][element].append({std::move(kept), {}, kind, 0, 0});
}

void ErrorFiling::fileFailure(XmlElement* property, FindingKind kind, const boost::shared_ptr<IDeviceImp>& device,
                              std::uint32_t candidate, const PropertyExpectation& expectation) {
    m_state.contextOf(property);
    m_state.m_tipTables[slot::MATCHING][property].append(entryOfProperty(kind, device, candidate, expectation));
}

void ErrorFiling::fileFailure(XmlElement* property, FindingKind kind, std::uint32_t candidate,
                              const SharedLists::Pointer& candidates, const PropertyExpectation& expectation) {
    m_state.contextOf(property);
    m_state.m_tipTables[slot::MATCHING][property].append(kind, entriesOf(expectation), candidate, 1, candidates);
}

void ErrorFiling::fileFailures(XmlElement* property, const CandidateRanges& failed, const CandidateRanges& missing,
                               const SharedLists::Pointer& candidates, const PropertyExpectation& expectation) {
    m_state.contextOf(property);
    FiledFindings& findings = m_state.m_tipTables[slot::MATCHING][property];
    const auto append = [&](FindingKind kind, std::uint32_t first, std::uint32_t end) {
        if (first != end) {
            findings.append(kind, entriesOf(expectation), first, end - first, candidates);
        }
    };
    findings.expectRanges(failed.ranges().size());
    auto without = missing.ranges().begin();
    for (const auto& [first, end] : failed.ranges()) {
        std::uint32_t at = first;
        for (; without != missing.ranges().end() && without->first < end; ++without) {
            append(FindingKind::PropertyMismatch, at, without->first);
            append(FindingKind::PropertyMissing, without->first, without->end);
            at = without->end;
        }
        append(FindingKind::PropertyMismatch, at, end);
    }
}

void ErrorFiling::fileMatch(XmlElement* property, const boost::shared_ptr<IDeviceImp>& device, const String& value,
                            const PropertyExpectation& expectation) {
    m_state.contextOf(property);
    FiledFindings::Entry entry = entryOfProperty(FindingKind::PropertyMatched, device, 0, expectation);
    entry.text = std::make_unique<const String>(value);
    m_state.m_tipTables[slot::MATCHING][property].append(std::move(entry));
}

void ErrorFiling::fileExtra(XmlElement* element, const ExtraDevice& extra, bool isFailure, unsigned slot) {
    VRX_ASSERT(element);
    m_state.contextOf(element);
    m_state.m_extraTables[slot][element].append(extra);
    if (isFailure) {
        m_state.m_tipTables[slot][element].append({nullptr, extra.device, FindingKind::ExtraDevice, 0, 0});
    }
}

void ErrorFiling::flipErrorsVisible(XmlElement* element, std::size_t times) {
    if (times == 0) {
        return;
    }
    ElementContext& context = m_state.contextOf(element);
    context.m_errorsVisible = context.m_errorsVisible != (times % 2 != 0);
    for (XmlElement* const child : childElements(element)) {
        flipErrorsVisible(child, times);
    }
}

}  // namespace vrx
