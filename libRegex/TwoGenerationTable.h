#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <utility>

namespace vrx {

// A hash table of bounded size that keeps what is in use. Entries are added to the young generation; when that is full
// it becomes the old one, and what was old is dropped. An entry that is found in the old generation moves to the young
// one. So whatever is asked for again within one filling of a generation stays, finding costs one or two look-ups, and
// no list of uses has to be kept.

/// A bounded table of two generations. Each entry has a cost; a generation takes entries up to `generationCost`, or a
/// single one that costs more. Adding or finding an entry may drop others.
template <typename Key, typename Value, typename Hash>
class TwoGenerationTable {
public:
    explicit TwoGenerationTable(std::size_t generationCost) noexcept : m_generationCost(generationCost) {}

    /// The value of a key, null when the table does not have it. Valid until the table is used again.
    Value* find(const Key& key) {
        if (const auto young = m_young.find(key); young != m_young.end()) {
            return &young->second.value;
        }
        const auto old = m_old.find(key);
        if (old == m_old.end()) {
            return nullptr;
        }
        auto kept = std::move(*old);
        m_old.erase(old);
        return &add(kept.first, std::move(kept.second.value), kept.second.cost);
    }

    /// Adds a value. Requires: the table does not have the key. The result is valid until the table is used again.
    Value& add(const Key& key, Value value, std::size_t cost) {
        if (m_youngCost + cost > m_generationCost && !m_young.empty()) {
            m_old = std::exchange(m_young, {});
            m_youngCost = 0;
        }
        m_youngCost += cost;
        return m_young.emplace(key, Entry{std::move(value), cost}).first->second.value;
    }

private:
    struct Entry {
        Value value;
        std::size_t cost;
    };
    using Generation = boost::unordered_flat_map<Key, Entry, Hash>;

    std::size_t m_generationCost;
    std::size_t m_youngCost = 0;
    Generation m_young;
    Generation m_old;
};

}  // namespace vrx
