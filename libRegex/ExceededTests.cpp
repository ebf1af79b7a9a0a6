#include "libRegex/ExceededTests.h"

namespace vrx {

namespace {

constexpr std::size_t GENERATION_TESTS = 32'768;

constinit thread_local std::size_t givenUpByThread = 0;

}  // namespace

ExceededTests::ExceededTests() noexcept : m_tests(GENERATION_TESTS), m_patterns(GENERATION_TESTS) {}

ExceededTests& ExceededTests::instance() {
    static auto& tests = *new ExceededTests;  // never destroyed: threads may end after main
    return tests;
}

std::size_t ExceededTests::countOfThread() noexcept { return givenUpByThread; }

bool ExceededTests::knowsPattern(std::size_t patternHash) {
    if (!m_knowsAny.load(std::memory_order_relaxed)) {
        return false;
    }
    const std::lock_guard lock(m_mutex);
    return m_patterns.find(patternHash) != nullptr;
}

bool ExceededTests::meets(std::size_t patternHash, std::size_t valueHash) {
    const std::lock_guard lock(m_mutex);
    const bool isKnown = m_tests.find({patternHash, valueHash}) != nullptr;
    if (isKnown) {
        ++givenUpByThread;
    }
    return isKnown;
}

bool ExceededTests::add(std::size_t patternHash, std::size_t valueHash) {
    const std::lock_guard lock(m_mutex);
    m_knowsAny.store(true, std::memory_order_relaxed);
    ++givenUpByThread;
    if (m_tests.find({patternHash, valueHash}) == nullptr) {
        m_tests.add({patternHash, valueHash}, {}, 1);
    }
    const bool isFirst = m_patterns.find(patternHash) == nullptr;
    if (isFirst) {
        m_patterns.add(patternHash, {}, 1);
    }
    return isFirst;
}

}  // namespace vrx
