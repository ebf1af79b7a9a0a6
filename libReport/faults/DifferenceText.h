#pragma once

#include <string>
#include <vector>

#include "libDiagnosis/Difference.h"

/// The pieces of "what: expected this, found that", fit for a terminal.
namespace vrx {

std::string subjectText(const Difference& difference);
std::string expectedText(const Difference& difference);
std::string foundText(const Difference& difference);

/// One difference in words; of those of which any would do all together.
struct DifferenceLine {
    Difference difference;  ///< the first
    std::string subject;
    std::string expected;
    std::string found;
};

std::vector<DifferenceLine> differenceLines(const std::vector<Difference>& differences);

/// What somebody says of the device: "is 16 GB, expected 32 GB".
std::string sentenceOf(const DifferenceLine& line);

}  // namespace vrx
