#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"
#include "libSystemState/capabilities/CapabilityImp.h"

/// The machine that the program runs on, or a saved copy of another one's files, as devices of a store: a tree below
/// one System device, with locators, names and properties (docs/recorder.md lists them).
///
///     StateManager store;
///     std::vector<CollectNote> notes;
///     const bool isRecorded = collectMachine(store, {}, notes);
///     for (const CollectNote& note : notes) {
///         std::cerr << noteText(note) << '\n';
///     }
///
/// Works for any user; what only root may read is left out and noted. Nothing is kept between calls. Several threads
/// may collect at once; they take turns while processors are counted, because hwloc is told by the environment what to
/// look at, so no thread of the host may change the environment meanwhile.
namespace vrx {

struct CollectOptions {
    /// The folder that stands for `/`: another one holds a saved copy of a machine's /sys and /proc. Nothing outside it
    /// is read but the tables of vendor and device names.
    std::string root = "/";

    /// A saved SMBIOS table that takes the place of the machine's own: a copy of /sys/firmware/dmi/tables/DMI, or what
    /// `dmidecode --dump-bin` wrote. Without another root folder the table is all that is read. Empty for none.
    std::string smbiosPath;

    std::vector<std::string> sources;   ///< names of sources; only these, when there are any
    std::vector<std::string> excluded;  ///< names of sources and of device types that are left out
    bool isAnonymous = false;           ///< pseudonyms for what identifies this machine (see anonymizeMachine)

    bool isTableOnly() const { return !smbiosPath.empty() && root == "/"; }
};

/// One of the things that a recording is put together from. Lives as long as the program.
struct CollectSource {
    std::string_view name;
    std::string_view description;  ///< one line for people
};

/// All sources, in the order in which they run.
VRX_EXPORT std::vector<CollectSource> collectSources();

/// A name in the options that means nothing.
struct UnknownCollectName {
    std::string name;
    bool isExcluded = false;    ///< whether it stands in `excluded`, where types of devices may stand too
    std::vector<String> known;  ///< all that might stand in its place
};

/// The first name in the options that is neither a source nor, where that may stand, a device type; none when all are.
VRX_EXPORT std::optional<UnknownCollectName> unknownName(const CollectOptions& options);

/// Something that could not be read.
struct CollectNote {
    enum class Reason : std::uint8_t {
        Absent,
        NeedsRoot,
        Denied,      ///< for root as well, or in a saved copy
        Unreadable,  ///< a file that the options name, or a source that failed
        Damaged,
        SaysNothing  ///< of what is looked for there
    };

    Reason reason = Reason::Absent;
    std::string path;    ///< what could not be read
    std::string detail;  ///< the reason in words: "needs root", "No such file or directory"
    std::string lost;    ///< what the recording lacks for it: "memory modules, slots and sockets, power supplies"

    /// The same as data, which the store keeps as an unread source. No types where the note is for people alone.
    CapabilityImp types;
    Array<String> properties;
};

/// "PATH: DETAIL; left out: LOST".
VRX_EXPORT std::string noteText(const CollectNote& note);

/// Records a machine. `notes` receives what could not be read, and the store keeps what it lacks for it. False, adding
/// nothing, only when nothing at all could be had.
///
/// Requires: the store is empty, and the options hold no unknown name.
VRX_EXPORT bool collectMachine(StateManager& store, const CollectOptions& options, std::vector<CollectNote>& notes);

}  // namespace vrx
