/// Processor sockets and their caches. lshw lists a node for each socket of SMBIOS, then others, without a handle, for
/// each logical processor that the kernel counts and SMBIOS does not: those are no processors. Where there is no SMBIOS
/// at all, a node that names a product is one.
///
/// lshw's names for the two large vendors replace those that the processors give themselves; old versions put the maker
/// of memory of the same number in their place, so the model's name decides. Its version is family, model and stepping
/// only in versions that tell the microcode as well: older ones cut the model down to four bits. The rated clock is
/// taken from the model's name, as its numbers are the clock of the moment, or the largest it has been seen at. A cache
/// of size 0 is none, unless no cache has a size: then the version could not read them.

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "libMachine/import/lshw/LshwConversion.h"
#include "libMachine/linux/RootFolder.h"

namespace vrx {

namespace {

bool isSocket(const LshwNode& node) { return node.kind == "processor" && node.smbiosHandle().has_value(); }

bool isNamedProcessor(const LshwNode& node) {
    return node.kind == "processor" && !node.product.empty() &&
           (node.busInfo.empty() || node.busInfo.starts_with("cpu@"));
}

std::string vendorOf(const LshwNode& node) {
    const auto names = [&node](std::string_view word) {
        return node.product.find(word) != std::string::npos || node.vendor.starts_with(word);
    };
    if (node.product.empty()) {
        return std::string(lshwText(node.vendor));
    }
    return names("Intel")                                    ? "GenuineIntel"
           : names("AMD") || names("Advanced Micro Devices") ? "AuthenticAMD"
                                                             : std::string(lshwText(node.vendor));
}

/// "23.49.0" as its three numbers.
void addNumbers(ProcessorFacts& processor, const LshwNode& node) {
    if (node.setting("microcode").empty()) {
        return;
    }
    std::array<std::optional<unsigned>*, 3> numbers{&processor.family, &processor.model, &processor.stepping};
    std::string_view rest = node.version;
    for (std::optional<unsigned>* const number : numbers) {
        const std::size_t end = std::min(rest.find('.'), rest.size());
        if (const auto parsed = parseNumber(rest.substr(0, end))) {
            *number = static_cast<unsigned>(*parsed);
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

unsigned countIn(std::string_view text) {
    return static_cast<unsigned>(std::min<std::uint64_t>(parseNumber(text).value_or(0), 1U << 16));
}

/// Sockets without a processor have texts in its place: "CPU [empty]", "Processor Not Installed".
bool isAbsent(const LshwNode& node) {
    static constexpr std::string_view WORDS[] = {"[empty]",       "Not Present",   "not present",
                                                 "Not Installed", "not installed", "No CPU"};
    return std::any_of(std::begin(WORDS), std::end(WORDS), [&node](std::string_view word) {
        return node.description.find(word) != std::string::npos || node.product.find(word) != std::string::npos ||
               node.version.find(word) != std::string::npos;
    });
}

ProcessorFacts processorOf(const LshwNode& node, unsigned instance) {
    ProcessorFacts processor;
    processor.place.handle = node.smbiosHandle().value_or(instance);
    processor.place.instance = instance;
    processor.place.osLocator = isSocket(node) ? smbiosEntry(4, instance) : std::string();
    processor.isPopulated = !isAbsent(node) && (lshwTells(node.product) || node.size > 0);
    processor.socket = lshwText(node.slot);
    processor.vendor = vendorOf(node);
    processor.version = lshwText(node.product);
    processor.serialNumber = lshwText(node.serial);
    processor.cores = countIn(node.setting(node.setting("enabledcores").empty() ? "cores" : "enabledcores"));
    processor.threads = countIn(node.setting("threads"));
    addNumbers(processor, node);
    return processor;
}

bool isCache(const LshwNode& node) {
    return node.kind == "memory" && node.isCalled("cache") && node.smbiosHandle().has_value();
}

/// The level is a setting in new versions; older ones have it in texts that no language changes ("L1-Cache").
unsigned levelOf(const LshwNode& node) {
    if (const auto level = parseNumber(node.setting("level"))) {
        return static_cast<unsigned>(*level);
    }
    for (const std::string_view text : {std::string_view(node.slot), std::string_view(node.description)}) {
        for (std::size_t at = text.find('L'); at != std::string_view::npos; at = text.find('L', at + 1)) {
            if (at + 1 < text.size() && text[at + 1] >= '1' && text[at + 1] <= '9') {
                return static_cast<unsigned>(text[at + 1] - '0');
            }
        }
    }
    return 0;
}

}  // namespace

std::vector<ProcessorFacts> lshwProcessors(const LshwTree& tree) {
    static constexpr unsigned SHARED_LEVEL = 3;
    const bool hasSockets = std::any_of(tree.nodes.begin(), tree.nodes.end(), isSocket);
    std::vector<ProcessorFacts> processors;
    std::vector<std::size_t> processorOfNode(tree.nodes.size(), LshwNode::NONE);
    std::optional<unsigned> looseCache;
    for (std::size_t place = 0; place < tree.nodes.size(); ++place) {
        const LshwNode& node = tree.nodes[place];
        if (hasSockets ? isSocket(node) : isNamedProcessor(node)) {
            processorOfNode[place] = processors.size();
            processors.push_back(processorOf(node, static_cast<unsigned>(processors.size())));
        } else if (isCache(node) && levelOf(node) == SHARED_LEVEL) {
            const std::size_t owner = node.parent == LshwNode::NONE ? LshwNode::NONE : processorOfNode[node.parent];
            (owner == LshwNode::NONE ? looseCache : processors[owner].level3Cache) = node.smbiosHandle();
        }
    }
    if (processors.size() == 1 && looseCache && !processors.front().level3Cache) {
        processors.front().level3Cache = looseCache;  // some boards do not tell whose the caches are
    }
    return processors;
}

std::vector<CacheFacts> lshwCaches(const LshwTree& tree, DamageList& damage) {
    const bool tellsSizes = std::any_of(tree.nodes.begin(), tree.nodes.end(),
                                        [](const LshwNode& node) { return isCache(node) && node.size > 0; });
    std::vector<CacheFacts> caches;
    for (const LshwNode& node : tree.nodes) {
        if (isCache(node)) {
            const auto instance = static_cast<unsigned>(caches.size());
            caches.push_back(
                {{*node.smbiosHandle(), instance, smbiosEntry(7, instance)}, levelOf(node), node.size, tellsSizes});
            if (!tellsSizes) {
                damage.add(DamageKind::SizeMissing, 0, node.slot);
            }
        }
    }
    return caches;
}

}  // namespace vrx
