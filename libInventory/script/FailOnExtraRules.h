#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// A script that was generated from the machine, with a `fail-on-extra` rule at its end for every device type of which
/// it names all devices: a check of it then fails on any other device of that type. A type of which a filter has left
/// some out gets no rule, so the script still passes on its machine.
///
///     inventory.generateInventoryScript(script, false, true, true, nullptr);
///     script = withFailOnExtraRules(script, machine);
VRX_EXPORT String withFailOnExtraRules(const String& script, const StateManager& machine);

}  // namespace vrx
