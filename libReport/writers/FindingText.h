#pragma once

#include <string>

#include "libReport/text/TextFormat.h"
#include "libReport/writers/ScriptFinding.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// The findings of a check for people: each with its place, what was expected and what was found. Findings on the
/// properties of a device stand under the device.
struct FindingText {
    std::string text;
    std::size_t count = 0;
};

/// `file` is the script's path, for the places; empty in a check of one device, which has no script and no other
/// candidates. Extra devices are left out: reports list them by themselves. With
/// `machine` (may be null) the text names candidates and what the machine has instead.
FindingText findingText(const std::vector<ScriptFinding>& findings, const std::string& file,
                        const StateManager* machine, const TextFormat& format);

}  // namespace vrx
