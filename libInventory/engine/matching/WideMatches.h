#pragma once

#include <boost/unordered/unordered_flat_map.hpp>
#include <cstddef>
#include <vector>

#include "libCommon/Forward.h"
#include "libInventory/support/SharedLists.h"

namespace vrx {

/// What elements with many candidates matched, for the elements after them that ask for the same: of ten thousand equal
/// elements one is tried.
///
/// Kept are only answers that nothing else was found out by: every candidate matched, no test failed, and no pattern
/// was given up.
class WideMatches {
public:
    /// From so many candidates on an element is looked up and kept.
    static constexpr std::size_t MANY = 2;

    /// The devices of an element that asks for the same, as long as observers, who may change the store, have been told
    /// no more than that often; null when there is none.
    SharedLists::Pointer find(const XmlElement& element, std::size_t tellings) const;

    /// Keeps the answer where the element asks for nothing but properties. Others may have more to tell.
    void keep(const XmlElement& element, std::size_t tellings, SharedLists::Pointer devices);

private:
    struct Match {
        const XmlElement* element;
        std::size_t tellings;
        SharedLists::Pointer devices;
    };

    boost::unordered_flat_map<std::size_t, std::vector<Match>> m_matches;  ///< by the hash of the attributes
};

}  // namespace vrx
