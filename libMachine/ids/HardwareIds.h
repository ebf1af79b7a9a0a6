#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vrx {

class RootFolder;

/// Names of PCI or USB identifiers, from the tables that distributions install (pci.ids, usb.ids).
///
/// Such a table has tens of thousands of lines and a machine needs a few dozen, so: say what is wanted, then read the
/// file once; only the wanted names are kept. A name that the table does not have is empty.
class HardwareIds {
public:
    void wantDevice(std::uint32_t vendor, std::uint32_t device);
    void wantSubsystem(std::uint32_t vendor, std::uint32_t device, std::uint32_t subVendor, std::uint32_t subDevice);

    /// A class code of three bytes: base class, subclass, programming interface.
    void wantClass(std::uint32_t classCode);

    /// Reads the table of that name ("pci.ids") where distributions have it, in the root folder or else on the machine
    /// that this program runs on, whose tables are kept as they were read first. False when there is none. Several
    /// threads may do so at once.
    bool load(const RootFolder& root, std::string_view fileName);

    /// Reads a table.
    void scan(std::string_view table);

    std::string_view vendor(std::uint32_t vendor) const;
    std::string_view device(std::uint32_t vendor, std::uint32_t device) const;
    std::string_view subsystem(std::uint32_t vendor, std::uint32_t device, std::uint32_t subVendor,
                               std::uint32_t subDevice) const;

    /// The name of the subclass, else that of the base class.
    std::string_view className(std::uint32_t classCode) const;

private:
    /// What a name belongs to: the kind of entry and the numbers of its line and of the lines above it, packed.
    struct Key {
        std::uint64_t numbers[2] = {};
        auto operator<=>(const Key&) const = default;
    };
    struct Margin;
    class Scanner;
    class Table;

    static const Table* installed(std::string_view fileName);
    void read(const Table& table);

    static std::optional<Margin> marginOf(std::string_view& line);
    static Key keyOf(const Margin& margin);
    static Key vendorKey(std::uint32_t vendor);
    static Key deviceKey(std::uint32_t vendor, std::uint32_t device);
    static Key subsystemKey(std::uint32_t vendor, std::uint32_t device, std::uint32_t subVendor,
                            std::uint32_t subDevice);
    static Key classKey(std::uint32_t base);
    static Key subclassKey(std::uint32_t base, std::uint32_t sub);
    std::string_view find(const Key& key) const;

    std::map<Key, std::string> m_names;
};

}  // namespace vrx
