#include "libCommon/logging/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

#include "libCommon/error/Exception.h"
#include "libCommon/error/StructuredException.h"
#include "libCommon/io/FileLoader.h"
#include "libCommon/logging/LogFile.h"
#include "libCommon/text/NumberText.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace {

class Lines : public LogSink {
public:
    Lines() { Logger::addSink(*this); }
    ~Lines() override { Logger::removeSink(*this); }
    void writeLine(const std::string& loggerName, LogPriority priority, StringView message) override {
        texts.push_back(loggerName + " " + std::to_string(static_cast<int>(priority)) + " " + toUtf8(message));
    }
    std::vector<std::string> texts;
};

int lowestEnabled(const Logger& logger) {
    int priority = 1;
    while (priority < 5 && !logger.isEnabled(static_cast<LogPriority>(priority))) {
        ++priority;
    }
    return priority;
}

/// Outputs last as long as the process, so tests of them run in one of their own. It ends without further ado: a line
/// must be out once it is written, and a leak check would trip over the threads that a fork leaves behind.
void logEverywhere() {
    Logger::logToStandardError();
    Logger::logToStandardError();
    VRX_LOG(Logger::get("test.output"), LogPriority::Warning, u"wärn" << StringView(u"\0.", 2));
    VRX_LOG(Logger::get("test.output"), LogPriority::Info, u"hidden");
}

}  // namespace

TEST(LoggerTest, inheritsPrioritiesByName) {
    Logger& leaf = Logger::get("test.a.b");  // before its ancestors
    Logger& root = Logger::get("test");
    Logger& lookalike = Logger::get("testing");
    EXPECT_EQ(&Logger::get("test.a.b"), &leaf);
    EXPECT_EQ(lowestEnabled(leaf), 3);

    root.setPriority(LogPriority::Debug);
    EXPECT_EQ(lowestEnabled(leaf), 1);
    EXPECT_EQ(lowestEnabled(Logger::get("test.later")), 1);
    EXPECT_EQ(lowestEnabled(lookalike), 3);
    Logger::get("test.a").setPriority(LogPriority::Off);
    EXPECT_EQ(lowestEnabled(leaf), 5);
    Logger::get("test.a").inheritPriority();
    root.inheritPriority();
    EXPECT_EQ(lowestEnabled(leaf), 3);

    Logger::setRootPriority(LogPriority::Info);
    EXPECT_EQ(lowestEnabled(leaf), 2);
    Logger::setRootPriority(LogPriority::Warning);
}

TEST(LoggerTest, asksAllThreeGates) {
    Logger& parent = Logger::get("test.gates");
    Logger& child = Logger::get("test.gates.child");
    parent.setPriority(LogPriority::Debug);
    parent.setThreshold(LogPriority::Error);
    EXPECT_EQ(lowestEnabled(parent), 4);
    EXPECT_EQ(lowestEnabled(child), 1);
    Logger::setGlobalPriority(LogPriority::Info);
    EXPECT_EQ(lowestEnabled(parent), 4);
    EXPECT_EQ(lowestEnabled(child), 2);
    Logger::setGlobalPriority(LogPriority::Debug);
    parent.setThreshold(LogPriority::Debug);
    EXPECT_EQ(lowestEnabled(parent), 1);
    parent.inheritPriority();
}

TEST(LoggerTest, buildsLinesOnlyWhenTheyAreWritten) {
    Lines lines;
    Logger& logger = Logger::get("test.lines");
    int built = 0;
    VRX_LOG(logger, LogPriority::Info, u"never " << ++built);
    logger.write(LogPriority::Info, u"never");
    EXPECT_EQ(built, 0);
    EXPECT_TRUE(lines.texts.empty());

    const int line = __LINE__ + 1;
    VRX_LOG(logger, LogPriority::Error, u"built " << ++built);
    EXPECT_EQ(built, 1);
    EXPECT_THAT(lines.texts, testing::ElementsAre("test.lines 4 " + std::to_string(line) + " built 1"));
}

TEST(LoggerTest, lettersOfALine) {
    LogLine line(12);
    line << u"a" << String(u"b") << "c" << true << false << -1 << 2U << 3L << 4UL << u" " << 0.1 + 0.2 << u" "
         << 1234567.0 << u" " << reinterpret_cast<const void*>(0xBEEF);
    EXPECT_EQ(line.text(), u"12 abc10-1234 0.3 1.23457e+06 0xbeef");
}

TEST(LoggerTest, writesEachLineOnceToStandardError) {
    EXPECT_EXIT((logEverywhere(), _exit(0)), testing::ExitedWithCode(0),
                "^[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} WARN  test\\.output - "
                "[0-9]+ wärn\\\\u0000\\.\n$");
}

TEST(LoggerTest, appendsToFilesOfAnyName) {
    std::string folder = std::filesystem::temp_directory_path() / "vrx-log-XXXXXX";
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    const String path = String::UTF8Decode(folder + "/ ${HOME}\n=ä");
    const auto writeTwice = [&path] {
        const bool isOpen = Logger::logToFile(path);
        VRX_LOG(Logger::get("test"), LogPriority::Error, u"one");
        const bool isOpenStill = Logger::logToFile(path + u"2");
        VRX_LOG(Logger::get("test"), LogPriority::Error, u"two");
        const bool isWhole = logFileError().isEmpty() && Logger::logToFile(u"/dev/full");
        VRX_LOG(Logger::get("test"), LogPriority::Error, u"three");
        const bool isFull = logFileError() == u"No space left on device";
        _exit(isOpen && isOpenStill && isWhole && isFull && !Logger::logToFile(u"/missing/file") ? 0 : 1);
    };
    EXPECT_EXIT(writeTwice(), testing::ExitedWithCode(0), "^$");
    std::string first;
    std::string second;
    String error;
    EXPECT_TRUE(loadFile(path, first, error));
    EXPECT_TRUE(loadFile(path + u"2", second, error));
    EXPECT_THAT(first, testing::MatchesRegex(".* ERROR test - [0-9]+ one\n.* ERROR test - [0-9]+ two\n.* three\n"));
    EXPECT_THAT(second, testing::MatchesRegex("[^\n]* ERROR test - [0-9]+ two\n.* three\n"));
    std::filesystem::remove_all(folder);
}

TEST(AssertionTest, logsAndRaisesWhatOnlyMainMayCatch) {
    Lines lines;
    const String place = concat(u" at ", String::UTF8Decode(__FILE__), u":");
    int line = 0;
    try {
        line = __LINE__ + 1;
        VRX_ASSERT(line == 0);
        FAIL();
    } catch (const Exception&) {
        FAIL();
    } catch (const std::exception&) {
        FAIL();
    } catch (const StructuredException& exception) {
        EXPECT_EQ(exception.code(), 7U);
        EXPECT_EQ(exception.text(), concat(u"Assertion failed: line == 0", place, toText(line)));
        ASSERT_EQ(lines.texts.size(), 1U);
        EXPECT_THAT(lines.texts[0], testing::StartsWith("libCommon 4 "));
        EXPECT_THAT(lines.texts[0], testing::EndsWith(" " + exception.text().toUtf8()));
    }
}

}  // namespace vrx
