#include "cli/files/RecordingName.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <map>

namespace vrx::cli {

namespace {

constexpr std::string_view SUFFIX = ".xml";
constexpr std::string_view TIME_FORM = "00000000T000000Z";
constexpr std::size_t LONGEST_WORD = 100;

bool isDigit(char each) { return each >= '0' && each <= '9'; }

bool isTimeWord(std::string_view word) {
    return std::ranges::equal(word, TIME_FORM,
                              [](char each, char form) { return form == '0' ? isDigit(each) : each == form; });
}

/// Empty stands for 1, "-2" for 2; 0 for what is neither.
std::size_t numberOf(std::string_view text) {
    if (text.empty()) {
        return 1;
    }
    std::size_t number = 0;
    const char* const end = text.data() + text.size();
    const bool isRead = text[0] == '-' && std::from_chars(text.data() + 1, end, number).ptr == end;
    return isRead && number > 1 ? number : 0;
}

}  // namespace

std::string fileWord(const String& text) {
    std::string word = text.toUtf8().substr(0, LONGEST_WORD);
    std::ranges::replace_if(
        word, [](unsigned char each) { return std::isalnum(each) == 0 && each != '.' && each != '_'; }, '-');
    return word.starts_with('.') || word.starts_with('-') ? "x" + word : word;
}

std::string RecordingName::text() const {
    return machine + "_" + time + (number > 1 ? "-" + std::to_string(number) : "") + std::string(SUFFIX);
}

RecordingName recordingName(const std::string& machine, const DateTime& time) {
    std::string word = time.toIso8601().toUtf8();
    std::erase_if(word, [](char each) { return each == '-' || each == ':'; });
    return {machine, word};
}

RecordingName parseRecordingName(const std::string& fileName) {
    const std::size_t at = fileName.rfind('_');
    if (at == std::string::npos || at == 0 || !fileName.ends_with(SUFFIX)) {
        return {};
    }
    const std::string rest = fileName.substr(at + 1, fileName.size() - at - 1 - SUFFIX.size());
    const std::string time = rest.substr(0, TIME_FORM.size());
    const std::size_t number = isTimeWord(time) ? numberOf(std::string_view(rest).substr(TIME_FORM.size())) : 0;
    return number > 0 ? RecordingName{fileName.substr(0, at), time, number} : RecordingName();
}

std::vector<std::string> newestRecordings(const std::vector<std::string>& paths) {
    namespace fs = std::filesystem;
    const auto machineOf = [](const fs::path& path, const RecordingName& name) {
        return (path.parent_path() / name.machine).string();
    };
    std::map<std::string, RecordingName> newest;
    for (const fs::path path : paths) {
        const RecordingName name = parseRecordingName(path.filename().string());
        RecordingName& last = newest[machineOf(path, name)];
        last = std::max(last, name);
    }
    std::vector<std::string> kept;
    for (const std::string& path : paths) {
        const RecordingName name = parseRecordingName(fs::path(path).filename().string());
        if (name.machine.empty() || name.machine == NAMELESS || newest[machineOf(path, name)] == name) {
            kept.push_back(path);
        }
    }
    return kept;
}

}  // namespace vrx::cli
