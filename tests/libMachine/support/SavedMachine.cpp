#include "tests/libMachine/support/SavedMachine.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <sstream>

#include "libMachine/MachineCollector.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

std::string unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '\\' && i + 1 < text.size();
        plain.push_back(!isEscape ? text[i] : text[i + 1] == 'n' ? '\n' : '\t');
        i += isEscape ? 1 : 0;
    }
    return plain + "\n";
}

std::string contentOf(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

}  // namespace

SavedMachine::SavedMachine() {
    std::string pattern = (std::filesystem::temp_directory_path() / "savedMachineXXXXXX").string();
    m_folder = mkdtemp(pattern.data());
}

SavedMachine::SavedMachine(const std::string& name) : SavedMachine() {
    files(contentOf(std::filesystem::path(VRX_TEST_DATA) / "data/roots" / name / "tree.txt"));
}

SavedMachine::~SavedMachine() { std::filesystem::remove_all(m_folder); }

void SavedMachine::file(std::string_view path, std::string_view bytes) {
    const std::filesystem::path whole = folder() + std::string(path);
    std::filesystem::create_directories(whole.parent_path());
    std::ofstream(whole, std::ios::binary) << bytes;
}

void SavedMachine::link(std::string_view path, std::string_view target) {
    const std::filesystem::path whole = folder() + std::string(path);
    std::filesystem::create_directories(whole.parent_path());
    std::filesystem::create_symlink(target, whole);
}

void SavedMachine::files(std::string_view listing) {
    std::istringstream lines{std::string(listing)};
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        if (!line.starts_with('/') || blank == std::string::npos) {
            continue;
        }
        if (line.substr(blank).starts_with(" -> ")) {
            link(line.substr(0, blank), line.substr(blank + 4));
        } else {
            file(line.substr(0, blank), unescaped(line.substr(blank + 3)));
        }
    }
}

void SavedMachine::processors(unsigned packages, unsigned cores, std::string_view model) {
    const auto mask = [](unsigned first, unsigned count) {
        std::ostringstream text;
        text << std::hex << (((1ULL << count) - 1) << first) << "\n";
        return text.str();
    };
    std::ostringstream info;
    for (unsigned cpu = 0; cpu < packages * cores * 2; ++cpu) {
        const unsigned package = cpu / (cores * 2);
        const unsigned core = cpu / 2 % cores;
        const std::string folder = "/sys/devices/system/cpu/cpu" + std::to_string(cpu);
        file(folder + "/topology/physical_package_id", std::to_string(package));
        file(folder + "/topology/core_id", std::to_string(core * 4));  // not without gaps, as on real machines
        file(folder + "/topology/package_cpus", mask(package * cores * 2, cores * 2));
        file(folder + "/topology/core_cpus", mask(cpu / 2 * 2, 2));
        const auto cache = [&](unsigned index, unsigned level, std::string_view type, std::string_view size,
                               const std::string& sharing) {
            const std::string place = folder + "/cache/index" + std::to_string(index);
            file(place + "/level", std::to_string(level));
            file(place + "/type", type);
            file(place + "/size", size);
            file(place + "/coherency_line_size", "64");
            file(place + "/shared_cpu_map", sharing);
        };
        cache(0, 1, "Data", "48K", mask(cpu / 2 * 2, 2));
        cache(1, 1, "Instruction", "32K", mask(cpu / 2 * 2, 2));
        cache(2, 2, "Unified", "1280K", mask(cpu / 2 * 2, 2));
        cache(3, 3, "Unified", "24576K", mask(package * cores * 2, cores * 2));
        info << "processor\t: " << cpu << "\nvendor_id\t: ExampleInc\ncpu family\t: 6\nmodel name\t: " << model
             << "\nmicrocode\t: 0xd0003a5\ncpu MHz\t\t: 800.321\nphysical id\t: " << package
             << "\nflags\t\t: fpu vme\n\n";
    }
    file("/proc/cpuinfo", info.str());
}

void SavedMachine::collect() { collect({}); }

void SavedMachine::collect(CollectOptions options) {
    store.clear();
    notes.clear();
    options.root = folder();
    isRecorded = collectMachine(store, options, notes);
}

const IDeviceImp& SavedMachine::device(const String& hwLocator) const {
    const auto& found = store.devicesByHwLocator(hwLocator);
    EXPECT_EQ(found.size(), 1U) << hwLocator.toUtf8();
    return *(found.isEmpty() ? store.rootDevice() : found[0]);
}

std::string SavedMachine::summary(const String& hwLocator) const {
    const IDeviceImp& found = device(hwLocator);
    return concat(found.type().toString(), u"|", found.name(), u"|", found.osLocator()).toUtf8();
}

std::string SavedMachine::text(const String& hwLocator, const String& key) const {
    const IPropertyImp* const property = device(hwLocator).findProperty(key);
    return property == nullptr ? "-" : property->value().toString(false).toUtf8();
}

bool SavedMachine::hasCapability(const String& hwLocator, StringView capability) const {
    return device(hwLocator).capabilities().intersect(CapabilityImp(capability));
}

std::size_t SavedMachine::count(StringView type) const { return store.getDevices(CapabilityImp(type), false).size(); }

std::string SavedMachine::parentOf(const String& hwLocator) const {
    for (const auto& candidate : store.devicesCapableOf(CapabilityImp::ALL())) {
        for (const auto& child : candidate->children()) {
            if (child->hwLocator() == hwLocator) {
                return candidate->hwLocator().toUtf8();
            }
        }
    }
    return "-";
}

SmbiosBuilder& SmbiosBuilder::add(std::uint8_t type, std::uint16_t handle, std::size_t length,
                                  const std::vector<Field>& fields, const std::vector<std::string>& texts) {
    std::string structure(length, '\0');
    const auto put = [&structure](const Field& field) {
        for (std::size_t i = 0; i < field.size; ++i) {
            structure.at(field.offset + i) = static_cast<char>(field.value >> (8 * i) & 0xFF);
        }
    };
    put({0, type, 1});
    put({1, length, 1});
    put({2, handle, 2});
    for (const Field& field : fields) {
        put(field);
    }
    bytes += structure;
    for (const std::string& text : texts) {
        bytes += text + '\0';
    }
    bytes += texts.empty() ? std::string(2, '\0') : std::string(1, '\0');
    return *this;
}

}  // namespace vrx
