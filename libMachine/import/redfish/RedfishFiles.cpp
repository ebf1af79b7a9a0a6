/// A mirror comes from anybody, so its size is bounded: of one file, of all files, in their number and in their depth.
/// Logs, schemas and registries may be large and say nothing about hardware; they are not read.

#include "libMachine/import/redfish/RedfishFiles.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <vector>

#include "libCommon/io/ArchiveLibrary.h"

namespace vrx {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t LARGEST_RESOURCE = std::size_t{16} * 1024 * 1024;
constexpr std::size_t LARGEST_MIRROR = std::size_t{128} * 1024 * 1024;
constexpr std::size_t MOST_FILES = 100'000;
constexpr int DEEPEST_FOLDER = 64;

bool mayBeResource(std::string_view name) {
    static constexpr std::string_view SKIPPED[] = {"/LogServices/", "/Registries/", "/JsonSchemas/", "/$metadata"};
    const std::string_view file = name.substr(name.find_last_of('/') + 1);
    const bool isNamedSo = file.ends_with(".json") || file.find('.') == std::string_view::npos;
    return isNamedSo && !file.empty() && std::none_of(std::begin(SKIPPED), std::end(SKIPPED), [name](auto part) {
               return name.find(part) != std::string_view::npos;
           });
}

/// Counts what was read, and says when it is too much.
class MirrorSize {
public:
    explicit MirrorSize(DamageList& damage) : m_damage(damage) {}

    bool addFile() { return ++m_files <= MOST_FILES || refuse(fmt::format("more than {} files", MOST_FILES)); }

    bool addBytes(std::size_t count) {
        m_bytes += count;
        return m_bytes <= LARGEST_MIRROR || refuse(fmt::format("more than {} MB", LARGEST_MIRROR / 1024 / 1024));
    }

private:
    bool refuse(const std::string& what) {
        m_damage.refuse("a mirror of a Redfish service of " + what + " is not read");
        return false;
    }

    DamageList& m_damage;
    std::size_t m_files = 0;
    std::size_t m_bytes = 0;
};

/// The paths of files below a folder, relative to it.
class FolderWalk {
public:
    FolderWalk(const fs::path& folder, MirrorSize& size, DamageList& damage)
        : m_folder(folder), m_size(size), m_damage(damage) {}

    bool walk() {
        std::error_code failure;
        for (fs::recursive_directory_iterator at(m_folder, failure), end; !failure && at != end;
             at.increment(failure)) {
            if (!m_size.addFile()) {
                return false;
            }
            take(at);
        }
        std::ranges::sort(m_names);
        std::ranges::sort(m_leftOut);
        std::ranges::for_each(m_leftOut,
                              [this](const std::string& name) { m_damage.add(DamageKind::ResourceLeftOut, 0, name); });
        return true;
    }

    const std::vector<std::string>& names() const noexcept { return m_names; }

private:
    void take(fs::recursive_directory_iterator& at) {
        const std::string name = at->path().lexically_relative(m_folder).generic_string();
        std::error_code failure;
        const fs::file_status status = at->symlink_status(failure);
        const bool isFolder = fs::is_directory(status);
        if (at->path().filename().string().starts_with('.')) {
            at.disable_recursion_pending();
        } else if (isFolder && at.depth() >= DEEPEST_FOLDER) {
            at.disable_recursion_pending();
            m_leftOut.push_back(name);
        } else if (fs::is_regular_file(status) && mayBeResource(name)) {
            m_names.push_back(name);
        } else if (!isFolder && mayBeResource(name)) {
            m_leftOut.push_back(name);
        }
    }

    fs::path m_folder;
    MirrorSize& m_size;
    DamageList& m_damage;
    std::vector<std::string> m_names;
    std::vector<std::string> m_leftOut;
};

/// None when the file is too large or cannot be read.
std::optional<std::string> resourceBytes(const fs::path& path) {
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(path, failure);
    if (failure || size > LARGEST_RESOURCE) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (file.bad() || !file.is_open()) {
        return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

struct ArchiveCloser {
    void operator()(archive* open) const noexcept { ArchiveLibrary::instance().archive_read_free(open); }
};

/// The current entry; none when it is too large or damaged.
std::optional<std::string> entryBytes(const ArchiveLibrary& library, archive* open) {
    std::string bytes;
    const void* block = nullptr;
    std::size_t size = 0;
    la_int64_t offset = 0;
    int state = ARCHIVE_OK;
    while ((state = library.archive_read_data_block(open, &block, &size, &offset)) == ARCHIVE_OK) {
        if (bytes.size() + size > LARGEST_RESOURCE) {
            return std::nullopt;
        }
        bytes.append(static_cast<const char*>(block), size);
    }
    return state == ARCHIVE_EOF ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace

bool readRedfishFolder(const std::string& folder, const RedfishFileReader& reader, DamageList& damage) {
    MirrorSize size(damage);
    FolderWalk walk(folder, size, damage);
    if (!walk.walk()) {
        return false;
    }
    for (const std::string& name : walk.names()) {
        std::error_code failure;
        const std::uintmax_t bytes = fs::file_size(fs::path(folder) / name, failure);
        if (!failure && bytes <= LARGEST_RESOURCE && !size.addBytes(static_cast<std::size_t>(bytes))) {
            return false;
        }
    }
    for (const std::string& name : walk.names()) {
        if (const std::optional<std::string> bytes = resourceBytes(fs::path(folder) / name)) {
            reader(name, *bytes);
        } else {
            damage.add(DamageKind::ResourceLeftOut, 0, name);
        }
    }
    return true;
}

bool readRedfishArchive(std::string_view bytes, const RedfishFileReader& reader, DamageList& damage) {
    const ArchiveLibrary& library = ArchiveLibrary::instance();
    if (!library.problem().empty()) {
        damage.refuse("archives cannot be read: " + library.problem());
        return false;
    }
    MirrorSize size(damage);
    const std::unique_ptr<archive, ArchiveCloser> open(library.archive_read_new());
    library.archive_read_support_format_tar(open.get());
    int state = library.archive_read_open_memory(open.get(), bytes.data(), bytes.size());
    archive_entry* entry = nullptr;
    while (state == ARCHIVE_OK && (state = library.archive_read_next_header(open.get(), &entry)) == ARCHIVE_OK) {
        const char* const path = library.archive_entry_pathname(entry);
        const std::string name = path == nullptr ? std::string() : path;
        if (!size.addFile()) {
            return false;
        }
        if (library.archive_entry_filetype(entry) == AE_IFDIR || !mayBeResource(name)) {
            continue;
        }
        const bool isFile =
            library.archive_entry_filetype(entry) == AE_IFREG && library.archive_entry_hardlink(entry) == nullptr;
        const std::optional<std::string> content = isFile ? entryBytes(library, open.get()) : std::nullopt;
        if (!content) {
            damage.add(DamageKind::ResourceLeftOut, 0, name);
        } else if (!size.addBytes(content->size())) {
            return false;
        } else {
            reader(name, *content);
        }
    }
    if (state != ARCHIVE_EOF) {
        damage.add(DamageKind::ArchiveCutOff);
    }
    return true;
}

}  // namespace vrx
