#pragma once

#include <string>

#include "libGolden/GoldenDraft.h"

namespace vrx {

/// What was decided on each device of several machines, and what these have, for programs (schema
/// vrx-inventory.generate-decisions/1).
std::string goldenDecisionsJson(const GoldenDraft& draft);

}  // namespace vrx
