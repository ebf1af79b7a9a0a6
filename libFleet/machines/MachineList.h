#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "libFleet/machines/FleetRecording.h"

namespace vrx {

class ArchiveReader;

/// The recordings of a fleet, one after the other: files, folders with all that lies below them, sorted by name, and
/// archives, which are read as streams. A folder or an archive with the resources of one Redfish service is one
/// recording; what is hidden is left out.
class MachineList {
public:
    /// Says of a recording, and of the file that it lies in, whether it is to be passed by.
    using IsKnown = std::function<bool(const std::string& name, const std::string& path)>;

    MachineList();
    ~MachineList();
    MachineList(MachineList&& other) noexcept;
    MachineList& operator=(MachineList&& other) noexcept;

    /// Adds the file, folder or archive of that path. Of a folder files are left out that `isLeftOut` names; one with
    /// nothing in it is a recording that cannot be read, as an empty archive is, so that nobody takes it for checked.
    void add(const std::string& path, const std::function<bool(const std::string& path)>& isLeftOut = {});

    /// Recordings that are known are handed out by name alone.
    void setKnown(IsKnown isKnown) { m_isKnown = std::move(isKnown); }

    /// The next one; none behind the last.
    std::optional<FleetRecording> next();

    FleetProgress progress() const;

private:
    struct Item {
        std::string path;
        std::string problem;
    };

    void addFolder(const std::string& path, unsigned depth, const std::function<bool(const std::string&)>& isLeftOut);
    std::optional<FleetRecording> nextOfArchive();
    std::optional<FleetRecording> open(const Item& item);
    FleetRecording named(const Item& item) const;

    std::vector<Item> m_items;
    std::size_t m_at = 0;
    std::unique_ptr<ArchiveReader> m_archive;
    IsKnown m_isKnown;
};

}  // namespace vrx
