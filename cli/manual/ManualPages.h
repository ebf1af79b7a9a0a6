#pragma once

#include <string>
#include <vector>

#include "cli/manual/Topics.h"

namespace CLI {
class App;
}

namespace vrx::cli {

struct ManualPage {
    std::string name;  ///< "vrx-inventory-check"
    int section = 1;   ///< 1 commands, 5 file formats
    std::string roff;
};

ManualPage manualPage(const CLI::App& command);
ManualPage manualPage(const Topic& topic);

/// Those of all commands and topics.
std::vector<ManualPage> manualPages(const CLI::App& root);

}  // namespace vrx::cli
