/// What firmware says of processors is spelled as the kernel spells it where both mean the same: the vendor as the
/// processor's own identification has it, family, model and stepping as numbers.
///
/// Firmware tells the size of a processor's caches summed up over all cores. Only a cache that the whole package shares
/// can be told from that, and only Intel's processors are known to have a single one of level 3.

#include "libMachine/devices/ProcessorDevices.h"

#include <fmt/format.h>

#include <algorithm>

#include "libMachine/devices/MachineDevices.h"
#include "libMachine/linux/RootFolder.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

constexpr std::string_view INTEL = "GenuineIntel";

/// The vendor as x86 processors name it; that of other processors as firmware has it.
std::string kernelVendor(const ProcessorFacts& facts) {
    struct Spelling {
        std::string_view part;
        std::string_view kernel;
    };
    static constexpr Spelling SPELLINGS[] = {
        {"Intel", INTEL}, {"AMD", "AuthenticAMD"}, {"Advanced Micro Devices", "AuthenticAMD"}};
    if (facts.family) {
        for (const Spelling& spelling : SPELLINGS) {
            if (facts.vendor.find(spelling.part) != std::string::npos) {
                return std::string(spelling.kernel);
            }
        }
    }
    return facts.vendor;
}

void addMissingText(DeviceRecord& device, StringView key, std::string_view text) {
    if (!device.has(key)) {
        device.text(key, text);
    }
}

void addNumber(DeviceRecord& device, StringView key, std::optional<unsigned> number) {
    if (number && !device.has(key)) {
        device.number(key, *number);
    }
}

std::optional<unsigned> ifKnown(unsigned number) { return number == 0 ? std::nullopt : std::optional(number); }

void addSharedCache(Recording& recording, std::size_t place, const ProcessorFacts& processor,
                    const std::vector<CacheFacts>& caches) {
    const auto cache = std::find_if(caches.begin(), caches.end(), [&processor](const CacheFacts& candidate) {
        return candidate.place.handle == processor.level3Cache;
    });
    if (cache == caches.end() || cache->level != 3 || (cache->size == 0 && cache->isSizeKnown) ||
        kernelVendor(processor) != INTEL) {
        return;
    }
    DeviceRecord device;
    device.type = u"Cache";
    device.name = "L3 cache";
    device.hwLocator = recording.at(place).hwLocator + "/l3:0";
    device.osLocator = cache->place.osLocator;
    device.parent = place;
    device.number(property::LEVEL, cache->level);
    addWord(device, property::CACHE_TYPE, "Unified");
    device.size(property::SIZE, cache->size);
    recording.add(std::move(device));
}

}  // namespace

std::vector<const ProcessorFacts*> populatedSockets(const SmbiosFacts& facts) {
    std::vector<const ProcessorFacts*> sockets;
    for (const ProcessorFacts& socket : facts.processors) {
        if (socket.isPopulated) {
            sockets.push_back(&socket);
        }
    }
    return sockets;
}

void addSocketFacts(DeviceRecord& processor, const ProcessorFacts& facts) {
    addMissingText(processor, property::VENDOR, kernelVendor(facts));
    addMissingText(processor, property::MODEL, facts.version);
    addNumber(processor, property::FAMILY, facts.family);
    addNumber(processor, property::MODEL_NUMBER, facts.model);
    addNumber(processor, property::STEPPING, facts.stepping);
    addNumber(processor, property::CORES, ifKnown(facts.cores));
    addNumber(processor, property::THREADS, ifKnown(facts.threads));
    addMissingText(processor, property::SLOT, facts.socket);
    addMissingText(processor, property::SERIAL_NUMBER, facts.serialNumber);
    addMissingText(processor, property::PART_NUMBER, facts.partNumber);
    addMissingText(processor, property::ASSET_TAG, facts.assetTag);
    addWord(processor, property::SOCKET_TYPE, facts.socketType);
    if (!processor.has(property::CLOCK)) {
        processor.measure(property::CLOCK, facts.clock, u"MHz");
    }
    processor.measure(property::SOCKET_MAX_CLOCK, facts.maxClock, u"MHz");
}

void addProcessors(Recording& recording, const SmbiosFacts& facts) {
    unsigned package = 0;
    for (const ProcessorFacts* const socket : populatedSockets(facts)) {
        DeviceRecord processor;
        processor.type = u"Processor";
        processor.hwLocator = fmt::format("cpu:{}", package++);
        processor.osLocator = socket->place.osLocator;
        processor.parent = 0;
        const std::string model = cleanName(socket->version);
        processor.name = model.empty() ? "Processor" : model;
        processor.measure(property::CLOCK, megahertzInModel(model), u"MHz");
        addSocketFacts(processor, *socket);
        const std::size_t place = recording.add(std::move(processor));
        addSharedCache(recording, place, *socket, facts.caches);
    }
}

void addEmptySockets(Recording& recording, const SmbiosFacts& facts) {
    for (const ProcessorFacts& socket : facts.processors) {
        if (socket.isPopulated) {
            continue;
        }
        const std::string label = cleanName(socket.socket);
        DeviceRecord device;
        device.type = u"Slot";
        device.name = "Processor socket";
        device.hwLocator = "socket:" + (label.empty() ? std::to_string(socket.place.instance) : label);
        device.osLocator = socket.place.osLocator;
        device.parent = 0;
        device.text(property::SLOT, socket.socket);
        addWord(device, property::SOCKET_TYPE, socket.socketType);
        recording.add(std::move(device));
    }
}

double megahertzInModel(std::string_view model) {
    const std::size_t at = model.find("@ ");
    if (at == std::string_view::npos) {
        return 0;
    }
    const double number = leadingNumber(model.substr(at + 2));
    return model.ends_with("GHz") ? number * 1000 : model.ends_with("MHz") ? number : 0;
}

}  // namespace vrx
