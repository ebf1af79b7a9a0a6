#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "libCommon/xml/XmlDocument.h"
#include "libMachine/linux/CpuTopology.h"

namespace vrx {

/// A package, and the element that tells its properties.
struct HwlocPackage {
    CpuPackage topology;
    const XmlElement* element = nullptr;
    bool isCutOff = false;  ///< there may be more cores
};

/// A PCI function, and which of all functions it is below.
struct HwlocFunction {
    const XmlElement* element = nullptr;
    std::size_t above = 0;  ///< its place among the functions, counted from 1; 0 when it is below none
};

inline constexpr unsigned NEWEST_HWLOC_FORMAT = 3;

/// What stands in a document.
struct HwlocMachine {
    /// What is said of the whole machine: format 3 keeps a part of it in the topology.
    std::string info(StringView name) const;

    unsigned format = 1;
    const XmlElement* topology = nullptr;
    const XmlElement* machine = nullptr;  ///< else the outermost object, as a memory node may be; null without objects
    std::vector<const XmlElement*> modules;
    std::vector<HwlocPackage> packages;
    std::vector<HwlocFunction> functions;
    std::uint64_t memory = 0;  ///< bytes of all memory nodes
    bool isCutOff = false;     ///< there may have been more
};

/// What a document holds, which has to stay. A document that was mended may be cut off.
HwlocMachine readHwlocMachine(const XmlDocument& document);

/// An attribute as text, and as a number; empty and 0 when there is none.
std::string hwlocText(const XmlElement& element, StringView attribute);
std::uint64_t hwlocNumber(const XmlElement& element, StringView attribute);

/// The value of the `info` of that name; empty when there is none.
std::string hwlocInfo(const XmlElement& element, StringView name);

/// The bytes that its `info` called Size tells, which is in KiB; format 3 writes the unit behind it. 0 for none.
std::uint64_t hwlocSize(const XmlElement& element);

}  // namespace vrx
