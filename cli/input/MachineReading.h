#pragma once

#include <future>

#include "cli/input/MachineSource.h"
#include "cli/program/CommonOptions.h"

namespace vrx::cli {

/// A machine that is read while the command reads its script.
///
///     MachineReading reading(options, 2, store, session);
///     loadScript(...);
///     const ImportReport import = reading.finish();
///
/// A recording in a regular file is read ahead, unless log lines are shown, which would mix with those of the script.
/// Anything else is read at the end. Nothing is said of the machine before: a script that is refused is all that the
/// user hears of.
class MachineReading {
public:
    /// So many threads may work at once; with one nothing is read ahead. Requires: options, store and session outlive
    /// this object, and nobody else looks at the store before the end.
    MachineReading(const CommonOptions& options, unsigned threads, StateManager& store, const Session& session);

    /// What loadMachine returns and throws. Requires: it was not called before.
    ImportReport finish();

private:
    const CommonOptions& m_options;
    const unsigned m_threads;
    StateManager& m_store;
    const Session& m_session;
    std::future<ImportResult> m_result;  // which waits for the thread when it goes
};

}  // namespace vrx::cli
