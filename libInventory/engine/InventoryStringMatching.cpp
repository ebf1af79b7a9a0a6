/// The engine's one string comparison. A pattern that does not match, or does not compile, still matches its own text,
/// so that a plain name with brackets in it works as people expect.

#include "libInventory/Inventory.h"
#include "libRegex/Regex.h"

namespace vrx {

bool Inventory::matchString(StringView pattern, StringView value) {
    if (Regex::rangeMatches(pattern, value, Regex::CASE_SENSITIVE)) {
        return true;
    }
    if (pattern.starts_with(u'^')) {
        pattern.remove_prefix(1);
    }
    if (pattern.ends_with(u'$')) {
        pattern.remove_suffix(1);
    }
    return equalNoCase(pattern, value);
}

}  // namespace vrx
