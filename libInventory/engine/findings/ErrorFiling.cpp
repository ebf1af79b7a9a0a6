/// Filing findings: every finding of a run is put down against a script element in one of four error slots, counted
/// there, and forgotten again when the element turns out satisfied (ErrorFilingSubtree.cpp). The script itself is not
/// touched while the search runs; ErrorGathering writes the chosen slot into it at the end.

#include "libInventory/engine/findings/ErrorFiling.h"

#include "libCommon/Assertion.h"
#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/matching/PropertyExpectation.h"

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
    m_state.m_tipTables[slot::MATCHING][property].append(kind, entriesOf(expectation), candidate, candidates);
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

}  // namespace vrx
