#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// The result of a test.
///
///     if (result.code() == TestResultImp::FailedAmbiguousParts) { ... }
class VRX_EXPORT TestResultImp {
public:
    enum Code : std::int32_t {
        NotRun = 0,
        Failed = 5,
        PassedWithExtraDevices = 40,
        FailedAmbiguousParts = 41,
        Passed = 43
    };

    TestResultImp() noexcept = default;
    explicit TestResultImp(Code code) noexcept : m_code(code) {}
    Code code() const noexcept { return m_code; }

    /// 43 "Passed", 40 "Passed with extra devices", 41 "Failed: ambiguous parts", 5 "Failed"; "Not run" before that.
    String toString() const;

private:
    Code m_code = NotRun;
};

}  // namespace vrx
