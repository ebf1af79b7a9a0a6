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

/// What stands in a document.
struct HwlocMachine {
    const XmlElement* machine = nullptr;  ///< null when there is none
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

}  // namespace vrx
