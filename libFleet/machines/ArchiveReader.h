#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "libFleet/machines/FleetRecording.h"

struct archive;
struct archive_entry;

namespace vrx {

/// The recordings in an archive, or in a compressed file, in its order. Nothing is unpacked to files, and one recording
/// at a time is in memory.
class ArchiveReader {
public:
    /// What a file is, by how it begins.
    enum class Content : std::uint8_t {
        NoArchive,
        Recordings,
        Mirror  ///< an archive of the resources of one Redfish service
    };
    static Content contentOf(const std::string& path);

    /// The file without its compression; `problem` says why there is nothing.
    static std::string unpacked(const std::string& path, std::string& problem);

    explicit ArchiveReader(const std::string& path);
    ~ArchiveReader();
    ArchiveReader(const ArchiveReader&) = delete;
    ArchiveReader& operator=(const ArchiveReader&) = delete;

    /// The next one; none behind the last. Damage of the archive is a recording with a problem, and its last; so is
    /// that there is none. What `isKnown` names is not unpacked.
    std::optional<FleetRecording> next(const std::function<bool(const std::string& name)>& isKnown);

    const std::string& path() const noexcept { return m_path; }

    /// How much of the archive is behind, from 0 to 1.
    double fractionRead() const;

private:
    std::string nameOf(archive_entry* entry) const;

    std::string m_path;
    std::uintmax_t m_size = 0;
    archive* m_archive = nullptr;  ///< null when the library for archives is not installed
    bool m_isOpen = false;
    bool m_isAtEnd = false;
    bool m_hasHandedOut = false;
};

}  // namespace vrx
