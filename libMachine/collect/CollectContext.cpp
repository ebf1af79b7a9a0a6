#include "libMachine/collect/CollectContext.h"

#include <unistd.h>

namespace vrx {

void CollectContext::note(std::string_view path, CollectNote::Reason reason, std::string_view detail,
                          const LeftOut& lost) {
    CollectNote& note = notes.emplace_back(reason, std::string(path), std::string(detail), lost.words);
    for (const StringView type : lost.types) {
        note.types = note.types | CapabilityImp(type);
    }
    for (const StringView key : lost.keys) {
        note.properties.append(String(key));
    }
}

void CollectContext::noteAccess(std::string_view path, RootFolder::Access access, const LeftOut& lost) {
    using Reason = CollectNote::Reason;
    switch (access) {
        case RootFolder::Access::Granted: return;
        case RootFolder::Access::Absent: return note(path, Reason::Absent, "absent", lost);
        case RootFolder::Access::Denied:
            return root.isLive() && geteuid() != 0 ? note(path, Reason::NeedsRoot, "needs root", lost)
                                                   : note(path, Reason::Denied, "permission denied", lost);
    }
}

}  // namespace vrx
