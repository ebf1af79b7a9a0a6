/// The tables have one entry a line: number, two blanks, name. A vendor (or "C" and a class) stands at the margin, its
/// devices (subclasses) behind one tab, their subsystems (interfaces) behind two; a subsystem has two numbers. Lines at
/// the margin that are neither, as usb.ids has many, end the last vendor. `#` starts a comment.
///
/// Where vendors and classes stand in a table is looked up once, and only those that are wanted are read.

#include "libMachine/ids/HardwareIds.h"

#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "libMachine/linux/RootFolder.h"

namespace vrx {

namespace {

constexpr std::size_t LARGEST_TABLE = std::size_t{16} * 1024 * 1024;
constexpr std::string_view FOLDERS[] = {"/usr/share/misc/", "/usr/share/hwdata/"};
enum Kind : std::uint64_t { VENDOR, DEVICE, SUBSYSTEM, CLASS, SUBCLASS };

/// Takes the hexadecimal number that a line starts with, and the blanks behind it.
std::optional<std::uint32_t> takeNumber(std::string_view& line) {
    const std::size_t size = std::min(line.find(' '), line.size());
    const std::optional<std::uint32_t> number = parseHex(line.substr(0, size));
    line.remove_prefix(std::min(line.find_first_not_of(' ', size), line.size()));
    return number;
}

template <typename Take>
void forEachLine(std::string_view text, const Take& take) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        take(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

/// Empty when the folder has none.
std::string tableIn(const RootFolder& root, std::string_view fileName) {
    std::string text;
    for (const std::string_view folder : FOLDERS) {
        if (text.empty()) {
            text = root.bytes(std::string(folder).append(fileName), LARGEST_TABLE);
        }
    }
    return text;
}

}  // namespace

/// What a line at the margin tells of.
struct HardwareIds::Margin {
    bool isClass = false;
    std::uint32_t number = 0;
};

/// Takes the number off the line; none when it is of neither a vendor nor a class.
std::optional<HardwareIds::Margin> HardwareIds::marginOf(std::string_view& line) {
    const bool isClass = line.starts_with("C ");
    if (isClass) {
        line.remove_prefix(2);
    }
    const std::size_t digits = std::min(line.find("  "), line.size());
    const std::optional<std::uint32_t> number = digits == (isClass ? 2 : 4) ? takeNumber(line) : std::nullopt;
    return number ? std::optional(Margin{isClass, *number}) : std::nullopt;
}

/// Goes over the lines of a table and fills in the names that are wanted.
class HardwareIds::Scanner {
public:
    explicit Scanner(std::map<Key, std::string>& names) : m_names(names) {}

    void lines(std::string_view lines) {
        forEachLine(lines, [this](std::string_view one) { line(one); });
    }

private:
    void line(std::string_view line) {
        if (line.empty() || line.front() == '#') {
            return;
        }
        if (line.front() != '\t') {
            margin(line);
        } else if (m_isWanted && line.starts_with("\t\t")) {
            subsystem(line.substr(2));
        } else if (m_isWanted) {
            device(line.substr(1));
        }
    }

    void margin(std::string_view line) {
        const std::optional<Margin> margin = marginOf(line);
        m_hasDevice = false;
        m_isClass = margin && margin->isClass;
        m_isWanted = margin && name(keyOf(*margin), line);
        m_vendor = margin ? margin->number : 0;
    }

    void device(std::string_view line) {
        const std::optional<std::uint32_t> number = takeNumber(line);
        m_hasDevice = number.has_value();
        m_device = number.value_or(0);
        if (m_hasDevice) {
            name(m_isClass ? subclassKey(m_vendor, m_device) : deviceKey(m_vendor, m_device), line);
        }
    }

    void subsystem(std::string_view line) {
        const std::optional<std::uint32_t> subVendor = takeNumber(line);
        const std::optional<std::uint32_t> subDevice = takeNumber(line);
        if (!m_isClass && m_hasDevice && subVendor && subDevice) {
            name(subsystemKey(m_vendor, m_device, *subVendor, *subDevice), line);
        }
    }

    bool name(const Key& key, std::string_view text) {
        const auto at = m_names.find(key);
        if (at == m_names.end()) {
            return false;
        }
        at->second = text;
        return true;
    }

