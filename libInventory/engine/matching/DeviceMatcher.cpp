/// Which devices satisfy one `device` element: those of its type that pass its name and locator attributes, in the
/// order in which the attributes stand, and then the tests inside it. Every device that passes is linked to the
/// element; choosing one is left to the graph. When none passes, a tip says at which step the last candidates were
/// lost.
///
/// Contract: `name` is a pattern and the locators are compared exactly, although the header of generated scripts says
/// it the other way round.

#include "libInventory/engine/matching/DeviceMatcher.h"

#include <algorithm>
#include <utility>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/matching/CandidateList.h"
#include "libInventory/engine/matching/CandidateTrial.h"
#include "libInventory/engine/matching/DeviceAttributes.h"
#include "libInventory/engine/matching/ElementFilters.h"
#include "libInventory/engine/matching/PropertyMatcher.h"
#include "libInventory/engine/sweep/ContentSweep.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libInventory/script/XmlChildren.h"
#include "libInventory/support/InventoryLog.h"
#include "libInventory/support/MatchCache.h"
#include "libRegex/Regex.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

namespace {

FindingKind kindOfLoss(ElementFilter::Kind kind) noexcept {
    switch (kind) {
        case ElementFilter::Kind::Name: return FindingKind::NoDeviceWithName;
        case ElementFilter::Kind::OsLocator: return FindingKind::NoDeviceWithOsLocator;
        case ElementFilter::Kind::HwLocator: return FindingKind::NoDeviceWithHwLocator;
    }
    return FindingKind::NoAvailableDevice;
}

/// The attribute as the log writes it.
StringView logWordOf(ElementFilter::Kind kind) noexcept {
    switch (kind) {
        case ElementFilter::Kind::Name: return u"name";
        case ElementFilter::Kind::OsLocator: return u"osLocator";
        case ElementFilter::Kind::HwLocator: return u"hwlocator";
    }
    return StringView();
}

/// Those that runs with one cache share, or new ones.
std::shared_ptr<CandidatePools> poolsOf(MatchCache* cache) {
    std::shared_ptr<CandidatePools> own;
    std::shared_ptr<CandidatePools>& pools = cache != nullptr ? cache->pools() : own;
    if (pools == nullptr) {
        pools = std::make_shared<CandidatePools>();
    }
    return pools;
}

}  // namespace

DeviceMatcher::DeviceMatcher(InventoryState& state)
    : m_state(state), m_filing(state), m_pools(poolsOf(state.m_matchCache)) {}

