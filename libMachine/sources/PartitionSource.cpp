/// Partitions, each below its disk by its number in the partition table. Identity and label come from sysfs where the
/// kernel shows them, else from what udev has written down; neither needs root.
///
/// What is on a medium that can be taken out is not part of the machine. The file system in a partition is Internal: it
/// belongs to the software.

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

#include "libCommon/text/TextHash.h"
#include "libMachine/collect/CollectContext.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
const std::string DISKS = "/sys/block/";

/// The value of a line that starts with `key`, "=" included.
std::string lineValue(std::string_view text, std::string_view key) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (text.substr(at, key.size()) == key) {
            return std::string(text.substr(at + key.size(), end - at - key.size()));
        }
        at = end + 1;
    }
    return {};
}

/// What is known of one partition: its `uevent` in sysfs and its entry in the database of udev.
class PartitionReader {
public:
    PartitionReader(const RootFolder& root, std::string folder)
        : m_root(root),
          m_folder(std::move(folder)),
          m_event(root.text(m_folder + "/uevent")),
          m_database(root.text("/run/udev/data/b" + root.text(m_folder + "/dev"))) {}

    void read(DeviceRecord& volume) const {
        static constexpr std::uint64_t SECTOR = 512;
        volume.size(property::SIZE, m_root.number(m_folder + "/size").value_or(0) * SECTOR);
        volume.text(property::UUID, first("PARTUUID=", "E:ID_PART_ENTRY_UUID="));
        volume.text(property::LABEL, first("PARTNAME=", "E:ID_PART_ENTRY_NAME="));
        volume.text(property::PARTITION_TYPE, lineValue(m_database, "E:ID_PART_ENTRY_TYPE="));
        volume.text(property::FILE_SYSTEM, lineValue(m_database, "E:ID_FS_TYPE="), Category::Internal());
        volume.text(property::FILE_SYSTEM_UUID, lineValue(m_database, "E:ID_FS_UUID="), Category::Internal());
    }

private:
    std::string first(std::string_view inSysfs, std::string_view inDatabase) const {
        std::string value = lineValue(m_event, inSysfs);
        return value.empty() ? lineValue(m_database, inDatabase) : value;
    }

    const RootFolder& m_root;
    std::string m_folder;
    std::string m_event;
    std::string m_database;
};

void addPartitions(CollectContext& context, const std::string& disk, std::size_t place) {
    for (const std::string& name : context.root.list(DISKS + disk)) {
        const std::string folder = DISKS + disk + "/" + name;
        const auto number = name.starts_with(disk) ? context.root.number(folder + "/partition") : std::nullopt;
        if (!number) {
            continue;
        }
        DeviceRecord volume;
        volume.type = u"Volume";
        volume.name = fmt::format("Partition {}", *number);
        volume.hwLocator = fmt::format("{}/part:{}", context.recording.at(place).hwLocator, *number);
        volume.osLocator = "/dev/" + name;
        volume.parent = place;
        PartitionReader(context.root, folder).read(volume);
        context.recording.add(std::move(volume));
    }
}

}  // namespace

void collectPartitions(CollectContext& context) {
    std::unordered_map<std::string, std::size_t, TextHash> disks;
    for (std::size_t place = 0; place < context.recording.size(); ++place) {
        disks.emplace(context.recording.at(place).osLocator, place);
    }
    for (const std::string& disk : context.root.list(DISKS)) {
        const auto at = disks.find("/dev/" + disk);
        if (at != disks.end() && context.root.text(DISKS + disk + "/removable") != "1") {
            addPartitions(context, disk, at->second);
        }
    }
}

}  // namespace vrx
