#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/Inventory.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Where an element stands in its script, 1-based.
struct ElementPlace {
    std::uint64_t row = 0;
    std::uint64_t column = 0;

    bool operator==(const ElementPlace&) const = default;
};

ElementPlace placeIn(const XmlElement& element) noexcept;

/// Something that an element asks for and a device has not.
///
///     if (difference.what == Difference::What::Property && !difference.found) {
///         show(difference.key, "is missing");
///     }
struct Difference {
    enum class What : std::uint8_t { Property, Name, OsLocator, Type };

    What what = What::Property;
    ElementPlace place = {};            ///< of the element that asks for it
    String key = {};                    ///< of the property; else empty
    std::vector<String> expected = {};  ///< patterns; none when any value will do. Locators and types are no patterns
    std::optional<String> found = std::nullopt;  ///< none when the device has no such property
    bool isAlternative = false;                  ///< either this or the one before would do
    bool isForbidden = false;                    ///< what is `expected` is what must not be
};

/// A device of the machine and what it has not of what an element asks for; the latter is empty where only the caller
/// knows why the two do not come together.
struct NearDevice {
    Inventory::DeviceSpec device;
    std::vector<Difference> differences;
};

/// The texts that tell a device from others.
Inventory::DeviceSpec specOf(const IDeviceImp& device);

}  // namespace vrx