// What the log is told of, and what is told of every property, is made by the pass itself.
void DeviceMatcher::lookAhead(const XmlElement& root) {
    if (m_state.m_threads == 1 || m_state.m_matchCache != nullptr || m_state.m_tipMatchedProperties ||
        inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    const std::size_t givenUpBefore = Regex::exceededCount();
    for (ScriptWalk walk(root, ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
        const bool isDevice = walk->kind == vocabulary::ElementKind::Device;
        if (isDevice || walk->kind == vocabulary::ElementKind::FailOnExtra) {
            walk.skipContent();
        }
        if (isDevice) {
            m_ahead.add(*walk->element);
        }
    }
    m_ahead.find(m_state);
    const std::size_t devices = m_state.m_stateManager->deviceCount();
    m_state.m_associationSets[0].reserve(std::min(m_ahead.size(), devices));
    m_tellingsAhead = m_state.m_tellings;
    m_state.m_record.givenUpInTraces += Regex::exceededCount() - givenUpBefore;
}

bool DeviceMatcher::match(XmlElement* element, bool underNot, unsigned associationIndex) {
    if (element == nullptr) {
        return false;
    }
    m_state.m_associationSets[associationIndex].associate(element, boost::shared_ptr<IDeviceImp>());
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchDevice() invElement" << placeOf(element) << u" devCount: " << m_state.m_stateManager->deviceCount());
    // Findings in an alternative are counted, so they must be made each time.
    const bool mayUseCache = m_state.m_matchCache != nullptr && associationIndex == 0;
    return mayUseCache ? matchThroughCache(element, underNot) : matchAlike(element, underNot, associationIndex);
}

/// As an element before this one that asks for the same, when there is one.
bool DeviceMatcher::matchAlike(XmlElement* element, bool underNot, unsigned associationIndex) {
    const std::size_t tellings = m_state.m_tellings;
    if (const auto* const known = m_ahead.deviceOf(*element); known != nullptr && tellings == m_tellingsAhead) {
        m_state.m_associationSets[associationIndex].associate(element, *known);
        return true;
    }
    if (const SharedLists::Pointer known = m_wideMatches.find(*element, tellings)) {
        logMatch(element, underNot, associationIndex);
        m_state.m_associationSets[associationIndex].associateAgain(element, known);
        return true;
    }
    const std::size_t givenUpBefore = Regex::exceededCount();
    m_hasFailed = false;
    m_wideMatch = nullptr;
    const bool matched = matchInStore(element, underNot, associationIndex);
    const bool isPlain = !m_hasFailed && !m_state.m_tipMatchedProperties && Regex::exceededCount() == givenUpBefore;
    if (m_wideMatch != nullptr && isPlain && m_state.m_tellings == tellings) {
        m_wideMatches.keep(*element, tellings, m_wideMatch);
    }
    return matched;
}

bool DeviceMatcher::matchThroughCache(XmlElement* element, bool underNot) {
    Inventory::InventoryDeviceAssociations& associations = m_state.m_associationSets[0];
    const String text = element->toString();
    const SharedLists::Pointer known = m_state.m_matchCache->find(text);
    if (known != nullptr) {
        logMatch(element, underNot, 0);
        associations.associateAgain(element, known);
        return !known->isEmpty();
    }
    const bool matched = matchInStore(element, underNot, 0);
    DeviceArray devices;
    associations.getMatchedDevices(element, devices);
    m_state.m_matchCache->keep(text, std::move(devices));
    return matched;
}

/// The log is told of every match in full, also of one that is known: it is made again for its lines, with links that
/// nobody reads.
void DeviceMatcher::logMatch(XmlElement* element, bool underNot, unsigned associationIndex) {
    if (!inventoryLog().isEnabled(LogPriority::Debug)) {
        return;
    }
    std::uint64_t& givenUp = m_state.m_record.givenUpInTraces;
    const std::uint64_t before = givenUp - Regex::exceededCount();
    Inventory::InventoryDeviceAssociations forTheLog;
    forTheLog.swap(m_state.m_associationSets[associationIndex]);
    matchInStore(element, underNot, associationIndex);
    forTheLog.swap(m_state.m_associationSets[associationIndex]);
    givenUp = before + Regex::exceededCount();
}

bool DeviceMatcher::matchInStore(XmlElement* element, bool underNot, unsigned associationIndex) {
    CandidatePool* const pool = mayPool() ? m_pools->find(*element, m_state.m_tellings) : nullptr;
    return pool != nullptr ? matchPool(element, *pool, underNot, associationIndex)
                           : matchFiltered(element, underNot, associationIndex);
}

// The log is told of every candidate, and somebody may be told of every property.
bool DeviceMatcher::mayPool() const {
    return !m_state.m_tipMatchedProperties && !inventoryLog().isEnabled(LogPriority::Debug);
}

bool DeviceMatcher::matchFiltered(XmlElement* element, bool underNot, unsigned associationIndex) {
    const std::size_t givenUpBefore = Regex::exceededCount();
    const StateManager& store = *m_state.m_stateManager;
    const CapabilityImp type(typeTextOf(*element));
    if (type == CapabilityImp::INVALID()) {
        m_filing.file(element, FindingKind::InvalidDeviceType, slot::SCRIPT);
        return false;
    }
    if (store.devicesCapableOf(type).isEmpty()) {
        m_filing.file(element, FindingKind::NoDeviceOfType, slot::MATCHING);
        return false;
    }
    const ElementFilters asked(*element, m_state);
    CandidateSearch search(store, type, asked.all());
    const DeviceArray& candidates = search.find();
    m_state.m_record.givenUpInTraces += search.givenUpInTrace();
    if (candidates.isEmpty() && !asked.all().empty()) {
        const ElementFilter& filter = asked.all()[search.firstExhaustedFilter()];
        VRX_LOG(inventoryLog(), LogPriority::Debug,
                u"matchDevice: No device of type: " << typeTextOf(*element) << u" with " << logWordOf(filter.kind)
                                                    << u": " << filter.attribute->Value());
        m_filing.file(element, kindOfLoss(filter.kind), slot::MATCHING, filter.attribute->Name());
        return false;
    }
    if (asked.invalid() != nullptr) {
        m_filing.file(element, FindingKind::InvalidAttribute, slot::MATCHING, asked.invalid()->Name());
        return false;
    }
    if (candidates.isEmpty()) {
        m_filing.file(element, FindingKind::NoAvailableDevice, slot::MATCHING);
        return false;
    }
    const bool isPlain = mayPool() && Regex::exceededCount() == givenUpBefore;
    CandidatePool* const pool =
        isPlain && candidates.size() >= WideMatches::MANY ? m_pools->add(*element, candidates, m_sharedLists) : nullptr;
    return pool != nullptr ? matchPool(element, *pool, underNot, associationIndex)
                           : matchCandidates(element, candidates, underNot, associationIndex);
}

bool DeviceMatcher::matchPool(XmlElement* element, CandidatePool& pool, bool underNot, unsigned associationIndex) {
    const DeviceArray& candidates = *pool.devices();
    ContentSweep sweep(m_state, pool);
    if (!sweep.isPossible(*element, underNot)) {
        return matchCandidates(element, candidates, underNot, associationIndex);
    }
    const CandidateRanges all(static_cast<std::uint32_t>(candidates.size()));
    const CandidateRanges found = sweep.match(element);
    const CandidateRanges refused = all - found;
    sweep.silent(refused).forEach([&](std::uint32_t candidate) {
        m_state.m_record.silentCandidates[element].push_back({candidates[candidate], candidate});
    });
    m_hasFailed = m_hasFailed || !refused.isEmpty() || sweep.hasFiled();
    DeviceArray matched;
    found.forEach([&](std::uint32_t candidate) { matched.append(candidates[candidate]); });
    return linkAll(element, std::move(matched), associationIndex);
}

// Only while the first candidate is tried is anybody told anything; after that the list stays what it is.
bool DeviceMatcher::matchCandidates(XmlElement* element, const DeviceArray& candidates, bool underNot,
                                    unsigned associationIndex) {
    if (candidates.size() < WideMatches::MANY) {
        return matchOne(element, candidates, underNot, associationIndex);
    }
    const CandidateList list(candidates, m_state.m_candidates);
    CandidateTrial trial(list, m_sharedLists);
    DeviceArray matched;
    const auto tryCandidate = [&](const boost::shared_ptr<IDeviceImp>& device, std::uint32_t candidate) {
        if (matchCandidate(element, device, candidate, underNot, &trial)) {
            Inventory::InventoryDeviceAssociations::logLink(element, *device);
            matched.append(device);
        }
    };
    tryCandidate(boost::shared_ptr<IDeviceImp>(candidates.front()), 0);
    const DeviceArray& devices = list.devices();
    for (std::uint32_t candidate = 1; candidate < devices.size(); ++candidate) {
        tryCandidate(devices[candidate], candidate);
    }
    return linkAll(element, std::move(matched), associationIndex);
}

bool DeviceMatcher::linkAll(XmlElement* element, DeviceArray matched, unsigned associationIndex) {
    if (matched.isEmpty()) {
        return false;
    }
    m_wideMatch = m_sharedLists.share(std::move(matched));
    m_state.m_associationSets[associationIndex].associateAgain(element, m_wideMatch);
    return true;
}

/// The same for a single candidate, which is no list to share.
bool DeviceMatcher::matchOne(XmlElement* element, const DeviceArray& candidates, bool underNot,
                             unsigned associationIndex) {
    const CandidateList list(candidates, m_state.m_candidates);
    const boost::shared_ptr<IDeviceImp> device = candidates.front();
    const bool matched = matchCandidate(element, device, 0, underNot, nullptr);
    if (matched) {
        m_state.m_associationSets[associationIndex].associate(element, device);
    }
    return matched;
}

/// Every child is evaluated, also after one has failed, so that every failing test leaves its findings.
bool DeviceMatcher::matchCandidate(XmlElement* element, const boost::shared_ptr<IDeviceImp>& device,
                                   std::uint32_t candidate, bool underNot, CandidateTrial* trial) {
    PropertyMatcher content(m_state, device, candidate, trial);
    bool ok = true;
    for (XmlElement* const child : childElements(element)) {
        if (!content.matches(child, underNot)) {
            ok = false;
            VRX_LOG(
                inventoryLog(), LogPriority::Debug,
                u"matchDevice: device guid: " << device->toString() << u" element " << placeOf(child) << u" failed");
        }
    }
    VRX_LOG(inventoryLog(), LogPriority::Debug,
            u"matchDevice: device guid: " << device->toString() << u" recursive result = " << ok);
    m_hasFailed = m_hasFailed || !ok || content.hasFiled();
    if (!ok && !content.hasFiled()) {
        m_state.m_record.silentCandidates[element].push_back({device, candidate});
    }
    return ok;
}

}  // namespace vrx
