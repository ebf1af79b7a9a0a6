#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/text/String.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx::host {

/// A property as a source found it. The key is one of host/collect/PropertyNames.h.
struct PropertyRecord {
    StringView key;
    PropertyCategoryImp category;
    ValueImp value;
};

/// A device while the machine is being recorded: sources may still add to what others found. Texts are UTF-8.
///
/// The operations that set properties leave out what is empty, unknown or a vendor's placeholder.
struct DeviceRecord {
    StringView type;                       ///< a name of the capability tree
    std::vector<StringView> capabilities;  ///< what it can do beside its type
    std::string name;
    std::string hwLocator;
    std::string osLocator;
    std::string sysPath;                ///< its folder in sysfs with all links followed; empty when it has none
    std::optional<std::size_t> parent;  ///< place in the recording; without one `sysPath` decides (see Recording)
    std::vector<PropertyRecord> properties;

    using Category = PropertyCategoryImp;

    void text(StringView key, std::string_view raw, Category category = Category::SysInfo());
    void number(StringView key, std::optional<std::uint64_t> number, Category category = Category::SysInfo());
    void flag(StringView key, bool value, Category category = Category::SysInfo());

    /// `unit` is a symbol of the unit table. A number that is not above 0 stands for "unknown".
    void measure(StringView key, double number, StringView unit, Category category = Category::SysInfo());

    /// A number of bytes in the largest unit that leaves at least 1, to two decimals: 16 GB, 465.76 GB.
    void size(StringView key, std::uint64_t bytes, Category category = Category::SysInfo());

    /// A text that is already clean and known to mean something.
    void add(StringView key, String value, Category category = Category::SysInfo());

    /// Whether a property of that key was set.
    bool has(StringView key) const noexcept;
};

/// The cleaned text of a name; empty for a placeholder.
std::string cleanName(std::string_view raw);

}  // namespace vrx::host
