/// Memory arrays and the banks in them. What kind of module it is stands in the description alone ("SODIMM DDR3
/// Synchronous 1600 MHz"); its words are those of SMBIOS in any language. A bank without a size is empty, whatever its
/// description says, unless it has a part or serial number: some versions call a module empty whose size they fail to
/// read.

#include <algorithm>
#include <utility>

#include "libMachine/import/lshw/LshwConversion.h"
#include "libMachine/smbios/SmbiosNames.h"

namespace vrx {

namespace {

constexpr std::uint64_t HERTZ_PER_MEGAHERTZ = 1000000;
constexpr unsigned MOST_NUMBERS = 64;  // more than any list of names in SMBIOS has

std::string errorCorrectionOf(std::string_view word) {
    static constexpr std::pair<std::string_view, std::string_view> WORDS[] = {
        {"multi-bit-ecc", "Multi-bit ECC"}, {"ecc", "Single-bit ECC"}, {"parity", "Parity"}, {"crc", "CRC"}};
    for (const auto& [known, name] : WORDS) {
        if (word == known) {
            return std::string(name);
        }
    }
    return {};
}

bool isBank(const LshwNode& node) { return node.kind == "memory" && node.isCalled("bank"); }

bool isFlash(const LshwNode& bank) { return bank.description.find("FLASH") != std::string::npos; }

bool isArray(const LshwNode& node) {
    return node.kind == "memory" && node.isCalled("memory") && node.smbiosHandle().has_value();
}

MemoryArrayFacts arrayOf(const LshwNode& node, unsigned instance) {
    MemoryArrayFacts array;
    array.place = {*node.smbiosHandle(), instance, smbiosEntry(16, instance)};
    array.errorCorrection = errorCorrectionOf(node.setting("errordetection"));
    array.maximumSize = node.capacity;
    return array;
}

/// Whether one of the names of a list is that word.
bool isNameIn(std::string_view (*nameOf)(unsigned) noexcept, std::string_view word) {
    for (unsigned number = 0; number < MOST_NUMBERS; ++number) {
        if (nameOf(number) == word) {
            return true;
        }
    }
    return false;
}

void addModuleKind(MemoryModuleFacts& module, std::string_view description) {
    while (!description.empty()) {
        const std::size_t end = std::min(description.find(' '), description.size());
        const std::string_view word = description.substr(0, end);
        description.remove_prefix(std::min(end + 1, description.size()));
        if (word.empty()) {
            continue;
        }
        if (module.formFactor.empty() && isNameIn(memoryFormFactorName, word)) {
            module.formFactor = word;
        } else if (module.memoryType.empty() && isNameIn(memoryTypeName, word)) {
            module.memoryType = word;
        } else if (word == "Registered" || word == "Unbuffered") {
            module.buffering = word;
        } else if (word == "LRDIMM") {
            module.buffering = "Load Reduced";
        } else if (word == "Non-volatile" || word == "Non-Volatile") {
            module.isPersistent = true;
        }
    }
}

MemoryModuleFacts moduleOf(const LshwNode& node, unsigned instance) {
    MemoryModuleFacts module;
    module.place.handle = node.smbiosHandle().value_or(instance);
    module.place.instance = instance;
    module.place.osLocator = node.smbiosHandle() ? smbiosEntry(17, instance) : std::string();
    module.isInstalled = node.size > 0 || lshwTells(node.product) || lshwTells(node.serial);
    module.slot = lshwText(node.slot);
    addModuleKind(module, node.description);
    if (isFlash(node)) {
        module.memoryType = "Flash";
    }
    if (module.isInstalled) {
        module.vendor = lshwText(node.vendor);
        module.partNumber = lshwText(node.product);
        module.serialNumber = lshwText(node.serial);
        module.size = node.size;
        module.speed = static_cast<unsigned>(node.clock / HERTZ_PER_MEGAHERTZ);
        module.dataWidth = static_cast<unsigned>(node.width);
    }
    return module;
}

/// The place goes by the slot's label, as the device's does.
void noteMissingSize(const LshwNode& bank, const MemoryModuleFacts& module, DamageList& damage) {
    if (module.isInstalled && bank.size == 0) {
        const bool isCalledEmpty = bank.description.find("[empty]") != std::string::npos;
        damage.add(isCalledEmpty ? DamageKind::ModuleCalledEmpty : DamageKind::SizeMissing, 0, "dimm:" + bank.slot);
    }
}

/// Whether all banks that an array has are the firmware's own.
bool holdsOnlyFlash(const LshwTree& tree, std::size_t array) {
    bool hasFlash = false;
    for (std::size_t place = array + 1; place < tree.nodes.size(); ++place) {
        const LshwNode& node = tree.nodes[place];
        if (node.parent == array && isBank(node)) {
            if (!isFlash(node)) {
                return false;
            }
            hasFlash = true;
        }
    }
    return hasFlash;
}

}  // namespace

MemoryFacts lshwMemory(const LshwTree& tree, DamageList& damage) {
    MemoryFacts memory;
    std::vector<std::size_t> arrayOfNode(tree.nodes.size(), LshwNode::NONE);
    for (std::size_t place = 0; place < tree.nodes.size(); ++place) {
        const LshwNode& node = tree.nodes[place];
        if (isArray(node)) {
            arrayOfNode[place] = memory.arrays.size();
            memory.arrays.push_back(arrayOf(node, static_cast<unsigned>(memory.arrays.size())));
            memory.arrays.back().isSystemMemory = !holdsOnlyFlash(tree, place);
        } else if (isBank(node)) {
            memory.modules.push_back(moduleOf(node, static_cast<unsigned>(memory.modules.size())));
            noteMissingSize(node, memory.modules.back(), damage);
            const std::size_t array = node.parent == LshwNode::NONE ? LshwNode::NONE : arrayOfNode[node.parent];
            if (array != LshwNode::NONE) {
                memory.modules.back().array = memory.arrays[array].place.handle;
                ++memory.arrays[array].slots;
            }
        }
    }
    for (std::size_t place = 0; place < tree.nodes.size(); ++place) {
        if (arrayOfNode[place] != LshwNode::NONE && tree.isCutOff(place)) {
            memory.arrays[arrayOfNode[place]].slots = 0;  // there may be more
        }
    }
    return memory;
}

std::uint64_t lshwMemorySize(const LshwTree& tree) {
    std::uint64_t size = 0;
    for (std::size_t place = 0; place < tree.nodes.size(); ++place) {
        const LshwNode& node = tree.nodes[place];
        const bool isAllMemory = node.kind == "memory" && node.isCalled("memory") && node.busInfo.empty();
        if (isAllMemory && !holdsOnlyFlash(tree, place)) {
            size += node.size;
        }
    }
    return size;
}

}  // namespace vrx
