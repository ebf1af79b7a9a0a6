#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <unordered_map>

#include "libFleet/FleetResult.h"

namespace vrx {

/// A file of results, read line by line.
///
///     ResultFile file("results.jsonl");
///     while (const std::optional<FleetResult> result = file.next()) {
///         summary.add(*result);
///     }
///     if (!file.problem().empty()) { say(file.problem()); }
class ResultFile {
public:
    /// "-" is standard input.
    explicit ResultFile(std::string path);

    /// The next result; none behind the last, and none where something is wrong.
    std::optional<FleetResult> next();

    /// What is wrong with the file, in one line with its place; empty for nothing.
    const std::string& problem() const noexcept { return m_problem; }

    /// Whether the problem is a last line without an end: who wrote it was interrupted.
    bool isCutOff() const noexcept { return m_isCutOff; }

    /// Where the line of the last result begins, and where the next one would.
    std::uint64_t lineStart() const noexcept { return m_lineStart; }
    std::uint64_t lineEnd() const noexcept { return m_lineEnd; }

private:
    std::istream& stream();

    std::string m_path;
    std::ifstream m_file;
    std::size_t m_number = 0;
    std::uint64_t m_lineStart = 0;
    std::uint64_t m_lineEnd = 0;
    std::string m_problem;
    bool m_isCutOff = false;
};

/// The results of a run that did not come to its end, so that another can go on. Only names and places are in memory.
class EarlierResults {
public:
    /// Reads the file; a last line that is cut off does not count. False when it is of no use; `problem` says why.
    bool load(const std::string& path, std::string& problem);

    /// Whether the recording of that name has a result that is no older than `changed`, the seconds of the file that it
    /// lies in.
    bool holds(const std::string& name, std::int64_t changed) const;

    /// The result. Requires: the file holds it.
    FleetResult result(const std::string& name);

    /// The length of the file without a line that is cut off.
    std::uint64_t wholeSize() const noexcept { return m_wholeSize; }

private:
    struct Place {
        std::uint64_t start = 0;
        std::uint64_t size = 0;
        std::int64_t time = 0;
    };

    std::ifstream m_file;
    std::unordered_map<std::string, Place> m_places;
    std::uint64_t m_wholeSize = 0;
};

}  // namespace vrx
