#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "libFleet/MachineCheck.h"
#include "libFleet/machines/MachineList.h"

namespace vrx {

/// Checks a fleet on a pool of threads and hands the results out in the order of the recordings. No more recordings
/// and results are in memory than a few for each thread.
///
///     FleetRun run(scripts, std::move(machines), options);
///     while (const std::optional<FleetResult> result = run.next()) {
///         std::cout << result->line;
///     }
class FleetRun {
public:
    /// Requires: `scripts` and what `options` borrows outlive the object.
    FleetRun(const FleetScripts& scripts, MachineList machines, const FleetOptions& options);

    /// Waits for the checks that are under way.
    ~FleetRun();
    FleetRun(const FleetRun&) = delete;
    FleetRun& operator=(const FleetRun&) = delete;

    /// The result of the next recording; none behind the last, and none more after a stop than were finished then.
    std::optional<FleetResult> next();

    FleetProgress progress() const;

    /// Whether every recording had its result handed out.
    bool isWhole() const;

private:
    bool isStopped() const { return m_options.isStopped != nullptr && *m_options.isStopped; }
    bool hasRoom() const { return m_taken < m_handedOut + m_window; }
    std::optional<std::size_t> take(FleetRecording& recording);
    void work();

    const FleetScripts& m_scripts;
    MachineList m_machines;
    FleetOptions m_options;
    std::size_t m_window;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<std::size_t, FleetResult> m_results;  ///< finished and not handed out, by number
    std::size_t m_taken = 0;
    std::size_t m_handedOut = 0;
    bool m_isEmpty = false;   ///< no recording will be taken any more
    bool m_isListed = false;  ///< because there is none
    bool m_isEnded = false;   ///< nobody wants results any more
    std::vector<std::thread> m_threads;
};

}  // namespace vrx
