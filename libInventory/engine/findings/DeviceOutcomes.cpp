/// A run keeps of a candidate only what it failed. Which of those failures mattered is found out here: the content of
/// the element is evaluated once more, with "there is a finding" in the place of the test. Candidates that left no
/// trace met everything; the graph knows them, in their order, and they fill the positions that the others leave.

#include "libInventory/engine/findings/DeviceOutcomes.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_set.hpp>
#include <map>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/findings/KeptLinks.h"
#include "libInventory/engine/findings/RunFindings.h"
#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

using vocabulary::ElementKind;

namespace {

const FiledFindings* filedOn(const InventoryState& state, const XmlElement& element, unsigned slot) {
    return state.m_tipTables[slot].find(const_cast<XmlElement*>(&element));
}

}  // namespace

DeviceOutcomes::DeviceOutcomes(const InventoryState& state, const XmlElement& element)
    : m_state(state), m_element(element) {
    collect(element);
}

void DeviceOutcomes::collect(const XmlElement& element) {
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (vocabulary::kindOf(*child) != ElementKind::Property) {
            collect(*child);
        } else if (const FiledFindings* const filed = filedOn(m_state, *child, slot::MATCHING)) {
            m_failures.push_back({child, filed, filed->firstOfRun()});
        }
    }
}

DeviceOutcome DeviceOutcomes::make(const KeptLinks& links) {
    DeviceOutcome outcome;
    outcome.element = &m_element;
    outcome.isSatisfied = links.isSatisfied(m_element);
    outcome.refusal = refusal();
    std::vector<Tried> tried = failed();
    const std::vector<DevicePointer> others = linked(tried);
    auto nextOther = others.begin();
    const auto addOthersUpTo = [&](std::size_t position) {
        for (; nextOther != others.end() && outcome.candidates.size() < position; ++nextOther) {
            outcome.candidates.append({*nextOther, {}, nullptr});
        }
    };
    for (Tried& one : tried) {
        addOthersUpTo(one.position);
        outcome.candidates.append(std::move(one.candidate));
    }
    addOthersUpTo(static_cast<std::size_t>(-1));
    for (Candidate& candidate : outcome.candidates) {
        candidate.holder = links.holderOf(*candidate.device);
    }
    return outcome;
}

/// The candidates that left traces of failure, whether or not it made a difference, in order.
std::vector<DeviceOutcomes::Tried> DeviceOutcomes::failed() {
    std::map<std::uint32_t, DevicePointer> devices;
    for (const Failures& failures : m_failures) {
        const auto& entries = failures.filed->entries();
        for (std::size_t i = failures.next; i < entries.size(); ++i) {
            if (entries[i].kind != FindingKind::PropertyMatched && entries[i].device) {
                devices.try_emplace(entries[i].candidate, entries[i].device);
            }
        }
    }
    const auto silent = m_state.m_record.silentCandidates.find(&m_element);
    if (silent != m_state.m_record.silentCandidates.end()) {
        for (const RunRecord::SilentCandidate& one : silent->second) {
            devices.try_emplace(one.candidate, one.device);
        }
    }
    std::vector<Tried> tried;
    for (const auto& [position, device] : devices) {
        Tried& one = tried.emplace_back(Tried{{device, {}, nullptr}, position});
        evaluateAll(m_element, position, one.candidate);
    }
    return tried;
}

/// The devices that the element was linked with and that left no trace of failure, each once.
std::vector<DeviceOutcomes::DevicePointer> DeviceOutcomes::linked(const std::vector<Tried>& failed) const {
    boost::unordered_flat_set<const IDeviceImp*> known;
    for (const Tried& one : failed) {
        known.insert(one.candidate.device.get());
    }
    Array<DevicePointer> all;
    m_state.setOf(m_element).getAssociatedDevices(&m_element, all);
    std::vector<DevicePointer> others;
    for (const DevicePointer& device : all) {
        if (known.insert(device.get()).second) {
            others.push_back(device);
        }
    }
    return others;
}

/// Whether the candidate meets the element; what it fails of it is added to its failures.
bool DeviceOutcomes::evaluate(const XmlElement& element, std::uint32_t position, Candidate& candidate) {
    switch (vocabulary::kindOf(element)) {
        case ElementKind::Property: return evaluateProperty(element, position, candidate);
        case ElementKind::And: return evaluateAll(element, position, candidate);
        case ElementKind::Or: return evaluateAny(element, position, candidate);
        case ElementKind::Not: return evaluateNot(element, position, candidate);
        default: return true;
    }
}

bool DeviceOutcomes::evaluateAll(const XmlElement& element, std::uint32_t position, Candidate& candidate) {
    bool all = true;
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        all = evaluate(*child, position, candidate) && all;
    }
    return all;
}

bool DeviceOutcomes::evaluateAny(const XmlElement& element, std::uint32_t position, Candidate& candidate) {
    const std::size_t failuresBefore = candidate.failures.size();
    bool any = false;
    bool isEmpty = true;
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (vocabulary::kindOf(*child) != ElementKind::Error) {
            isEmpty = false;
            any = evaluate(*child, position, candidate) || any;
        }
    }
    if (any) {
        candidate.failures.truncate(failuresBefore);
    } else if (isEmpty) {
        candidate.failures.append(RunFindings::findingOn(element, FindingKind::UnsatisfiedOr)).device =
            candidate.device;
    }
    return any;
}

bool DeviceOutcomes::evaluateNot(const XmlElement& element, std::uint32_t position, Candidate& candidate) {
    const std::size_t failuresBefore = candidate.failures.size();
    const bool holds = !evaluateAll(element, position, candidate);
    candidate.failures.truncate(failuresBefore);
    if (!holds) {
        candidate.failures.append(RunFindings::findingOn(element, FindingKind::UnsatisfiedNot)).device =
            candidate.device;
    }
    return holds;
}

// Positions come in rising order, and so do the entries of a property element: each is passed once.
bool DeviceOutcomes::evaluateProperty(const XmlElement& element, std::uint32_t position, Candidate& candidate) {
    const auto at = std::find_if(m_failures.begin(), m_failures.end(),
                                 [&element](const Failures& failures) { return failures.property == &element; });
    if (at == m_failures.end()) {
        return true;
    }
    const auto& entries = at->filed->entries();
    while (at->next < entries.size() && entries[at->next].candidate < position) {
        ++at->next;
    }
    if (at->next == entries.size() || entries[at->next].candidate != position ||
        entries[at->next].kind == FindingKind::PropertyMatched) {
        return true;
    }
    FindingWords words(element, m_state.m_valuesOfRun.get());
    candidate.failures.append(RunFindings::findingOf(element, entries[at->next], words));
    return false;
}

std::optional<Finding> DeviceOutcomes::refusal() const {
    for (const unsigned slot : {slot::SCRIPT, slot::MATCHING}) {
        const FiledFindings* const filed = filedOn(m_state, m_element, slot);
        if (filed != nullptr && filed->entries().size() > filed->firstOfRun()) {
            FindingWords words(m_element, m_state.m_valuesOfRun.get());
            return RunFindings::findingOf(m_element, filed->entries().back(), words);
        }
    }
    return std::nullopt;
}

}  // namespace vrx
