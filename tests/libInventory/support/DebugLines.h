#pragma once

#include "libCommon/logging/Logger.h"

namespace vrx::test {

/// As long as it lives every log line is made, and dropped.
class DebugLines : LogSink {
public:
    DebugLines() {
        Logger::addSink(*this);
        Logger::setRootPriority(LogPriority::Debug);
    }
    ~DebugLines() override {
        Logger::setRootPriority(LogPriority::Warning);
        Logger::removeSink(*this);
    }
    void writeLine(const std::string&, LogPriority, StringView) override {}
};

}  // namespace vrx::test
