#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <utility>
#include <vector>

#include "libCommon/containers/HashFunctions.h"

namespace vrx {

/// A hash table that iterates in the order in which its keys were first inserted; removal closes the gap and keeps the
/// order of the others. Look-up, insertion and removal take constant time on average (a removal leaves a hole that is
/// swept once half of the entries are holes).
///
/// Pointers returned by `find` stay valid until the table is changed.
///
///     OrderedHashTable<String, int> counts;
///     ++counts[u"Fan"];
///     for (const auto& [type, count] : counts) { ... }  // in the order of insertion
template <typename K, typename V, typename Equal = EqualFunc<K>, typename Hash = HashFunc<K>>
class OrderedHashTable {
public:
    struct Entry {
        K key;
        V value;
    };

private:
    struct Slot {
        Entry entry;
        bool live;
    };
    using Slots = std::vector<Slot>;

    template <typename SlotIterator, typename Reference>
    class Iterator {
    public:
        Iterator(SlotIterator at, SlotIterator end) : m_at(at), m_end(end) { skipHoles(); }
        Reference operator*() const { return m_at->entry; }
        auto* operator->() const { return &m_at->entry; }
        Iterator& operator++() {
            ++m_at;
            skipHoles();
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_at == other.m_at; }

    private:
        void skipHoles() {
            while (m_at != m_end && !m_at->live) {
                ++m_at;
            }
        }
        SlotIterator m_at;
        SlotIterator m_end;
    };

public:
    using iterator = Iterator<typename Slots::iterator, Entry&>;
    using const_iterator = Iterator<typename Slots::const_iterator, const Entry&>;

    OrderedHashTable() = default;

    /// `buckets` is how many entries to make room for at once.
    explicit OrderedHashTable(std::size_t buckets) { m_slots.reserve(buckets); }

    /// Makes room for that many entries at once.
    void reserve(std::size_t entries) {
        m_slots.reserve(entries);
        m_positions.reserve(entries);
    }

    std::size_t size() const noexcept { return m_positions.size(); }
    bool isEmpty() const noexcept { return m_positions.empty(); }

    V* find(const K& key) {
        const auto at = m_positions.find(key);
        return at == m_positions.end() ? nullptr : &m_slots[at->second].entry.value;
    }
    const V* find(const K& key) const {
        const auto at = m_positions.find(key);
        return at == m_positions.end() ? nullptr : &m_slots[at->second].entry.value;
    }
    bool contains(const K& key) const { return m_positions.contains(key); }

    /// The value of the key, made by default construction at the end of the order when absent.
    V& operator[](const K& key) { return *tryEmplace(key).first; }

    /// Inserts at the end of the order; false, changing nothing, when the key is present.
    bool insert(const K& key, V value) {
        const auto [stored, isNew] = tryEmplace(key);
        if (isNew) {
            *stored = std::move(value);
        }
        return isNew;
    }

    /// Inserts or replaces; a replaced key keeps its place in the order.
    void set(const K& key, V value) { *tryEmplace(key).first = std::move(value); }

    /// Removes the key; false when it was absent.
    bool remove(const K& key) {
        const auto at = m_positions.find(key);
        if (at == m_positions.end()) {
            return false;
        }
        Slot& slot = m_slots[at->second];
        slot.live = false;
        slot.entry.value = V();
        m_positions.erase(at);
        sweepWhenSparse();
        return true;
    }

    void clear() noexcept {
        m_positions.clear();
        m_slots.clear();
    }

    iterator begin() { return iterator(m_slots.begin(), m_slots.end()); }
    iterator end() { return iterator(m_slots.end(), m_slots.end()); }
    const_iterator begin() const { return const_iterator(m_slots.begin(), m_slots.end()); }
    const_iterator end() const { return const_iterator(m_slots.end(), m_slots.end()); }

private:
    std::pair<V*, bool> tryEmplace(const K& key) {
        const auto [at, isNew] = m_positions.try_emplace(key, m_slots.size());
        if (isNew) {
            m_slots.push_back(Slot{Entry{key, V()}, true});
        }
        return {&m_slots[at->second].entry.value, isNew};
    }

    void sweepWhenSparse() {
        if (m_slots.size() < 16 || m_positions.size() * 2 > m_slots.size()) {
            return;
        }
        Slots kept;
        kept.reserve(m_positions.size());
        for (Slot& slot : m_slots) {
            if (slot.live) {
                m_positions[slot.entry.key] = kept.size();
                kept.push_back(std::move(slot));
            }
        }
        m_slots = std::move(kept);
    }

    boost::unordered_flat_map<K, std::size_t, Hash, Equal> m_positions;
    Slots m_slots;
};

}  // namespace vrx
