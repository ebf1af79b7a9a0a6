#pragma once

#include <string>
#include <vector>

#include "libReport/CheckReport.h"

namespace vrx {

/// What a run remarked about the script itself, a line each: unknown elements, a `not` inside a `not`.
std::string noticeText(const std::vector<ScriptNotice>& notices, const std::string& file, const TextFormat& format);

}  // namespace vrx
