/// What the first pass does for an element has no other effect than a link when the only device that may be meant holds
/// each property that is asked for. That much is found out ahead, by reading: what the recording says of a device is
/// compared where it lies, and nothing is made, filed or told. Everything else is left to the pass, so the outcome is
/// the same with any number of threads.

#include "libInventory/engine/matching/MatchesAhead.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <future>
#include <system_error>

#include "libInventory/engine/InventoryState.h"
#include "libInventory/engine/matching/CandidateSearch.h"
#include "libInventory/engine/matching/DeviceAttributes.h"
#include "libInventory/engine/matching/ElementFilters.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/engine/matching/PropertyTest.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/RecordedTexts.h"

namespace vrx {

namespace {

constexpr std::size_t AT_ONCE = 64;

bool holdsAll(const IDeviceImp& device, const XmlElement& element) {
    RecordedTexts texts(device.recordedProperties());
    for (const XmlElement* const child : childElements(element)) {
        if (vocabulary::kindOf(*child) != vocabulary::ElementKind::Property) {
            return false;
        }
        const PropertyExpectation expectation(*child);
        const std::optional<StringView> text = texts.find(expectation.key());
        if (!text || !meets(*text, expectation)) {
            return false;
        }
    }
    return true;
}

/// A script asks for few types, in many elements. The texts are borrowed.
class KnownTypes {
public:
    /// Valid until the next question.
    const CapabilityImp& of(StringView text) {
        Entry& entry = m_entries[slotOf(text)];
        if (!entry.isKnown || entry.text != text) {
            entry = {text, CapabilityImp(text), true};
        }
        return entry.type;
    }

private:
    static constexpr std::size_t SIZE = 64;

    struct Entry {
        StringView text;
        CapabilityImp type;
        bool isKnown = false;
    };

    static std::size_t slotOf(StringView text) noexcept {
        return text.empty() ? 0 : (text.size() * 7 + text.front() * 3U + text.back()) % SIZE;
    }

    std::array<Entry, SIZE> m_entries;
};

const boost::shared_ptr<IDeviceImp>* satisfying(const XmlElement& element, const InventoryState& state,
                                                KnownTypes& types) {
    const CapabilityImp& type = types.of(typeTextOf(element));
    const ElementFilters filters(element, state);
    if (type.isInvalid() || filters.invalid() != nullptr) {
        return nullptr;
    }
    const auto* const device = CandidateSearch(*state.m_stateManager, type, filters.all()).findOnly();
    return device != nullptr && holdsAll(**device, element) ? device : nullptr;
}

}  // namespace

void MatchesAhead::find(const InventoryState& state) {
    std::atomic<std::size_t> next = 0;
    const auto takeUntilNoneIsLeft = [&] {
        KnownTypes types;
        for (std::size_t begin = next.fetch_add(AT_ONCE); begin < m_pairs.size(); begin = next.fetch_add(AT_ONCE)) {
            for (std::size_t i = begin; i < std::min(begin + AT_ONCE, m_pairs.size()); ++i) {
                m_pairs[i].device = satisfying(*m_pairs[i].element, state, types);
            }
        }
    };
    const std::size_t workers = std::min<std::size_t>(state.m_threads, m_pairs.size() / AT_ONCE + 1);
    std::vector<std::future<void>> others;
    try {
        while (others.size() + 1 < workers) {
            others.push_back(std::async(std::launch::async, takeUntilNoneIsLeft));
        }
    } catch (const std::system_error&) {  // fewer threads are to be had
    }
    takeUntilNoneIsLeft();
    std::ranges::for_each(others, [](std::future<void>& other) { other.get(); });
}

const boost::shared_ptr<IDeviceImp>* MatchesAhead::deviceOf(const XmlElement& element) noexcept {
    return m_next < m_pairs.size() && m_pairs[m_next].element == &element ? m_pairs[m_next++].device : nullptr;
}

}  // namespace vrx
