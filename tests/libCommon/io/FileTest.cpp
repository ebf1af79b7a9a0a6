#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "libCommon/io/FileLoader.h"
#include "libCommon/text/NumberText.h"
#include "tests/libCommon/PrintText.h"

namespace vrx {

namespace fs = std::filesystem;

namespace {

/// A folder of its own for each test, with the two operations under test on paths in it.
class FileTest : public testing::Test {
protected:
    FileTest() {
        std::string name = fs::temp_directory_path() / "vrx-file-XXXXXX";
        m_folder = mkdtemp(name.data());
    }
    ~FileTest() override { fs::remove_all(m_folder); }

    String path(const std::string& name) const { return String::UTF8Decode((m_folder / name).native()); }

    void put(const std::string& name, const std::string& bytes) const { std::ofstream(m_folder / name) << bytes; }

    /// The content, or the error in angle brackets.
    std::string get(const String& file) const {
        std::string bytes = "left over";
        String error;
        if (loadFile(file, bytes, error)) {
            EXPECT_EQ(error, u"");
            return bytes;
        }
        EXPECT_EQ(bytes, "");
        return "<" + error.toUtf8() + ">";
    }
    std::string get(const std::string& name) const { return get(path(name)); }

    /// Empty on success, else the error.
    static std::string replace(const String& file, std::string_view bytes) {
        String error = u"left over";
        const bool isReplaced = replaceFile(file, bytes, error);
        EXPECT_EQ(isReplaced, error.isEmpty());
        return error.toUtf8();
    }
    std::string replace(const std::string& name, std::string_view bytes) const { return replace(path(name), bytes); }

    std::ptrdiff_t entries() const { return std::distance(fs::directory_iterator(m_folder), {}); }

