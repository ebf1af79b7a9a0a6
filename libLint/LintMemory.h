#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libLint/rules/AskedDevices.h"
#include "libLint/rules/RepeatedDevices.h"

namespace vrx {

/// What rules that compare one element with others remember. Every run has its own; devices, alternatives and what is
/// asked for are forgotten from one listed part to the next.
struct LintMemory {
    using PartsByName = std::unordered_map<String, const XmlElement*, HashFunc<String>>;

    RepeatedDevices devices;
    AskedDevices asked;
    std::uint64_t combinations = 1;  ///< of alternatives; as many as 64 bits hold, when there are more
    std::size_t askedFor = 0;        ///< devices and rules
    PartsByName parts;
};

}  // namespace vrx
