#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "libCommon/logging/Logger.h"

namespace vrx {

/// Where log lines go outside of the program: standard error and files, through log4cplus. Nothing is loaded before the
/// first line is written to a configured output.
class LogOutput {
public:
    void addStandardError();

    /// False when the file cannot be opened for appending.
    bool addFile(const String& path);

    void write(const std::string& loggerName, LogPriority priority, StringView message);

private:
    struct Backend;

    Backend* readyBackend();
    std::string configuration() const;

    std::mutex m_mutex;
    std::atomic<bool> m_isConfigured = false;
    bool m_toStandardError = false;
    std::vector<int> m_files;  ///< descriptors, open for the rest of the process
    bool m_isChanged = false;  ///< the back end does not know the present outputs yet
    Backend* m_backend = nullptr;
};

}  // namespace vrx
