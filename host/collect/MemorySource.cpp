/// Memory: one device for all of it, whose size is what the kernel was given (the blocks that it can take on and off
/// line, so that the size does not vary with what a kernel keeps for itself), and below it, when the SMBIOS table can
/// be read, the arrays of slots with their modules. An empty slot is a Slot, not a module.
///
/// A module's locator is the label of its slot. Boards that label several slots alike tell them apart by the bank, so
/// there the bank stands before the label, for all slots.

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "host/collect/CleanText.h"
#include "host/collect/CollectContext.h"
#include "host/collect/DmiFields.h"
#include "host/collect/SmbiosNames.h"

namespace vrx::host {

namespace {

using Category = PropertyCategoryImp;
constexpr std::uint64_t KIB = 1024;
constexpr std::uint64_t MIB = KIB * 1024;

/// Offsets in a memory device structure (type 17).
enum Module : std::size_t {
    ARRAY_HANDLE = 0x04,
    TOTAL_WIDTH = 0x08,
    DATA_WIDTH = 0x0A,
    SIZE = 0x0C,
    FORM_FACTOR = 0x0E,
    DEVICE_LOCATOR = 0x10,
    BANK_LOCATOR = 0x11,
    MEMORY_TYPE = 0x12,
    SPEED = 0x15,
    MANUFACTURER = 0x17,
    SERIAL_NUMBER = 0x18,
    ASSET_TAG = 0x19,
    PART_NUMBER = 0x1A,
    ATTRIBUTES = 0x1B,
    EXTENDED_SIZE = 0x1C,
    CONFIGURED_SPEED = 0x20,
    CONFIGURED_VOLTAGE = 0x26,
    EXTENDED_SPEED = 0x54,
    EXTENDED_CONFIGURED_SPEED = 0x58
};

/// Bytes of a module; 0 when it says that it does not know.
std::uint64_t moduleSize(const SmbiosStructure& module) {
    static constexpr unsigned UNKNOWN = 0xFFFF;
    static constexpr unsigned EXTENDED = 0x7FFF;
    static constexpr unsigned IN_KILOBYTES = 0x8000;
    const unsigned size = module.word(SIZE);
    if (size == UNKNOWN) {
        return 0;
    }
    if (size == EXTENDED) {
        return (module.dword(EXTENDED_SIZE) & 0x7FFFFFFF) * MIB;
    }
    return (size & IN_KILOBYTES) != 0 ? (size & ~IN_KILOBYTES) * KIB : size * MIB;
}

/// A field of 16 bits of which 0 and 0xFFFF stand for "not known"; 0xFFFF may refer to a wider field.
std::uint32_t knownWord(const SmbiosStructure& module, std::size_t offset, std::size_t wider = 0) {
    static constexpr std::uint32_t UNKNOWN = 0xFFFF;
    const std::uint32_t number = module.word(offset);
    return number != UNKNOWN ? number : wider == 0 ? 0 : module.dword(wider) & 0x7FFFFFFF;
}

/// The memory that the kernel was given, in bytes; 0 where it does not say.
std::uint64_t memoryInBlocks(const RootFolder& root) {
    static const std::string FOLDER = "/sys/devices/system/memory";
    const std::uint64_t size = parseHex(root.text(FOLDER + "/block_size_bytes")).value_or(0);
    const std::vector<std::string> names = root.list(FOLDER);
    return size * static_cast<std::uint64_t>(std::count_if(names.begin(), names.end(), [](std::string_view name) {
               return name.starts_with("memory") && parseNumber(name.substr(6));
           }));
}

/// "MemTotal:       24682416 kB" as bytes; 0 when there is no such line.
std::uint64_t usableMemory(const RootFolder& root) {
    static constexpr std::string_view LABEL = "MemTotal:";
    const std::string text = root.text("/proc/meminfo");
    const std::size_t at = text.find(LABEL);
    const std::size_t digits = at == std::string::npos ? at : text.find_first_not_of(' ', at + LABEL.size());
    if (digits == std::string::npos) {
        return 0;
    }
    const std::size_t end = std::min(text.find(' ', digits), text.size());
    return parseNumber(std::string_view(text).substr(digits, end - digits)).value_or(0) * KIB;
}

/// Records the arrays and modules of an SMBIOS table below the memory device.
class ModuleRecorder {
public:
    ModuleRecorder(CollectContext& context, std::size_t memory) : m_context(context), m_memory(memory) {}

    void record() {
        for (const SmbiosStructure* const array : m_context.smbios.all(SmbiosTable::MEMORY_ARRAY)) {
            addArray(*array);
        }
        std::vector<const SmbiosStructure*> modules = m_context.smbios.all(SmbiosTable::MEMORY_DEVICE);
        std::erase_if(modules, [this](const SmbiosStructure* module) {
            return m_otherArrays.count(module->word(ARRAY_HANDLE)) != 0;
        });
        m_needsBank = hasEqualLabels(modules);
        for (const SmbiosStructure* const module : modules) {
            addModule(*module);
        }
        m_context.recording.at(m_memory).size(property::INSTALLED_SIZE, m_installed);
    }

private:
    void addArray(const SmbiosStructure& array) {
        static constexpr unsigned SYSTEM_MEMORY = 3;
        static constexpr std::uint32_t EXTENDED = 0x80000000;
        if (array.byte(0x05) != SYSTEM_MEMORY) {
            m_otherArrays.insert(array.handle());
            return;
        }
        DeviceRecord device;
        device.type = u"MemoryArray";
        device.name = "Memory array";
        device.hwLocator = fmt::format("memory/array:{}", m_arrays.size());
        device.osLocator = osLocatorOf(array);
        device.parent = m_memory;
        const std::uint32_t kilobytes = array.dword(0x07);
        device.size(property::MAXIMUM_SIZE, kilobytes == EXTENDED ? array.qword(0x0F) : kilobytes * KIB);
        device.number(property::SLOTS, array.word(0x0D));
        addName(device, property::ERROR_CORRECTION, errorCorrectionName(array.byte(0x06)));
        m_arrays[array.handle()] = m_context.recording.add(std::move(device));
    }

