#pragma once

#include <string>
#include <vector>

#include "cli/program/Session.h"
#include "libInventory/ImportReport.h"
#include "libSystemState/StateManager.h"

namespace vrx {
class SysinfoFilter;
}

namespace vrx::cli {

/// What of a machine no script can ask for, so that a script of the machine has to do without it.
struct NotScriptable {
    std::vector<std::string> unknownTypes;      ///< devices of types that are none, by type and guid
    std::vector<std::string> codedKeys;         ///< keys with escapes or control characters, with their places
    std::vector<std::string> hiddenProperties;  ///< behind another value of the same key, or without a key

    bool isEmpty() const noexcept { return unknownTypes.empty() && codedKeys.empty() && hiddenProperties.empty(); }
};

/// Looks at the devices that the filter selects (null for all). When anything has to be left out, the devices without
/// it are added to `scriptable`, in the machine's order and tree. `import` tells the places of keys; `name` is what
/// they call the recording.
NotScriptable takeScriptable(const StateManager& machine, const SysinfoFilter* filter, const ImportReport& import,
                             const std::string& name, StateManager& scriptable);

/// Says what a script has to do without. Throws a CommandFailure when the user has to decide on it.
void sayNotScriptable(const NotScriptable& found, bool hasLenientKeys, const Session& session);

}  // namespace vrx::cli