    mode_t mode(const std::string& name) const {
        struct stat status {};
        EXPECT_EQ(stat((m_folder / name).c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    fs::path m_folder;
};

}  // namespace

TEST_F(FileTest, loadsFilesOfEverySize) {
    for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 300000U}) {
        std::string bytes(size, 'x');
        for (std::size_t at = 0; at < size; at += 7) {
            bytes[at] = static_cast<char>(at);
        }
        put("größe", bytes);
        EXPECT_EQ(get("größe"), bytes);
    }
}

TEST_F(FileTest, loadsWhatTellsNoTrueSize) {
    EXPECT_TRUE(get(u"/proc/self/status").starts_with("Name:"));

    const std::string bytes(200000, 'p');
    ASSERT_EQ(mkfifo((m_folder / "pipe").c_str(), 0600), 0);
    std::thread writer([&] { put("pipe", bytes); });
    EXPECT_EQ(get("pipe"), bytes);
    writer.join();
}

TEST_F(FileTest, loadsAnOpenDescriptorAndLeavesItOpen) {
    put("input", "what it holds");
    const int input = open((m_folder / "input").c_str(), O_RDONLY);
    std::string bytes;
    String error = u"left over";
    EXPECT_TRUE(loadDescriptor(input, bytes, error));
    EXPECT_EQ(bytes, "what it holds");
    EXPECT_EQ(error, u"");
    EXPECT_TRUE(loadDescriptor(input, bytes, error));
    EXPECT_EQ(bytes, "");  // at its end
    close(input);
    EXPECT_FALSE(loadDescriptor(input, bytes, error));
}

TEST_F(FileTest, aHyphenIsAFileOfThatName) {
    const fs::path before = fs::current_path();
    fs::current_path(m_folder);
    put("-", "in a file");
    EXPECT_EQ(get(u"-"), "in a file");
    fs::current_path(before);
}

TEST_F(FileTest, saysWhyItCannotLoad) {
    EXPECT_EQ(get("missing"), "<No such file or directory>");
    EXPECT_EQ(get(u""), "<No such file or directory>");
    EXPECT_EQ(get(""), "<Is a directory>");
    EXPECT_EQ(get(u"/dev/zero"), "<Is a device>");
    put("a", "");
    EXPECT_EQ(get(path("a") + StringView(u"\0b", 2)), "<Invalid argument>");
    put("large", "");
    fs::resize_file(m_folder / "large", MAXIMUM_FILE_SIZE + 1);
    EXPECT_EQ(get("large"), "<file is larger than 1 GiB>");
}

TEST_F(FileTest, replacesAndCreates) {
    EXPECT_EQ(replace("new", "one"), "");
    EXPECT_EQ(get("new"), "one");
    EXPECT_EQ(entries(), 1);
    put("ordinary", "");
    EXPECT_EQ(mode("new"), mode("ordinary"));
}

TEST_F(FileTest, keepsPermissionsAndLinks) {
    put("target", "old");
    chmod((m_folder / "target").c_str(), 0640);
    fs::create_symlink("target", m_folder / "second");
    fs::create_symlink(m_folder / "second", m_folder / "first");
    EXPECT_EQ(replace("first", "new"), "");
    EXPECT_TRUE(fs::is_symlink(m_folder / "first"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "second"));
    EXPECT_EQ(get("target"), "new");
    EXPECT_EQ(mode("target"), 0640U);

    fs::create_symlink("not there yet", m_folder / "dangling");
    EXPECT_EQ(replace("dangling", "born"), "");
    EXPECT_EQ(get("not there yet"), "born");
    fs::create_symlink("circle", m_folder / "circle");
    EXPECT_EQ(replace("circle", "x"), "Too many levels of symbolic links");
}

TEST_F(FileTest, writesOnWhatIsOpenAndNeverReplacesIt) {
    put("file", "");
    std::ofstream output(m_folder / "file");
    output << "before " << std::flush;
    const int own = open((m_folder / "file").c_str(), O_WRONLY | O_APPEND);
    fs::create_symlink("/dev/fd/" + std::to_string(own), m_folder / "link");
    EXPECT_EQ(ownDescriptor(path("link")), own);
    EXPECT_EQ(replace("link", "own "), "");
    EXPECT_EQ(replace(u"/proc/thread-self/fd/" + toText(own), "other "), "");
    EXPECT_EQ(write(own, "after", 5), 5);
    EXPECT_EQ(get("file"), "before own other after");
    close(own);
    EXPECT_EQ(ownDescriptor(path("file")), std::nullopt);
    EXPECT_EQ(entries(), 2);
}

TEST_F(FileTest, leavesTheOldFileWhenTheDiskIsFull) {
    put("file", "old");
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{4096, limit.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string error = replace("file", std::string(10000, 'x'));
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(error, "File too large");
    EXPECT_EQ(get("file"), "old");
    EXPECT_EQ(entries(), 1);
}

TEST_F(FileTest, saysWhyItCannotReplace) {
    EXPECT_EQ(replace(u"/dev/full", "x"), "No space left on device");
    EXPECT_EQ(replace(u"/dev/null", "x"), "");
    EXPECT_EQ(replace("missing/file", "x"), "No such file or directory");
    EXPECT_EQ(replace("", "x"), "Is a directory");
    EXPECT_EQ(replace(u"/proc/vrx-test", "x"), "No such file or directory");
    EXPECT_EQ(replace(path("a") + StringView(u"\0b", 2), "x"), "Invalid argument");
    EXPECT_EQ(entries(), 0);
}

TEST_F(FileTest, respectsWriteProtection) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may write everywhere";
    }
    put("file", "old");
    fs::permissions(m_folder / "file", fs::perms::owner_read);
    EXPECT_EQ(replace("file", "new"), "Permission denied");
    fs::permissions(m_folder, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(replace("other", "new"), "Permission denied");
    fs::permissions(m_folder, fs::perms::owner_all);
    EXPECT_EQ(get("file"), "old");
    EXPECT_EQ(entries(), 1);
}

}  // namespace vrx
