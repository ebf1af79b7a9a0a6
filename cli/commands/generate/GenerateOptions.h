#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/program/CommonOptions.h"

namespace vrx::cli {

struct GenerateOptions : CommonOptions {
    std::vector<std::string> machines;  ///< recordings; none for the one of `statePath`
    std::string purpose;                ///< MACHINE_ITSELF or ITS_MODEL; empty for what suits the number of machines
    std::string optional = "comments";
    std::string filterPath;
    std::string decisionsPath;
    double mostSpread = 5;
    std::size_t mostAlternatives = 4;
    bool hasAllCategories = false;
    bool ignoresLocators = false;
    bool ignoresHwLocators = false;
    bool ignoresOsLocators = false;
    bool ignoresNames = false;
    bool failsOnExtra = false;
    bool hasLenientKeys = false;
    bool isWithoutOutliers = false;

    bool checksHwLocators() const { return !ignoresLocators && !ignoresHwLocators; }
    bool checksOsLocators() const { return !ignoresLocators && !ignoresOsLocators; }
};

inline constexpr const char* MACHINE_ITSELF = "machine";
inline constexpr const char* ITS_MODEL = "model";

}  // namespace vrx::cli
