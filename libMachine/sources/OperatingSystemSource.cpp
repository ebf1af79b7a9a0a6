/// The operating system, as a device of its own. An update must not make a script of the machine fail, so the name is
/// the distribution's without a version, and everything that an update or an administrator changes is Internal.

#include <algorithm>

#include "libMachine/collect/CollectContext.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

using Category = PropertyCategoryImp;

/// The value of a line KEY=VALUE or KEY="VALUE" of /etc/os-release; quotes inside a value are escaped.
std::string releaseValue(std::string_view text, std::string_view key) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.starts_with(key) || line.size() <= key.size() || line[key.size()] != '=') {
            continue;
        }
        line.remove_prefix(key.size() + 1);
        std::string value;
        for (std::size_t i = 0; i < line.size(); ++i) {
            const bool isEscape = line[i] == '\\' && i + 1 < line.size();
            if (isEscape) {
                value.push_back(line[++i]);
            } else if (line[i] != '"' && line[i] != '\'') {
                value.push_back(line[i]);
            }
        }
        return value;
    }
    return {};
}

std::string nameWithoutVersion(std::string_view name) {
    const bool hasVersion = name.find_first_of("0123456789") != std::string_view::npos;
    const std::string clean = hasVersion ? std::string() : cleanName(name);
    return clean.empty() ? "Linux" : clean;
}

}  // namespace

void collectOperatingSystem(CollectContext& context) {
    const RootFolder& root = context.root;
    std::string release = root.text("/etc/os-release");
    if (release.empty()) {
        release = root.text("/usr/lib/os-release");
    }
    const std::string kernel = root.text("/proc/sys/kernel/osrelease");
    if (release.empty() && kernel.empty()) {
        return context.noteAccess("/etc/os-release", RootFolder::Access::Absent, "the operating system");
    }
    DeviceRecord system;
    system.type = u"OperatingSystem";
    system.name = nameWithoutVersion(releaseValue(release, "NAME"));
    system.hwLocator = "os";
    system.osLocator = "/";
    system.parent = 0;
    system.text(property::VERSION, releaseValue(release, "VERSION"), Category::Internal());
    system.text(property::KERNEL_RELEASE, kernel, Category::Internal());
    system.text(property::ARCHITECTURE, root.text("/proc/sys/kernel/arch"), Category::Internal());
    system.text(property::HOST_NAME, root.text("/proc/sys/kernel/hostname"), Category::Internal());
    context.recording.add(std::move(system));
}

}  // namespace vrx
