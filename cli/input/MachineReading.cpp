#include "cli/input/MachineReading.h"

#include <system_error>

#include "cli/terminal/StageProgress.h"

namespace vrx::cli {

MachineReading::MachineReading(const CommonOptions& options, unsigned threads, StateManager& store,
                               const Session& session)
    : m_options(options), m_threads(threads), m_store(store), m_session(session) {
    const std::string& path = options.statePath;
    if (threads == 1 || !isRegularFile(path) || session.logLevel < LogPriority::Warning || !options.logFile.empty()) {
        return;
    }
    try {
        m_result = std::async(std::launch::async,
                              [&path, &store, threads] { return importRecording(path, {.threads = threads}, store); });
    } catch (const std::system_error&) {  // no thread is to be had, so it is read at the end
    }
}

ImportReport MachineReading::finish() {
    const std::string& path = m_options.statePath;
    if (!m_result.valid()) {
        return loadMachine(path, m_store, m_session, m_threads);
    }
    const ImportResult result = [&] {
        const StageProgress progress(m_session.console, "reading", path);
        return m_result.get();
    }();
    sayImported(path, result, m_session);
    return result.report;
}

}  // namespace vrx::cli
