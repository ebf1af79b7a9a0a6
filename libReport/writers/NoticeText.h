#pragma once

#include <string>

#include "libCommon/containers/Array.h"
#include "libReport/text/TextFormat.h"
#include "libSystemState/results/TestRunEventImp.h"

namespace vrx {

/// What a run remarked about the script itself, a line each: unknown elements, a `not` inside a `not`.
std::string noticeText(const Array<TestRunEventImp>& events, const std::string& file, const TextFormat& format);

}  // namespace vrx
