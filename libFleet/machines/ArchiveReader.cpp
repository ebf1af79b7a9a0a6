/// A compressed file is an archive with one entry to the library that reads them all; which one it is shows at its
/// start. An archive comes from anybody, so what one entry may unpack to is bounded.

#include "libFleet/machines/ArchiveReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "libCommon/io/ArchiveLibrary.h"

namespace vrx {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t LARGEST_RECORDING = std::size_t{256} * 1024 * 1024;
constexpr std::size_t BLOCK = std::size_t{64} * 1024;
constexpr std::size_t TAR_MAGIC_AT = 257;

const ArchiveLibrary& library() { return ArchiveLibrary::instance(); }

struct Closer {
    void operator()(archive* open) const noexcept { library().archive_read_free(open); }
};
using OpenArchive = std::unique_ptr<archive, Closer>;

bool isArchiveStart(std::string_view start) {
    using namespace std::string_view_literals;
    static constexpr std::string_view MAGICS[] = {
        "\x1F\x8B"sv, "\xFD\x37zXZ\0"sv, "\x28\xB5\x2F\xFD"sv,   "BZh"sv,    "\x04\x22\x4D\x18"sv,
        "PK\3\4"sv,   "PK\5\6"sv,        "7z\xBC\xAF\x27\x1C"sv, "070701"sv, "070707"sv};
    return std::ranges::any_of(MAGICS, [start](std::string_view magic) { return start.starts_with(magic); }) ||
           (start.size() > TAR_MAGIC_AT && start.substr(TAR_MAGIC_AT).starts_with("ustar"));
}

std::string archiveStart(const std::string& path) {
    std::error_code failure;
    std::string start;
    if (fs::is_regular_file(path, failure)) {  // a pipe could not be read again
        start.resize(TAR_MAGIC_AT + 8);
        std::ifstream file(path, std::ios::binary);
        file.read(start.data(), static_cast<std::streamsize>(start.size()));
        start.resize(static_cast<std::size_t>(file.gcount()));
    }
    return start;
}

std::string errorOf(archive* open) {
    const char* const text = library().archive_error_string(open);
    return text == nullptr ? "it is damaged" : text;
}

bool isFile(archive_entry* entry) {
    return library().archive_entry_filetype(entry) == AE_IFREG || library().archive_entry_filetype(entry) == 0;
}

std::string pathOf(archive_entry* entry) {
    const char* path = library().archive_entry_pathname(entry);
    if (path == nullptr) {  // a name that the locale cannot show
        path = library().archive_entry_pathname_utf8(entry);
    }
    return path == nullptr ? std::string() : path;
}

/// "Systems/1/index.json", below whatever folder.
bool isResource(const std::string& name) {
    static constexpr const char* FOLDERS[] = {"redfish/", "Systems/", "Chassis/", "Managers/"};
    return name.ends_with("/index.json") || name == "index.json" ||
           (name.ends_with(".json") && std::ranges::any_of(FOLDERS, [&name](const char* folder) {
                return name.starts_with(folder) || name.find(std::string("/") + folder) != std::string::npos;
            }));
}

bool isHiddenName(const std::string& name) {
    const std::size_t slash = name.find_last_of('/');
    return name.substr(slash == std::string::npos ? 0 : slash + 1).starts_with('.');
}

/// Opens the file. With `isUnpackedOnly` an archive is one entry.
bool openFile(archive* reader, const std::string& path, bool isUnpackedOnly) {
    library().archive_read_support_filter_all(reader);
    library().archive_read_support_format_raw(reader);
    if (!isUnpackedOnly) {
        library().archive_read_support_format_tar(reader);
        library().archive_read_support_format_zip(reader);
        library().archive_read_support_format_7zip(reader);
        library().archive_read_support_format_cpio(reader);
    }
    return library().archive_read_open_filename(reader, path.c_str(), BLOCK) == ARCHIVE_OK;
}

/// The current entry; empty with a problem when it is damaged or too large.
std::string entryBytes(archive* reader, std::string& problem) {
    std::string bytes;
    std::array<char, BLOCK> block;
    la_ssize_t size = 0;
    while ((size = library().archive_read_data(reader, block.data(), block.size())) > 0) {
        bytes.append(block.data(), static_cast<std::size_t>(size));
        if (bytes.size() > LARGEST_RECORDING) {
            problem = fmt::format("larger than {} MB", LARGEST_RECORDING / 1024 / 1024);
            return {};
        }
    }
    if (size < 0) {
        problem = "damaged archive: " + errorOf(reader);
        return {};
    }
    return bytes;
}

/// Whether the first file of the archive is a resource of a Redfish service.
bool isMirrorArchive(const std::string& path) {
    const OpenArchive reader(library().archive_read_new());
    archive_entry* entry = nullptr;
    if (!openFile(reader.get(), path, false)) {
        return false;
    }
    while (library().archive_read_next_header(reader.get(), &entry) == ARCHIVE_OK) {
        if (isFile(entry) && !isHiddenName(pathOf(entry))) {
            return (library().archive_format(reader.get()) & ARCHIVE_FORMAT_BASE_MASK) == ARCHIVE_FORMAT_TAR &&
                   isResource(pathOf(entry));
        }
    }
    return false;
}

}  // namespace

