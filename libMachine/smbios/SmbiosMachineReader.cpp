/// BIOS, system, boards, chassis, processors and caches out of an SMBIOS table. Of structures that a machine has once,
/// the first counts, as it does for the kernel.

#include <fmt/format.h>

#include "libMachine/smbios/SmbiosNames.h"
#include "libMachine/smbios/SmbiosReaders.h"

namespace vrx {

namespace {

constexpr std::uint64_t KIB = 1024;

/// The sixteen bytes of a UUID as text; the first three groups are stored with their lowest byte first.
std::string uuidText(const SmbiosStructure& structure, std::size_t offset) {
    if (!structure.has(offset, 16)) {
        return {};
    }
    std::string text = fmt::format("{:08x}-{:04x}-{:04x}-", structure.dword(offset), structure.word(offset + 4),
                                   structure.word(offset + 6));
    for (std::size_t i = 8; i < 16; ++i) {
        text += fmt::format("{}{:02x}", i == 10 ? "-" : "", structure.byte(offset + i));
    }
    return text;
}

/// "5.14" from two bytes; 255 stands for "not known".
std::string releaseText(const SmbiosStructure& structure, std::size_t offset) {
    const unsigned major = structure.byte(offset);
    const unsigned minor = structure.byte(offset + 1);
    return !structure.has(offset, 2) || major == 0xFF || minor == 0xFF ? std::string()
                                                                       : fmt::format("{}.{}", major, minor);
}

/// A count of one byte of which 255 refers to a wider one.
unsigned count(const SmbiosStructure& structure, std::size_t offset, std::size_t wider) {
    const unsigned number = structure.byte(offset);
    return number == 0xFF && structure.has(wider, 2) ? structure.word(wider) : number;
}

/// Family, model and stepping of an x86 processor out of its CPUID; other kinds of processors have other things there.
void readCpuid(const SmbiosStructure& structure, ProcessorFacts& processor) {
    const std::string& vendor = processor.vendor;
    const bool isX86 = vendor.find("Intel") != std::string::npos || vendor.find("AMD") != std::string::npos ||
                       vendor.find("Advanced Micro") != std::string::npos;
    const std::uint32_t cpuid = structure.dword(0x08);
    if (isX86 && cpuid != 0) {
        processor.family = (cpuid >> 20 & 0xFF) + (cpuid >> 8 & 0x0F);
        processor.model = (cpuid >> 12 & 0xF0) + (cpuid >> 4 & 0x0F);
        processor.stepping = cpuid & 0x0F;
    }
}

}  // namespace

void readBios(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned VIRTUAL_MACHINE = 0x10;
    if (facts.bios) {
        return;
    }
    BiosFacts& bios = facts.bios.emplace();
    bios.vendor = structure.text(0x04);
    bios.version = structure.text(0x05);
    bios.releaseDate = structure.text(0x08);
    bios.isVirtualMachine = (structure.byte(0x13) & VIRTUAL_MACHINE) != 0;
    bios.revision = releaseText(structure, 0x14);
    bios.controllerRevision = releaseText(structure, 0x16);
}

void readSystem(const SmbiosStructure& structure, SmbiosFacts& facts) {
    if (facts.system) {
        return;
    }
    SystemFacts& system = facts.system.emplace();
    system.vendor = structure.text(0x04);
    system.model = structure.text(0x05);
    system.version = structure.text(0x06);
    system.serialNumber = structure.text(0x07);
    system.uuid = uuidText(structure, 0x08);
    system.sku = structure.text(0x19);
    system.family = structure.text(0x1A);
}

void readBoard(const SmbiosStructure& structure, SmbiosFacts& facts) {
    BoardFacts& board = facts.boards.emplace_back();
    board.place = placeOf(structure);
    board.vendor = structure.text(0x04);
    board.model = structure.text(0x05);
    board.version = structure.text(0x06);
    board.serialNumber = structure.text(0x07);
    board.assetTag = structure.text(0x08);
    board.location = structure.text(0x0A);
    board.type = boardTypeName(structure.byte(0x0D));
}

void readChassis(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned LOCK_BIT = 0x80;
    ChassisFacts& chassis = facts.chassis.emplace_back();
    chassis.place = placeOf(structure);
    chassis.vendor = structure.text(0x04);
    chassis.type = chassisTypeName(structure.byte(0x05) & ~LOCK_BIT);
    chassis.version = structure.text(0x06);
    chassis.serialNumber = structure.text(0x07);
    chassis.assetTag = structure.text(0x08);
    chassis.height = structure.byte(0x11);
    const std::size_t elements = std::size_t{structure.byte(0x13)} * structure.byte(0x14);
    chassis.sku = structure.text(0x15 + elements);
}

void readProcessor(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned CENTRAL_PROCESSOR = 3;
    static constexpr unsigned POPULATED = 0x40;
    static constexpr unsigned NO_CACHE = 0xFFFF;
    if (structure.byte(0x05) != CENTRAL_PROCESSOR) {
        return;
    }
    ProcessorFacts& processor = facts.processors.emplace_back();
    processor.place = placeOf(structure);
    processor.isPopulated = (structure.byte(0x18) & POPULATED) != 0;
    processor.socket = structure.text(0x04);
    processor.socketType = processorSocketName(structure.byte(0x19));
    processor.vendor = structure.text(0x07);
    processor.version = structure.text(0x10);
    processor.serialNumber = structure.text(0x20);
    processor.assetTag = structure.text(0x21);
    processor.partNumber = structure.text(0x22);
    readCpuid(structure, processor);
    processor.maxClock = structure.word(0x14);
    processor.clock = structure.word(0x16);
    const unsigned enabled = count(structure, 0x24, 0x2C);
    processor.cores = enabled != 0 ? enabled : count(structure, 0x23, 0x2A);
    processor.threads = count(structure, 0x25, 0x2E);
    if (structure.has(0x1E, 2) && structure.word(0x1E) != NO_CACHE) {
        processor.level3Cache = structure.word(0x1E);
    }
}

void readCache(const SmbiosStructure& structure, SmbiosFacts& facts) {
    static constexpr unsigned WIDER = 0xFFFF;
    static constexpr unsigned STEPS_OF_64K = 0x8000;
    static constexpr std::uint32_t WIDE_STEPS_OF_64K = 0x80000000;
    CacheFacts& cache = facts.caches.emplace_back();
    cache.place = placeOf(structure);
    cache.level = (structure.word(0x05) & 0x07U) + 1;
    const unsigned size = structure.word(0x09);
    const std::uint32_t wide = structure.dword(0x17);
    if (size == WIDER && structure.has(0x17, 4)) {
        cache.size = (wide & ~WIDE_STEPS_OF_64K) * KIB * ((wide & WIDE_STEPS_OF_64K) != 0 ? 64 : 1);
    } else {
        cache.size = (size & ~STEPS_OF_64K) * KIB * ((size & STEPS_OF_64K) != 0 ? 64 : 1);
    }
}

}  // namespace vrx
