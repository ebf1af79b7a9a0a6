#pragma once

#include <string>

#include "host/terminal/Console.h"
#include "libCommon/containers/Array.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx::host {

/// What a run remarked about the script itself, a line each: unknown elements, a `not` inside a `not`.
std::string noticeText(const Array<TestRunEventImp>& events, const std::string& file, const TextFormat& format);

}  // namespace vrx::host
