/// What the first pass does for an element has no other effect than a link when the only device that may be meant holds
/// each property that is asked for. That much is found out ahead, by reading: what the recording says of a device is
/// compared where it lies, and nothing is made, filed or told. Everything else is left to the pass, so the outcome is
/// the same with any number of threads.

#include "libInventory/engine/matching/MatchesAhead.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <system_error>

#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/engine/matching/PropertyTest.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"
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

}  // namespace

void MatchesAhead::compare(unsigned threads) {
    std::atomic<std::size_t> next = 0;
    const auto takeUntilNoneIsLeft = [&] {
        for (std::size_t begin = next.fetch_add(AT_ONCE); begin < m_pairs.size(); begin = next.fetch_add(AT_ONCE)) {
            for (std::size_t i = begin; i < std::min(begin + AT_ONCE, m_pairs.size()); ++i) {
                m_pairs[i].isKnown = holdsAll(**m_pairs[i].device, *m_pairs[i].element);
            }
        }
    };
    const std::size_t workers = std::min<std::size_t>(threads, m_pairs.size() / AT_ONCE + 1);
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
    if (m_next == m_pairs.size() || m_pairs[m_next].element != &element) {
        return nullptr;
    }
    const Pair& pair = m_pairs[m_next++];
    return pair.isKnown ? pair.device : nullptr;
}

}  // namespace vrx
