#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>

#include "libRegex/TwoGenerationTable.h"

namespace vrx {

/// The tests (a pattern on a value) that were given up at a limit, for all threads, so that each pattern is logged
/// once. Patterns and values are known by their hashes; the memory is bounded, so what was met long ago may be
/// forgotten. Locked; only patterns that were given up before come here.
class ExceededTests {
public:
    static ExceededTests& instance();

    /// Whether some test of the pattern is known.
    bool knowsPattern(std::size_t patternHash);

    /// Whether this test is known; if it is, it counts as given up once more on this thread.
    bool meets(std::size_t patternHash, std::size_t valueHash);

    /// Keeps a test that was given up just now and counts it on this thread. True when it is the first one known of its
    /// pattern.
    bool add(std::size_t patternHash, std::size_t valueHash);

    /// Tests that the calling thread has given up since it started, known ones that were met again included.
    static std::size_t countOfThread() noexcept;

private:
    struct Test {
        std::size_t pattern;
        std::size_t value;

        friend bool operator==(const Test&, const Test&) noexcept = default;
    };
    struct TestHash {
        std::size_t operator()(const Test& test) const noexcept { return test.pattern * 31 + test.value; }
    };
    struct Nothing {};

    ExceededTests() noexcept;

    std::mutex m_mutex;
    TwoGenerationTable<Test, Nothing, TestHash> m_tests;
    TwoGenerationTable<std::size_t, Nothing, std::hash<std::size_t>> m_patterns;
    std::atomic<bool> m_knowsAny = false;
};

}  // namespace vrx
