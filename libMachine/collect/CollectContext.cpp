#include "libMachine/collect/CollectContext.h"

#include <fmt/format.h>
#include <unistd.h>

namespace vrx {

void CollectContext::note(std::string_view path, std::string_view reason, std::string_view lost) {
    notes.append(String::UTF8Decode(fmt::format("{}: {}; left out: {}", path, reason, lost)));
}

void CollectContext::noteAccess(std::string_view path, RootFolder::Access access, std::string_view lost) {
    switch (access) {
        case RootFolder::Access::Granted: return;
        case RootFolder::Access::Absent: return note(path, "absent", lost);
        case RootFolder::Access::Denied:
            return note(path, root.isLive() && geteuid() != 0 ? "needs root" : "permission denied", lost);
    }
}

}  // namespace vrx
