#pragma once

#include <string>

#include "cli/program/Session.h"

namespace vrx {
class SysinfoFilter;
}

namespace vrx::cli {

/// The filter that is used without another, from the working directory.
inline constexpr const char* DEFAULT_FILTER = "SystemInformationFilter.xml";

/// Loads the filter of that path, or the default one where the path is empty and the file is there. False without any.
/// Throws a CommandFailure when the filter of the path does not load; a default one that does not is passed over, and
/// that is said.
bool loadChosenFilter(const std::string& path, SysinfoFilter& filter, const Session& session);

}  // namespace vrx::cli
