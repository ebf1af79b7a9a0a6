/// A clock ticks with every moment and with every former value that is kept. The value that a property had at a moment
/// is the first one kept after it, or, when there is none, the one that it has. Of the changes between two moments only
/// the first can be asked for, so no more is kept than that: what a host may change while somebody quotes old values is
/// without end. Former values that no moment can ask for any more go with the last moment that could.

#include "libSystemState/properties/ValueMoment.h"

#include <atomic>
#include <boost/unordered/unordered_flat_map.hpp>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

struct Kept {
    std::uint64_t time;
    ValueImp value;
};

struct Registry {
    std::mutex mutex;
    std::uint64_t clock = 0;
    std::set<std::uint64_t> moments;
    boost::unordered_flat_map<const IPropertyImp*, std::vector<Kept>> former;  ///< by time
    std::atomic<bool> hasMoments = false;
};

/// Never destroyed: an engine may be, after the end of the program has begun.
Registry& registry() {
    static Registry& only = *new Registry;
    return only;
}

}  // namespace

ValueMoment::ValueMoment() {
    Registry& all = registry();
    const std::scoped_lock lock(all.mutex);
    m_time = ++all.clock;
    all.moments.insert(m_time);
    all.hasMoments = true;
}

ValueMoment::~ValueMoment() {
    Registry& all = registry();
    const std::scoped_lock lock(all.mutex);
    const bool wasOldest = *all.moments.begin() == m_time;
    all.moments.erase(m_time);
    if (all.moments.empty()) {
        all.hasMoments = false;
        all.former.clear();
    } else if (wasOldest) {
        const std::uint64_t oldest = *all.moments.begin();
        for (auto next = all.former.begin(); next != all.former.end();) {
            const auto at = next++;
            std::erase_if(at->second, [oldest](const Kept& kept) { return kept.time < oldest; });
            if (at->second.empty()) {
                all.former.erase(at);
            }
        }
    }
}

String ValueMoment::textOf(const IPropertyImp& property) const {
    Registry& all = registry();
    const std::scoped_lock lock(all.mutex);
    const auto at = all.former.find(&property);
    if (at != all.former.end()) {
        for (const Kept& kept : at->second) {
            if (kept.time > m_time) {
                return kept.value.toString(true);
            }
        }
    }
    return property.value().toString(true);
}

void ValueMoment::keep(const IPropertyImp& property, ValueImp&& former) {
    Registry& all = registry();
    if (!all.hasMoments) {
        return;
    }
    const std::scoped_lock lock(all.mutex);
    if (all.moments.empty()) {
        return;
    }
    std::vector<Kept>& kept = all.former[&property];
    if (kept.empty() || kept.back().time < *all.moments.rbegin()) {
        kept.push_back({++all.clock, std::move(former)});
    }
}

}  // namespace vrx
