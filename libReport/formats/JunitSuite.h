#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "libCommon/time/DateTime.h"

namespace vrx {

/// The result of tests as JUnit's XML has it: one suite. Texts may hold anything.
struct JunitSuite {
    enum class Outcome : std::uint8_t { Passed, Failure, Error, Skipped };

    struct Case {
        std::string name;
        Outcome outcome = Outcome::Passed;
        std::string kind;                ///< of a failure or an error
        std::vector<std::string> lines;  ///< of all but passed ones at least one; the first is the message
    };

    std::string name;
    std::string host;  ///< empty where it is not known
    DateTime started;
    std::chrono::steady_clock::duration duration{};
    std::vector<std::pair<std::string, std::string>> properties;  ///< empty ones are left out
    std::vector<Case> cases;
};

/// The shape suits the strict schemas that are in use: all attributes that one of them wants, no time zone in the
/// timestamp, which is UTC, and empty outputs at the end.
std::string junitText(const JunitSuite& suite);

/// For a document of many suites: what stands before the first, each suite, and what stands behind the last.
inline constexpr std::string_view JUNIT_START = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
std::string junitSuite(const JunitSuite& suite, std::size_t number);
inline constexpr std::string_view JUNIT_END = "</testsuites>\n";

}  // namespace vrx
