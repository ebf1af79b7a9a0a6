#pragma once

#include <string>
#include <vector>

#include "cli/program/Processors.h"
#include "cli/program/Session.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libMachine/MachineCollector.h"
#include "libMachine/MachineImport.h"
#include "libSystemState/StateManager.h"

namespace vrx::cli {

/// Fills the store with the recorded machine of that path ("-" for standard input), or with the machine that the
/// program runs on when the path is empty; what could not be read of that one is said on standard error.
/// The recording may be in any format that recognisedFormat knows; what was damaged in one of another program is said
/// on standard error, one line for each kind.
/// Throws a CommandFailure when there is no machine. Returns what the import did, if it was a recording.
/// So many threads may read it at once.
ImportReport loadMachine(const std::string& statePath, StateManager& store, const Session& session,
                         unsigned threads = processors());

/// The same for a recording.
ImportResult loadRecording(const std::string& path, const ImportOptions& options, StateManager& store,
                           const Session& session);

/// The two steps of that: reads it, and says nothing; says what there is to say of it, and throws where there is no
/// machine.
ImportResult importRecording(const std::string& path, const ImportOptions& options, StateManager& store);
void sayImported(const std::string& path, const ImportResult& result, const Session& session);

/// Whether it can be read again.
bool isRegularFile(const std::string& path);

/// Says on standard error what could not be read of the machine. Throws a CommandFailure when nothing could.
void sayNotes(const std::vector<CollectNote>& notes, bool isRead, const Session& session);

/// How reports name it: the path, "standard input" or "this machine".
std::string machineName(const std::string& statePath);

}  // namespace vrx::cli
