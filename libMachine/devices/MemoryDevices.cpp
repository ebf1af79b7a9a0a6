/// A module's locator is the label of its slot. Boards that label several slots alike tell them apart by the bank, so
/// there the bank stands before the label, for all slots. A slot without any label goes by its number.
///
/// Persistent memory in a slot is storage: it is no MemoryModule and not in the installed size. The chip that holds the
/// firmware, which some tables list among the modules, is nothing that anybody can take out, and left out.
///
/// Makers are named though firmware copies their number from the module, and part numbers are read where it wrote their
/// characters as numbers, so that modules of one model are equal on machines of different firmware.

#include "libMachine/devices/MemoryDevices.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "libMachine/devices/MachineDevices.h"
#include "libMachine/ids/MemoryMakers.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

class MemoryRecorder {
public:
    MemoryRecorder(Recording& recording, std::size_t memory) : m_recording(recording), m_memory(memory) {}

    void record(const MemoryFacts& facts) {
        for (const MemoryArrayFacts& array : facts.arrays) {
            addArray(array);
        }
        m_needsBank = hasEqualLabels(facts.modules);
        for (const MemoryModuleFacts& module : facts.modules) {
            if (isSystemMemory(module)) {
                addModule(module);
            }
        }
        DeviceRecord& memory = m_recording.amend(m_memory);
        if (!memory.has(property::INSTALLED_SIZE)) {
            memory.size(property::INSTALLED_SIZE, m_installed);
        }
    }

private:
    void addArray(const MemoryArrayFacts& array) {
        if (!array.isSystemMemory) {
            m_otherArrays.insert(array.place.handle);
            return;
        }
        DeviceRecord device;
        device.type = u"MemoryArray";
        device.name = "Memory array";
        device.hwLocator = fmt::format("memory/array:{}", m_arrayCount++);
        device.osLocator = array.place.osLocator;
        device.parent = m_memory;
        device.size(property::MAXIMUM_SIZE, array.maximumSize);
        if (array.slots != 0) {
            device.number(property::SLOTS, array.slots);
        }
        addWord(device, property::ERROR_CORRECTION, array.errorCorrection);
        m_arrays.emplace(array.place.handle, m_recording.add(std::move(device)));
    }

    void addModule(const MemoryModuleFacts& module) {
        const std::string label = labelOf(module);
        DeviceRecord device;
        device.type = !module.isInstalled   ? StringView(u"Slot")
                      : module.isPersistent ? StringView(u"Storage")
                                            : StringView(u"MemoryModule");
        device.hwLocator = "dimm:" + (label.empty() ? std::to_string(module.place.instance) : label);
        device.osLocator = module.place.osLocator;
        const auto array = module.array ? m_arrays.find(*module.array) : m_arrays.end();
        device.parent = array == m_arrays.end() ? m_memory : array->second;
        device.text(property::SLOT, module.slot);
        device.text(property::BANK, module.bank);
        addWord(device, property::FORM_FACTOR, module.formFactor);
        if (module.isInstalled) {
            fill(device, module);
        } else {
            device.name = "Memory slot";
        }
        m_recording.add(std::move(device));
    }

    void fill(DeviceRecord& device, const MemoryModuleFacts& module) {
        m_installed += module.isPersistent ? 0 : module.size;
        addMaker(device, module);
        const std::string part = textInHex(cleanName(module.partNumber));
        device.text(property::PART_NUMBER, part.empty() ? module.partNumber : part);
        device.text(property::SERIAL_NUMBER, module.serialNumber);
        device.text(property::ASSET_TAG, module.assetTag);
        device.size(property::SIZE, module.size);
        addWord(device, property::MEMORY_TYPE, module.memoryType);
        addWord(device, property::BUFFERING, module.buffering);
        if (module.isPersistent) {
            addWord(device, property::TECHNOLOGY, module.technology.empty() ? "Non-Volatile" : module.technology);
        }
        device.measure(property::SPEED, module.speed, u"MT/s");
        device.measure(property::CONFIGURED_SPEED, module.configuredSpeed, u"MT/s");
        device.measure(property::VOLTAGE, module.voltage, u"V");
        device.measure(property::DATA_WIDTH, module.dataWidth, u"bit");
        device.measure(property::TOTAL_WIDTH, module.totalWidth, u"bit");
        if (module.ranks != 0) {
            device.number(property::RANKS, module.ranks);
        }
        const std::string_view otherwise = module.isPersistent ? "Persistent memory module" : "Memory module";
        device.name = nameFromModel(device, otherwise, property::PART_NUMBER);
    }

    static void addMaker(DeviceRecord& device, const MemoryModuleFacts& module) {
        const std::string text = cleanName(module.vendor);
        const std::string_view maker = memoryMaker(text);
        if (maker.empty()) {
            device.text(property::VENDOR, module.vendor);
        } else {
            device.text(property::VENDOR, maker);
            device.text(property::VENDOR_ID, text, PropertyCategoryImp::Internal());
        }
        if (!device.has(property::VENDOR)) {
            device.text(property::VENDOR, memoryMaker(module.makerId));
        }
    }

    bool isSystemMemory(const MemoryModuleFacts& module) const {
        static constexpr std::string_view CHIPS[] = {"Flash", "ROM", "EPROM", "EEPROM", "FEPROM"};
        const bool isChip = std::find(std::begin(CHIPS), std::end(CHIPS), module.memoryType) != std::end(CHIPS);
        return !isChip && (!module.array || !m_otherArrays.contains(*module.array));
    }

    bool hasEqualLabels(const std::vector<MemoryModuleFacts>& modules) const {
        std::set<std::string> labels;
        return std::any_of(modules.begin(), modules.end(), [&](const MemoryModuleFacts& module) {
            return isSystemMemory(module) && !labels.insert(cleanName(module.slot)).second;
        });
    }

    std::string labelOf(const MemoryModuleFacts& module) const {
        const std::string slot = cleanName(module.slot);
        const std::string bank = m_needsBank ? cleanName(module.bank) : std::string();
        return slot.empty() || bank.empty() ? bank + slot : bank + "/" + slot;
    }

    Recording& m_recording;
    std::size_t m_memory;
    std::size_t m_arrayCount = 0;
    std::map<unsigned, std::size_t> m_arrays;  // by handle: where it stands in the recording
    std::set<unsigned> m_otherArrays;          // handles of arrays that are no system memory
    std::uint64_t m_installed = 0;
    bool m_needsBank = false;
};

}  // namespace

std::size_t addMemory(Recording& recording, std::size_t parent, const MemoryFacts& facts) {
    DeviceRecord memory;
    memory.type = u"Memory";
    memory.name = "Memory";
    memory.hwLocator = "memory";
    memory.osLocator = "/proc/meminfo";
    memory.parent = parent;
    const std::size_t place = recording.add(std::move(memory));
    addMemoryModules(recording, place, facts);
    return place;
}

void addMemoryModules(Recording& recording, std::size_t memory, const MemoryFacts& facts) {
    MemoryRecorder(recording, memory).record(facts);
}

}  // namespace vrx
