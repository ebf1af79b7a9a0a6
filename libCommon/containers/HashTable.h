#pragma once

#include "libCommon/containers/OrderedHashTable.h"

namespace vrx {

/// The hash table of the public interface. Every table iterates in insertion order, so that no result ever depends on
/// addresses or hash values; the plain table is therefore the ordered one.
///
///     HashTable<String, int> counts(32);
///     counts[u"Fan"] += 1;
template <typename K, typename V, typename Equal = EqualFunc<K>, typename Hash = HashFunc<K>>
using HashTable = OrderedHashTable<K, V, Equal, Hash>;

}  // namespace vrx
