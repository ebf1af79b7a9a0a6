#pragma once

#include <unordered_map>
#include <vector>

#include "libDiagnosis/WantedDevices.h"
#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"

namespace vrx {

/// A `device` element that has no device, and the one that it shall have: what became of it, found step by step.
struct MissingElement {
    const XmlElement* element;
    const WantedDevice* asks;                           ///< what it asks for
    std::vector<Inventory::DeviceSpec> alternatives{};  ///< what may be there in its stead

    /// What became of its device; null as long as nobody knows.
    const IDeviceImp* device = nullptr;

    const Inventory::DeviceSpec& asked() const noexcept { return asks->spec; }
    const CapabilityImp& type() const noexcept { return asks->type; }
    bool namesPlace() const noexcept { return !asked().hwLocator.isEmpty() || !asked().osLocator.isEmpty(); }
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
    std::unordered_map<std::size_t, DeviceOutcome> m_shared;  ///< by sort
    DeviceOutcome m_last;
};

}  // namespace vrx
