#include "libFleet/results/ResultFile.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <utility>

#include "libFleet/results/ResultLine.h"

namespace vrx {

ResultFile::ResultFile(std::string path) : m_path(std::move(path)) {
    if (m_path == "-") {
        return;
    }
    errno = 0;
    m_file.open(m_path, std::ios::binary);
    if (!m_file.is_open() || m_file.peek() == std::ifstream::traits_type::eof()) {
        m_problem = m_file.is_open() && errno == 0 ? std::string() : m_path + ": " + std::strerror(errno);
    }
}

std::istream& ResultFile::stream() { return m_path == "-" ? std::cin : m_file; }

std::optional<FleetResult> ResultFile::next() {
    std::string line;
    do {
        if (!m_problem.empty() || !std::getline(stream(), line)) {
            return std::nullopt;
        }
        ++m_number;
        m_lineStart = m_lineEnd;
        m_lineEnd += line.size() + (stream().eof() ? 0 : 1);
    } while (line.empty());
    FleetResult result;
    std::string reason;
    if (readResultLine(line, result, reason)) {
        return result;
    }
    m_isCutOff = stream().eof();
    m_problem = fmt::format("{}:{}: {}", m_path == "-" ? "standard input" : m_path, m_number, reason);
    return std::nullopt;
}

bool EarlierResults::load(const std::string& path, std::string& problem) {
    ResultFile file(path);
    while (const std::optional<FleetResult> result = file.next()) {
        const DateTime time = DateTime::fromIso8601(String::UTF8Decode(result->time)).value_or(DateTime());
        m_places[result->file] = {file.lineStart(), file.lineEnd() - file.lineStart(), time.secondsSinceEpoch()};
        m_wholeSize = file.lineEnd();
    }
    if (!file.problem().empty() && !file.isCutOff()) {
        problem = file.problem();
        return false;
    }
    m_file.open(path, std::ios::binary);
    return true;
}

bool EarlierResults::holds(const std::string& name, std::int64_t changed) const {
    const auto found = m_places.find(name);
    return found != m_places.end() && found->second.time >= changed;
}

FleetResult EarlierResults::result(const std::string& name) {
    const Place place = m_places.at(name);
    std::string line(static_cast<std::size_t>(place.size), '\0');
    m_file.clear();
    m_file.seekg(static_cast<std::streamoff>(place.start));
    m_file.read(line.data(), static_cast<std::streamsize>(line.size()));
    FleetResult result;
    std::string reason;
    readResultLine(line, result, reason);
    return result;
}

}  // namespace vrx
