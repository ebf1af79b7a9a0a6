#include "libFleet/machines/MachineList.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include "libFleet/machines/ArchiveReader.h"

namespace vrx {

namespace {

namespace fs = std::filesystem;

constexpr unsigned DEEPEST_FOLDER = 64;

bool isHidden(const fs::path& path) { return path.filename().string().starts_with('.'); }

/// Whether the folder holds the resources of a Redfish service: a service root, or what lies beside one.
bool isMirror(const fs::path& folder) {
    static constexpr const char* SIGNS[] = {"index.json", "redfish", "Systems", "Chassis", "Managers"};
    std::error_code failure;
    return std::ranges::any_of(SIGNS, [&](const char* sign) { return fs::exists(folder / sign, failure); });
}

}  // namespace

MachineList::MachineList() = default;
MachineList::~MachineList() = default;
MachineList::MachineList(MachineList&& other) noexcept = default;
MachineList& MachineList::operator=(MachineList&& other) noexcept = default;

void MachineList::add(const std::string& path, const std::function<bool(const std::string&)>& isLeftOut) {
    std::error_code failure;
    if (fs::is_directory(path, failure) && !isMirror(path)) {
        const std::size_t before = m_items.size();
        addFolder(path, 0, isLeftOut);
        if (m_items.size() == before) {
            m_items.push_back({path, "there is no recording in this folder"});
        }
    } else {
        m_items.push_back({path, {}});
    }
}

// Links to files are followed, links to folders are not: they may lead in circles.
void MachineList::addFolder(const std::string& path, unsigned depth,
                            const std::function<bool(const std::string&)>& isLeftOut) {
    std::error_code failure;
    std::vector<fs::path> entries;
    for (fs::directory_iterator at(path, failure), end; !failure && at != end; at.increment(failure)) {
        entries.push_back(at->path());
    }
    if (failure || depth > DEEPEST_FOLDER) {
        m_items.push_back({path, failure ? failure.message() : "folders lie too deep in one another"});
        return;
    }
    std::ranges::sort(entries);
    for (const fs::path& entry : entries) {
        const std::string name = entry.string();
        if (isHidden(entry)) {
            continue;
        }
        if (fs::is_directory(fs::symlink_status(entry, failure))) {
            isMirror(entry) ? m_items.push_back({name, {}}) : addFolder(name, depth + 1, isLeftOut);
        } else if (!fs::is_directory(entry, failure) && !(isLeftOut && isLeftOut(name))) {
            m_items.push_back({name, {}});
        }
    }
}

std::optional<FleetRecording> MachineList::next() {
    while (true) {
        if (std::optional<FleetRecording> inside = nextOfArchive()) {
            return inside;
        }
        if (m_at == m_items.size()) {
            return std::nullopt;
        }
        if (std::optional<FleetRecording> opened = open(m_items[m_at++])) {
            return opened;
        }
    }
}

std::optional<FleetRecording> MachineList::nextOfArchive() {
    if (!m_archive) {
        return std::nullopt;
    }
    std::optional<FleetRecording> inside =
        m_archive->next([this](const std::string& name) { return m_isKnown && m_isKnown(name, m_archive->path()); });
    if (!inside) {
        m_archive.reset();
    }
    return inside;
}

/// The recording; none where an archive was opened.
std::optional<FleetRecording> MachineList::open(const Item& item) {
    if (!item.problem.empty()) {
        return FleetRecording{item.path, {}, {}, item.problem};
    }
    switch (ArchiveReader::contentOf(item.path)) {
        case ArchiveReader::Content::Recordings: m_archive = std::make_unique<ArchiveReader>(item.path); break;
        case ArchiveReader::Content::Mirror: {
            FleetRecording mirror = named(item);
            if (!mirror.isKnown) {
                mirror.path.clear();
                mirror.bytes = ArchiveReader::unpacked(item.path, mirror.problem);
            }
            return mirror;
        }
        case ArchiveReader::Content::NoArchive: return named(item);
    }
    return std::nullopt;
}

FleetRecording MachineList::named(const Item& item) const {
    FleetRecording recording{item.path, item.path, {}, {}};
    recording.isKnown = m_isKnown && m_isKnown(item.path, item.path);
    return recording;
}

FleetProgress MachineList::progress() const {
    const double inArchive = m_archive ? 1 - m_archive->fractionRead() : 0;
    return {static_cast<double>(m_at) - inArchive, m_items.size()};
}

}  // namespace vrx
