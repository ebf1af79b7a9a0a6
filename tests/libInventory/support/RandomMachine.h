#pragma once

#include <random>

#include "libInventory/Inventory.h"
#include "libSystemState/StateManager.h"

namespace vrx::test {

/// A machine made up from a seed, with what real machines report and worse.
///
/// Left out is what the engine cannot pass by its nature (see docs/generate.md): keys that the XML layer would encode,
/// types that are not known, a second value of one key, infinite numbers and NaN where a tolerance is given, and, among
/// devices that a script cannot tell apart, what lets an element match a device whose own element asks for less:
/// patterns that match other texts (a pipe, a backslash, overlapping ranges), and properties that the script names for
/// one of the devices and leaves out for another.
class RandomMachine {
public:
    enum class Devices {
        ToldApartByLocators,  ///< anything goes; some share their locators, and those are plain
        LookAlikes            ///< all are plain
    };

    RandomMachine(unsigned seed, Devices devices);

    StateManager store;

    /// Writes a filter for such machines; which rules, tolerances and selections depends on the seed.
    String filterXml();

private:
    enum class Locators { Unique, Shared, None };

    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }
    void addDevice(Locators locators, bool isPlain, unsigned copies);
    void addProperties(IDeviceImp& device, bool isPlain);
    Array<String> distinctKeys(bool isPlain);
    String selectionXml();
    String anyText();
    String keyText();
    String plainText();
    ValueImp anyValue();
    ValueImp plainValue(const String& key);
    double anyNumber();
    template <typename Measurement>
    ValueImp anyMeasurement();

    std::mt19937 m_random;
    Devices m_devices;
    unsigned m_count = 0;
};

}  // namespace vrx::test