    std::map<Key, std::string>& m_names;
    std::uint32_t m_vendor = 0;
    std::uint32_t m_device = 0;
    bool m_hasDevice = false;  // of the line that subsystems stand under
    bool m_isClass = false;
    bool m_isWanted = false;
};

/// A table's text, and where its vendors and classes stand, each up to the next line at the margin.
class HardwareIds::Table {
public:
    explicit Table(std::string text) : m_text(std::move(text)) {
        const char* start = nullptr;
        std::optional<Margin> margin;
        const auto endSection = [&](const char* end) {
            if (margin) {
                m_sections[keyOf(*margin)].emplace_back(start, static_cast<std::size_t>(end - start));
            }
        };
        forEachLine(m_text, [&](std::string_view line) {
            if (!line.empty() && line.front() != '\t' && line.front() != '#') {
                endSection(line.data());
                start = line.data();
                margin = marginOf(line);
            }
        });
        endSection(m_text.data() + m_text.size());
    }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    const std::vector<std::string_view>& sectionsOf(const Key& key) const {
        static const std::vector<std::string_view> NONE;
        const auto at = m_sections.find(key);
        return at == m_sections.end() ? NONE : at->second;
    }

private:
    std::string m_text;
    std::map<Key, std::vector<std::string_view>> m_sections;
};

HardwareIds::Key HardwareIds::keyOf(const Margin& margin) {
    return margin.isClass ? classKey(margin.number) : vendorKey(margin.number);
}

HardwareIds::Key HardwareIds::vendorKey(std::uint32_t vendor) { return {{VENDOR, vendor}}; }

HardwareIds::Key HardwareIds::deviceKey(std::uint32_t vendor, std::uint32_t device) {
    return {{DEVICE, std::uint64_t{vendor} << 32 | device}};
}

HardwareIds::Key HardwareIds::subsystemKey(std::uint32_t vendor, std::uint32_t device, std::uint32_t subVendor,
                                           std::uint32_t subDevice) {
    return {{std::uint64_t{SUBSYSTEM} << 32 | vendor << 16 | device, std::uint64_t{subVendor} << 32 | subDevice}};
}

HardwareIds::Key HardwareIds::classKey(std::uint32_t base) { return {{CLASS, base}}; }

HardwareIds::Key HardwareIds::subclassKey(std::uint32_t base, std::uint32_t sub) {
    return {{SUBCLASS, std::uint64_t{base} << 32 | sub}};
}

void HardwareIds::wantDevice(std::uint32_t vendor, std::uint32_t device) {
    m_names[vendorKey(vendor)];
    m_names[deviceKey(vendor, device)];
}

void HardwareIds::wantSubsystem(std::uint32_t vendor, std::uint32_t device, std::uint32_t subVendor,
                                std::uint32_t subDevice) {
    m_names[vendorKey(subVendor)];
    m_names[subsystemKey(vendor, device, subVendor, subDevice)];
}

void HardwareIds::wantClass(std::uint32_t classCode) {
    m_names[classKey(classCode >> 16)];
    m_names[subclassKey(classCode >> 16, classCode >> 8 & 0xFF)];
}

bool HardwareIds::load(const RootFolder& root, std::string_view fileName) {
    if (!root.isLive()) {
        if (const std::string text = tableIn(root, fileName); !text.empty()) {
            scan(text);
            return true;
        }
    }
    const Table* const table = installed(fileName);
    if (table != nullptr) {
        read(*table);
    }
    return table != nullptr;
}

/// The table of this machine; null when it has none.
const HardwareIds::Table* HardwareIds::installed(std::string_view fileName) {
    static std::mutex mutex;
    static std::map<std::string, std::unique_ptr<const Table>, std::less<>> tables;
    const std::lock_guard lock(mutex);
    auto known = tables.find(fileName);
    if (known == tables.end()) {
        std::string text = tableIn(RootFolder("/"), fileName);
        auto table = text.empty() ? nullptr : std::make_unique<const Table>(std::move(text));
        known = tables.emplace(fileName, std::move(table)).first;
    }
    return known->second.get();
}

void HardwareIds::scan(std::string_view table) { read(Table(std::string(table))); }

void HardwareIds::read(const Table& table) {
    Scanner scanner(m_names);
    for (const auto& [key, name] : m_names) {
        for (const std::string_view section : table.sectionsOf(key)) {
            scanner.lines(section);
        }
    }
}

std::string_view HardwareIds::find(const Key& key) const {
    const auto at = m_names.find(key);
    return at == m_names.end() ? std::string_view() : at->second;
}

std::string_view HardwareIds::vendor(std::uint32_t vendor) const { return find(vendorKey(vendor)); }

std::string_view HardwareIds::device(std::uint32_t vendor, std::uint32_t device) const {
    return find(deviceKey(vendor, device));
}

std::string_view HardwareIds::subsystem(std::uint32_t vendor, std::uint32_t device, std::uint32_t subVendor,
                                        std::uint32_t subDevice) const {
    return find(subsystemKey(vendor, device, subVendor, subDevice));
}

std::string_view HardwareIds::className(std::uint32_t classCode) const {
    const std::string_view sub = find(subclassKey(classCode >> 16, classCode >> 8 & 0xFF));
    return sub.empty() ? find(classKey(classCode >> 16)) : sub;
}

}  // namespace vrx
