#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "libCommon/logging/Logger.h"

namespace vrx {

/// Where log lines go outside of the program: standard error, through log4cplus, and files.
class LogOutput {
public:
    void addStandardError();

    /// False when the file cannot be opened for appending.
    bool addFile(const String& path);

    /// Why a line is missing in a file; empty while every line was written.
    String fileError();

    void write(const std::string& loggerName, LogPriority priority, StringView message);

private:
    struct Backend;

    Backend* readyBackend();
    void writeToFiles(std::string_view line);

    std::mutex m_mutex;
    std::atomic<bool> m_isConfigured = false;
    bool m_toStandardError = false;
    std::vector<int> m_files;  ///< descriptors, open for the rest of the process
    int m_fileError = 0;       ///< of the first line that a file did not take
    Backend* m_backend = nullptr;
};

}  // namespace vrx