ArchiveReader::Content ArchiveReader::contentOf(const std::string& path) {
    if (!isArchiveStart(archiveStart(path))) {
        return Content::NoArchive;
    }
    return library().problem().empty() && isMirrorArchive(path) ? Content::Mirror : Content::Recordings;
}

std::string ArchiveReader::unpacked(const std::string& path, std::string& problem) {
    const OpenArchive reader(library().archive_read_new());
    archive_entry* entry = nullptr;
    if (!openFile(reader.get(), path, true) || library().archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK) {
        problem = "damaged archive: " + errorOf(reader.get());
        return {};
    }
    return entryBytes(reader.get(), problem);
}

ArchiveReader::ArchiveReader(const std::string& path) : m_path(path) {
    if (!library().problem().empty()) {
        return;
    }
    m_archive = library().archive_read_new();
    std::error_code failure;
    m_size = fs::file_size(path, failure);
    m_isOpen = openFile(m_archive, path, false);
}

ArchiveReader::~ArchiveReader() {
    if (m_archive != nullptr) {
        library().archive_read_free(m_archive);
    }
}

std::optional<FleetRecording> ArchiveReader::next(const std::function<bool(const std::string& name)>& isKnown) {
    archive_entry* entry = nullptr;
    int state = m_isOpen ? ARCHIVE_OK : ARCHIVE_FATAL;
    while (!m_isAtEnd && m_isOpen && (state = library().archive_read_next_header(m_archive, &entry)) >= ARCHIVE_WARN) {
        if (state == ARCHIVE_EOF) {
            m_isAtEnd = true;
        } else if (isFile(entry) && library().archive_entry_hardlink(entry) == nullptr &&
                   !isHiddenName(pathOf(entry))) {
            FleetRecording recording{nameOf(entry), {}, {}, {}};
            m_hasHandedOut = true;
            recording.isKnown = isKnown(recording.name);
            if (!recording.isKnown) {
                recording.bytes = entryBytes(m_archive, recording.problem);
            }
            return recording;
        }
    }
    if (m_isAtEnd && m_hasHandedOut) {
        return std::nullopt;
    }
    const std::string problem = m_isAtEnd              ? "there is no recording in this archive"
                                : m_archive == nullptr ? "archives cannot be read: " + library().problem()
                                                       : "damaged archive: " + errorOf(m_archive);
    m_isAtEnd = true;
    m_hasHandedOut = true;
    return FleetRecording{m_path, {}, {}, problem};
}

std::string ArchiveReader::nameOf(archive_entry* entry) const {
    const bool isCompressedFile = library().archive_format(m_archive) == ARCHIVE_FORMAT_RAW;
    return isCompressedFile ? m_path : m_path + ":" + pathOf(entry);
}

double ArchiveReader::fractionRead() const {
    if (m_archive == nullptr) {
        return 1;
    }
    const auto read = static_cast<double>(library().archive_filter_bytes(m_archive, -1));
    return m_size == 0 ? 1 : std::clamp(read / static_cast<double>(m_size), 0.0, 1.0);
}

}  // namespace vrx
