#pragma once

#include <string>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

struct CollectOptions {
    /// The folder that stands for `/`: another one holds a saved copy of a machine's /sys and /proc. Nothing outside it
    /// is read but the tables of vendor and device names.
    std::string root = "/";

    /// A saved SMBIOS table that takes the place of the machine's own: a copy of /sys/firmware/dmi/tables/DMI, or what
    /// `dmidecode --dump-bin` wrote. Without another root folder the table is all that is read. Empty for none.
    std::string smbiosPath;

    std::vector<std::string> sources;   ///< names of SourceTable.h; only these, when there are any
    std::vector<std::string> excluded;  ///< names of sources and of device types that are left out
    bool isAnonymous = false;           ///< pseudonyms for what identifies this machine (Anonymize.h)

    bool isTableOnly() const { return !smbiosPath.empty() && root == "/"; }
};

/// Records a machine: its devices as a tree below one System device, with locators, names and properties
/// (docs/recorder.md lists them). `notes` receives one line for each thing that could not be read: where, why, and what
/// is left out for it. Works for any user; what only root may read is noted.
///
/// False, adding nothing, only when nothing at all could be had. Requires: the store is empty, and
/// SourceChoice::problem finds nothing wrong with the options.
bool collectMachine(StateManager& store, const CollectOptions& options, Array<String>& notes);

}  // namespace vrx
