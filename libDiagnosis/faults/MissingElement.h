#pragma once

#include <unordered_map>
#include <vector>

#include "libCommon/containers/HashFunctions.h"
#include "libDiagnosis/faults/AskedDevice.h"
#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

/// A `device` element that has no device, and the one that it shall have: what became of it, found step by step.
struct MissingElement {
    explicit MissingElement(const XmlElement& asking);

    const XmlElement* element;
    Inventory::DeviceSpec asked;
    CapabilityImp type;
    std::vector<AskedProperty> properties;
    std::vector<Inventory::DeviceSpec> alternatives;  ///< what may be there in its stead

    bool namesPlace() const noexcept { return !asked.hwLocator.isEmpty() || !asked.osLocator.isEmpty(); }
    bool asksForIdentity() const;

    /// What became of its device; null as long as nobody knows.
    const IDeviceImp* device = nullptr;
};

/// How the run fared with elements. Those that name no place and ask for the same share one outcome, because each of
/// them was tried with all devices of its type.
class Outcomes {
public:
    explicit Outcomes(const Inventory& inventory) : m_inventory(inventory) {}

    /// Valid until the next call.
    const DeviceOutcome& of(const MissingElement& missing);

private:
    const Inventory& m_inventory;
    std::unordered_map<String, DeviceOutcome, HashFunc<String>> m_shared;
    DeviceOutcome m_last;
};

/// Equal for elements that ask for the same device, wherever it stands.
String askedKey(const XmlElement& device);

/// Whether properties of that key tell one device from all others: serial numbers, addresses.
bool isIdentity(StringView key) noexcept;

}  // namespace vrx
