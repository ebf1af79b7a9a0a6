#pragma once

#include <cstddef>
#include <functional>

#include "libCommon/text/String.h"

namespace vrx {

/// Equality of hash-table keys: exact for texts, by identity for pointers.
template <typename K>
struct EqualFunc {
    bool operator()(const K& a, const K& b) const noexcept { return a == b; }
};

/// Hash of keys. Pointers are hashed by address; results never depend on it, because tables iterate in insertion order.
///
///     std::unordered_map<String, int, HashFunc<String>> counts;
template <typename K>
struct HashFunc {
    std::size_t operator()(const K& key) const noexcept { return std::hash<K>{}(key); }
};

template <>
struct HashFunc<String> {
    using is_avalanching = void;  // every bit of the text changes about half of the bits of its hash
    std::size_t operator()(const String& key) const noexcept { return hashOf(key); }
};

}  // namespace vrx