    void addModule(const SmbiosStructure& module) {
        const bool isEmpty = module.word(SIZE) == 0;
        const String label = labelOf(module);
        DeviceRecord device;
        device.type = isEmpty ? StringView(u"Slot") : StringView(u"MemoryModule");
        device.hwLocator = "dimm:" + (label.isEmpty() ? std::to_string(module.instance()) : label.toUtf8());
        device.osLocator = osLocatorOf(module);
        const auto array = m_arrays.find(module.word(ARRAY_HANDLE));
        device.parent = array == m_arrays.end() ? m_memory : array->second;
        device.text(property::SLOT, module.text(DEVICE_LOCATOR));
        device.text(property::BANK, module.text(BANK_LOCATOR));
        addName(device, property::FORM_FACTOR, memoryFormFactorName(module.byte(FORM_FACTOR)));
        if (isEmpty) {
            device.name = "Memory slot";
        } else {
            fill(device, module);
        }
        m_context.recording.add(std::move(device));
    }

    void fill(DeviceRecord& device, const SmbiosStructure& module) {
        static constexpr unsigned RANK_BITS = 0x0F;
        static constexpr double MILLIVOLTS = 1000;
        m_installed += moduleSize(module);
        device.text(property::VENDOR, module.text(MANUFACTURER));
        device.text(property::PART_NUMBER, module.text(PART_NUMBER));
        device.text(property::SERIAL_NUMBER, module.text(SERIAL_NUMBER));
        device.text(property::ASSET_TAG, module.text(ASSET_TAG));
        device.size(property::SIZE, moduleSize(module));
        addName(device, property::MEMORY_TYPE, memoryTypeName(module.byte(MEMORY_TYPE)));
        device.measure(property::SPEED, knownWord(module, SPEED, EXTENDED_SPEED), u"MT/s");
        device.measure(property::CONFIGURED_SPEED, knownWord(module, CONFIGURED_SPEED, EXTENDED_CONFIGURED_SPEED),
                       u"MT/s");
        device.measure(property::VOLTAGE, knownWord(module, CONFIGURED_VOLTAGE) / MILLIVOLTS, u"V");
        device.measure(property::DATA_WIDTH, knownWord(module, DATA_WIDTH), u"bit");
        device.measure(property::TOTAL_WIDTH, knownWord(module, TOTAL_WIDTH), u"bit");
        if (const unsigned ranks = module.byte(ATTRIBUTES) & RANK_BITS; ranks != 0) {
            device.number(property::RANKS, ranks);
        }
        device.name = nameFromModel(device, "Memory module", property::PART_NUMBER);
    }

    /// A name of a table is told as it is: "None" of an error correction is no placeholder.
    static void addName(DeviceRecord& device, StringView key, std::string_view name) {
        if (!name.empty()) {
            device.add(key, String::UTF8Decode(name));
        }
    }

    /// What dmi-sysfs calls a structure.
    static std::string osLocatorOf(const SmbiosStructure& structure) {
        return fmt::format("/sys/firmware/dmi/entries/{}-{}", structure.type(), structure.instance());
    }

    static bool hasEqualLabels(const std::vector<const SmbiosStructure*>& modules) {
        std::set<String> labels;
        return std::any_of(modules.begin(), modules.end(), [&labels](const SmbiosStructure* module) {
            return !labels.insert(cleanText(module->text(DEVICE_LOCATOR))).second;
        });
    }

    String labelOf(const SmbiosStructure& module) const {
        const String slot = knownText(module, DEVICE_LOCATOR);
        const String bank = m_needsBank ? knownText(module, BANK_LOCATOR) : String();
        return slot.isEmpty() || bank.isEmpty() ? concat(bank, slot) : concat(bank, u"/", slot);
    }

    static String knownText(const SmbiosStructure& module, std::size_t offset) {
        String text = cleanText(module.text(offset));
        return isPlaceholder(text) ? String() : text;
    }

    CollectContext& m_context;
    std::size_t m_memory;
    std::map<unsigned, std::size_t> m_arrays;  // by handle: where it stands in the recording
    std::set<unsigned> m_otherArrays;          // handles of arrays that are no system memory
    std::uint64_t m_installed = 0;
    bool m_needsBank = false;
};

}  // namespace

void collectMemory(CollectContext& context) {
    DeviceRecord memory;
    memory.type = u"Memory";
    memory.name = "Memory";
    memory.hwLocator = "memory";
    memory.osLocator = "/proc/meminfo";
    memory.parent = 0;
    memory.size(property::SIZE, memoryInBlocks(context.root));
    memory.size(property::USABLE_SIZE, usableMemory(context.root), Category::Internal());
    const bool hasModules = context.smbios.first(SmbiosTable::MEMORY_DEVICE) != nullptr;
    if (memory.properties.empty() && !hasModules) {
        context.note("/proc/meminfo", "says nothing of the memory's size", "memory");
        return;
    }
    const std::size_t place = context.recording.add(std::move(memory));
    if (hasModules) {
        ModuleRecorder(context, place).record();
    }
}

}  // namespace vrx::host
