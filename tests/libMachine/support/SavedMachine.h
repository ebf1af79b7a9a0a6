#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "libMachine/MachineCollector.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// A folder of files that stands for a machine; gone when the test ends.
class SavedMachine {
public:
    SavedMachine();

    /// With the files of tests/data/roots/NAME/tree.txt.
    explicit SavedMachine(const std::string& name);
    SavedMachine(const SavedMachine&) = delete;
    SavedMachine& operator=(const SavedMachine&) = delete;
    ~SavedMachine();

    std::string folder() const { return m_folder.string(); }
    void file(std::string_view path, std::string_view bytes);
    void link(std::string_view path, std::string_view target);

    /// Lines of the form of tree.txt.
    void files(std::string_view listing);

    /// Packages of cores with two threads, as the kernel and /proc/cpuinfo show them: L1 and L2 for each core, L3 for
    /// each package.
    void processors(unsigned packages, unsigned cores, std::string_view model);

    /// Records the folder; what `collectMachine` returned is in `isRecorded`.
    void collect();
    void collect(CollectOptions options);

    StateManager store;
    std::vector<CollectNote> notes;
    bool isRecorded = false;

    /// The device of that hardware locator; a test fails when there is none.
    const IDeviceImp& device(const String& hwLocator) const;

    /// "TYPE|name|OS locator", and the text of a property ("-" without one).
    std::string summary(const String& hwLocator) const;
    std::string text(const String& hwLocator, const String& key) const;

    bool hasCapability(const String& hwLocator, StringView capability) const;

    /// How many devices are of that type.
    std::size_t count(StringView type) const;

    /// Hardware locator of the device's parent.
    std::string parentOf(const String& hwLocator) const;

private:
    std::filesystem::path m_folder;
};

/// Puts SMBIOS structures together, byte by byte.
class SmbiosBuilder {
public:
    /// `fields`: offset, value and size of what is not 0; `length` includes the header.
    struct Field {
        std::size_t offset;
        std::uint64_t value;
        std::size_t size;
    };
    SmbiosBuilder& add(std::uint8_t type, std::uint16_t handle, std::size_t length, const std::vector<Field>& fields,
                       const std::vector<std::string>& texts);
    std::string bytes;
};

}  // namespace vrx
