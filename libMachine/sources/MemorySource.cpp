/// Memory: one device for all of it, whose size is what the kernel was given (the blocks that it can take on and off
/// line, so that the size does not vary with what a kernel keeps for itself), and below it, when the SMBIOS table can
/// be read, the arrays of slots with their modules (MemoryDevices.h).

#include <algorithm>

#include "libMachine/collect/CollectContext.h"
#include "libMachine/devices/MemoryDevices.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;
constexpr std::uint64_t KIB = 1024;

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

}  // namespace

void collectMemory(CollectContext& context) {
    const std::uint64_t size = memoryInBlocks(context.root);
    const std::uint64_t usable = usableMemory(context.root);
    if (size == 0 && usable == 0 && context.smbios.memory.modules.empty()) {
        context.note("/proc/meminfo", CollectNote::Reason::SaysNothing, "says nothing of the memory's size", "memory");
        return;
    }
    const std::size_t place = addMemory(context.recording, 0, context.smbios.memory);
    DeviceRecord& memory = context.recording.at(place);
    memory.size(property::SIZE, size);
    memory.size(property::USABLE_SIZE, usable, Category::Internal());
}

}  // namespace vrx
