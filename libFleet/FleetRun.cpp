/// Each thread takes the next recording under the lock, checks it without, and puts the result where the caller finds
/// it by its number. A thread that is far ahead of a slow one waits until that one's result is handed out. Recordings
/// of archives are unpacked under the lock, because an archive is one stream.

#include "libFleet/FleetRun.h"

#include <algorithm>
#include <utility>

namespace vrx {

namespace {

constexpr std::size_t RESULTS_OF_A_THREAD = 16;

}  // namespace

FleetRun::FleetRun(const FleetScripts& scripts, MachineList machines, const FleetOptions& options)
    : m_scripts(scripts), m_machines(std::move(machines)), m_options(options) {
    const unsigned threads = std::max(1U, options.threads);
    m_window = threads * RESULTS_OF_A_THREAD;
    for (unsigned i = 0; i < threads; ++i) {
        m_threads.emplace_back([this] { work(); });
    }
}

FleetRun::~FleetRun() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnded = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

std::optional<FleetResult> FleetRun::next() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_results.contains(m_handedOut) || (m_isEmpty && m_handedOut == m_taken); });
    const auto found = m_results.find(m_handedOut);
    if (found == m_results.end() || found->second.isCutShort) {
        return std::nullopt;
    }
    FleetResult result = std::move(found->second);
    m_results.erase(found);
    ++m_handedOut;
    lock.unlock();
    m_changed.notify_all();
    return result;
}

FleetProgress FleetRun::progress() const {
    const std::lock_guard lock(m_mutex);
    return m_machines.progress();
}

bool FleetRun::isWhole() const {
    const std::lock_guard lock(m_mutex);
    return m_isListed && m_handedOut == m_taken;
}

/// The number of the recording that was taken; none when there is nothing more to do.
std::optional<std::size_t> FleetRun::take(FleetRecording& recording) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return hasRoom() || m_isEmpty || m_isEnded; });
    if (m_isEmpty || m_isEnded) {
        return std::nullopt;
    }
    const bool goesOn = !isStopped();
    std::optional<FleetRecording> found = goesOn ? m_machines.next() : std::nullopt;
    if (!found) {
        m_isListed = m_isListed || goesOn;
        m_isEmpty = true;
        lock.unlock();
        m_changed.notify_all();
        return std::nullopt;
    }
    recording = std::move(*found);
    return m_taken++;
}

void FleetRun::work() {
    FleetRecording recording;
    FleetWanted asked;
    while (const std::optional<std::size_t> number = take(recording)) {
        FleetResult result;
        if (recording.isKnown) {
            result.file = recording.name;
            result.isKnown = true;
        } else {
            result = checkRecording(recording, m_scripts, m_options, asked);
        }
        const std::lock_guard lock(m_mutex);
        m_results.emplace(*number, std::move(result));
        m_changed.notify_all();
    }
}

}  // namespace vrx
