#pragma once

#include <string>

#include "libDiagnosis/Fault.h"

/// Words for what stands below a faulty device and shares its fate.
namespace vrx {

/// How many there are of each type, as a technician goes through them: "1 MemoryController, 4 ProcessorCores, 3
/// Caches". Empty when there is nothing.
std::string foldedTypes(const Fault& fault);

/// For who looks at one of them: `Cache "L1" (cpu:1/L1): missing with Processor "X9" (cpu:1)`.
std::string foldedText(const Fault& fault, const FoldedFault& folded);

/// "Processors", "Batteries", "Switches".
std::string pluralOf(const std::string& type);

}  // namespace vrx
