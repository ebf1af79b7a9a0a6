#pragma once

#include <string>

#include "cli/help/CommandPage.h"
#include "cli/program/Session.h"

namespace vrx::cli {

/// The terminal's width, at most that of a text without one.
unsigned helpWidth(const Session& session);

/// The page for a terminal of that width. Examples are not broken.
std::string helpText(const CommandPage& page, unsigned width);

}  // namespace vrx::cli
