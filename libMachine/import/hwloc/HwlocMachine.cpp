/// Caches enclose the cores that they serve, so a cache with one core inside is that core's. Version 1 calls packages
/// sockets and has one name for caches of all levels. Where the document is cut off, what counts the parts of an object
/// that was open there is left out.

#include "libMachine/import/hwloc/HwlocMachine.h"

#include <algorithm>
#include <tuple>

#include "libInventory/script/XmlChildren.h"
#include "libMachine/import/mending/XmlMending.h"
#include "libMachine/linux/RootFolder.h"

namespace vrx {

namespace {

unsigned indexOf(const XmlElement& element, StringView name = u"os_index") {
    return static_cast<unsigned>(std::min<std::uint64_t>(hwlocNumber(element, name), 0xFFFFFFFF));
}

/// Finds everything in one walk over the document, which is nested no deeper than documents may be.
class TopologyReader {
public:
    explicit TopologyReader(HwlocMachine& machine) : m_machine(machine) {}

    void read(const XmlContainer& outer, std::size_t functionAbove) {
        for (const XmlElement* const child : childElements(outer)) {
            if (child->Name() == u"object") {
                readObject(*child, functionAbove);
            } else if (child->Name() == CUT_OFF_ELEMENT) {
                m_machine.isCutOff = true;  // inside all objects that are being read
            } else if (child->Name() != u"info") {
                if (child->Name() == u"topology") {
                    readTopology(*child);
                }
                read(*child, functionAbove);
            }
        }
    }

private:
    /// What stands around the objects.
    void readTopology(const XmlElement& topology) {
        m_machine.topology = &topology;
        const std::string version = hwlocText(topology, u"version");
        const std::uint64_t major = parseNumber(version.substr(0, version.find('.'))).value_or(1);
        m_machine.format = static_cast<unsigned>(std::min<std::uint64_t>(major, UINT32_MAX));
    }

    void readObject(const XmlElement& object, std::size_t functionAbove) {
        const StringView type = object.Attribute(u"type");
        const bool isBetter =
            type == u"Machine" && m_machine.machine != nullptr && m_machine.machine->Attribute(u"type") != u"Machine";
        if (m_machine.machine == nullptr || isBetter) {
            m_machine.machine = &object;
        }
        m_machine.memory += hwlocNumber(object, u"local_memory");
        if (type == u"Package" || type == u"Socket") {
            readPackage(object, functionAbove);
        } else if (type == u"Core") {
            readCore(object, functionAbove);
        } else if (type == u"PU") {
            readThread(object);
        } else if (type.ends_with(u"Cache")) {
            readCache(object, functionAbove);
        } else if (type == u"Misc" && object.Attribute(u"subtype") == u"MemoryModule") {
            m_machine.modules.push_back(&object);
        } else if (!object.Attribute(u"pci_busid").empty()) {
            m_machine.functions.push_back({&object, functionAbove});
            read(object, m_machine.functions.size());
        } else {
            read(object, functionAbove);
        }
    }

    void readPackage(const XmlElement& object, std::size_t functionAbove) {
        m_machine.packages.push_back({});
        m_machine.packages.back().element = &object;
        m_machine.packages.back().topology.id = indexOf(object);
        m_isInPackage = true;
        read(object, functionAbove);
        m_isInPackage = false;
        m_machine.packages.back().isCutOff = m_machine.isCutOff;
        auto& caches = m_machine.packages.back().topology.caches;
        std::stable_sort(caches.begin(), caches.end(), [](const CpuCache& a, const CpuCache& b) {
            return std::tuple(a.level, a.kind) < std::tuple(b.level, b.kind);
        });
    }

    void readCore(const XmlElement& object, std::size_t functionAbove) {
        if (m_isInPackage) {
            package().cores.push_back({indexOf(object), 0, 0});
        }
        m_isInCore = true;
        read(object, functionAbove);
        m_isInCore = false;
        if (m_machine.isCutOff && m_isInPackage) {
            package().cores.pop_back();
        }
    }

    void readThread(const XmlElement& object) {
        if (!m_isInPackage || package().cores.empty() || !m_isInCore) {
            return;
        }
        CpuCore& core = package().cores.back();
        const unsigned cpu = indexOf(object);
        core.firstCpu = core.threads == 0 ? cpu : std::min(core.firstCpu, cpu);
        ++core.threads;
    }

    void readCache(const XmlElement& object, std::size_t functionAbove) {
        const std::size_t coresBefore = m_isInPackage ? package().cores.size() : 0;
        read(object, functionAbove);
        if (!m_isInPackage || m_machine.isCutOff) {
            return;
        }
        const std::size_t cores = package().cores.size() - coresBefore;
        CpuCache cache;
        cache.level = indexOf(object, u"depth");
        cache.bytes = hwlocNumber(object, u"cache_size");
        cache.lineSize = indexOf(object, u"cache_linesize");
        cache.ways = static_cast<int>(std::min<std::uint64_t>(hwlocNumber(object, u"cache_associativity"), 1U << 16));
        const std::uint64_t kind = hwlocNumber(object, u"cache_type");
        cache.kind = kind == 1   ? CpuCache::Kind::Data
                     : kind == 2 ? CpuCache::Kind::Instruction
                                 : CpuCache::Kind::Unified;
        if (cores > 0) {
            cache.firstCpu = package().cores[coresBefore].firstCpu;
        }
        if (cores == 1) {
            cache.core = static_cast<unsigned>(coresBefore);
        }
        package().caches.push_back(cache);
    }

    CpuPackage& package() { return m_machine.packages.back().topology; }

    HwlocMachine& m_machine;
    bool m_isInPackage = false;
    bool m_isInCore = false;
};

}  // namespace

HwlocMachine readHwlocMachine(const XmlDocument& document) {
    HwlocMachine machine;
    TopologyReader(machine).read(document.Top(), 0);
    return machine;
}

std::string HwlocMachine::info(StringView name) const {
    std::string value = machine == nullptr ? std::string() : hwlocInfo(*machine, name);
    return value.empty() && topology != nullptr ? hwlocInfo(*topology, name) : value;
}

std::string hwlocText(const XmlElement& element, StringView attribute) { return toUtf8(element.Attribute(attribute)); }

std::uint64_t hwlocNumber(const XmlElement& element, StringView attribute) {
    return parseNumber(hwlocText(element, attribute)).value_or(0);
}

std::string hwlocInfo(const XmlElement& element, StringView name) {
    for (const XmlElement* child = element.FirstChildElement(u"info"); child != nullptr;
         child = child->NextSiblingElement(u"info")) {
        if (child->Attribute(u"name") == name) {
            return hwlocText(*child, u"value");
        }
    }
    return {};
}

std::uint64_t hwlocSize(const XmlElement& element) {
    static constexpr std::uint64_t KIB = 1024;
    const std::string text = hwlocInfo(element, u"Size");
    const std::uint64_t number = parseNumber(text.substr(0, text.find("KiB"))).value_or(0);
    return number > UINT64_MAX / KIB ? 0 : number * KIB;
}

}  // namespace vrx
