#pragma once

#include <cstddef>
#include <initializer_list>
#include <utility>
#include <vector>

#include "libCommon/Assertion.h"

namespace vrx {

/// A growable array whose indexing is always checked: an index out of range fails the assertion "index < size()".
/// Iteration is unchecked and as fast as a plain vector's.
///
///     Array<String> names{u"eth0", u"eth1"};
///     names.append(u"lo");
///     names.remove(0);
///     for (const String& name : names) { ... }
template <typename T>
class Array {
public:
    using value_type = T;
    using iterator = typename std::vector<T>::iterator;
    using const_iterator = typename std::vector<T>::const_iterator;

    Array() = default;
    explicit Array(std::size_t capacity) { m_items.reserve(capacity); }
    Array(std::initializer_list<T> items) : m_items(items) {}

    std::size_t size() const noexcept { return m_items.size(); }
    bool isEmpty() const noexcept { return m_items.empty(); }
    void reserve(std::size_t capacity) { m_items.reserve(capacity); }
    void clear() noexcept { m_items.clear(); }

    T& operator[](std::size_t index) {
        VRX_ASSERT_TEXT(index < m_items.size(), "index < size()");
        return m_items[index];
    }
    const T& operator[](std::size_t index) const {
        VRX_ASSERT_TEXT(index < m_items.size(), "index < size()");
        return m_items[index];
    }

    T& append(T item) {
        m_items.push_back(std::move(item));
        return m_items.back();
    }
    template <typename... Arguments>
    T& emplace(Arguments&&... arguments) {
        return m_items.emplace_back(std::forward<Arguments>(arguments)...);
    }
    void prepend(T item) { m_items.insert(m_items.begin(), std::move(item)); }

    /// Removes one entry, keeping the order of the others. Requires: index < size().
    void remove(std::size_t index) {
        VRX_ASSERT_TEXT(index < m_items.size(), "index < size()");
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(index));
    }

    /// Shortens the array. Requires: count <= size().
    void truncate(std::size_t count) {
        VRX_ASSERT(count <= size());
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(count), m_items.end());
    }

    T& front() { return (*this)[0]; }
    const T& front() const { return (*this)[0]; }
    T& back() { return (*this)[m_items.size() - 1]; }
    const T& back() const { return (*this)[m_items.size() - 1]; }

    iterator begin() noexcept { return m_items.begin(); }
    iterator end() noexcept { return m_items.end(); }
    const_iterator begin() const noexcept { return m_items.begin(); }
    const_iterator end() const noexcept { return m_items.end(); }

    friend bool operator==(const Array& a, const Array& b) { return a.m_items == b.m_items; }

private:
    std::vector<T> m_items;
};

}  // namespace vrx
