#pragma once

#include <string>

#include "libDiagnosis/Difference.h"

/// The pieces of "what: expected this, found that", fit for a terminal.
namespace vrx {

std::string subjectText(const Difference& difference);
std::string expectedText(const Difference& difference);
std::string foundText(const Difference& difference);

}  // namespace vrx
