#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/text/String.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/properties/PropertyNames.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

/// A property as a source found it. The key is one of PropertyNames.h.
struct PropertyRecord {
    StringView key;
    PropertyCategoryImp category;
    ValueImp value;
};

/// A device while the machine is being recorded: sources may still add to what others found. Texts are UTF-8.
///
/// The operations that set properties leave out what is empty, unknown or a vendor's placeholder. The recording tells
/// of placeholders in one property, `Placeholders`, but for those whose value another source knew. It is for people,
/// and Internal: which fields a vendor left as they were says nothing of the hardware.
struct DeviceRecord {
    StringView type;                       ///< a name of the capability tree
    std::vector<StringView> capabilities;  ///< what it can do beside its type
    std::string name;
    std::string hwLocator;
    std::string osLocator;
    std::string sysPath;                ///< its folder in sysfs with all links followed; empty when it has none
    std::optional<std::size_t> parent;  ///< place in the recording; without one `sysPath` decides (see Recording)
    std::vector<PropertyRecord> properties;
    std::vector<StringView> placeholders;  ///< keys whose text was a vendor's placeholder, in the order met
    std::uint64_t sources = 0;             ///< a bit for each source that said something of it (see Recording)

    using Category = PropertyCategoryImp;

    void text(StringView key, std::string_view raw, Category category = Category::SysInfo());
    void number(StringView key, std::optional<std::uint64_t> number, Category category = Category::SysInfo());
    void flag(StringView key, bool value, Category category = Category::SysInfo());

    /// `unit` is a symbol of the unit table. A number that is not above 0 stands for "unknown".
    void measure(StringView key, double number, StringView unit, Category category = Category::SysInfo());

    /// What a sensor reads at the moment, Volatile; any number may be one.
    void reading(StringView key, double number, StringView unit);

    /// A number of bytes in the largest unit that leaves at least 1, to the byte: 16 GB, 4.0009765625 GB.
    void size(StringView key, std::uint64_t bytes, Category category = Category::SysInfo());

    /// A text that is already clean and known to mean something.
    void add(StringView key, String value, Category category = Category::SysInfo());

    /// Whether a property of that key was set.
    bool has(StringView key) const noexcept;

    /// Says that the device is of that type too: it becomes the device's type when it says more than the one that it
    /// has (a UsbDevice that is a Camera, Multimedia that is an AudioDevice), else a capability.
    void isAlso(StringView other);
};

/// The cleaned text of a name; empty for a placeholder.
std::string cleanName(std::string_view raw);

/// "Vendor Model" from a device's properties, the model alone, or the given text where the model is not known.
/// `modelKey` is the property that tells the model.
std::string nameFromModel(const DeviceRecord& device, std::string_view otherwise,
                          StringView modelKey = property::MODEL);

}  // namespace vrx
