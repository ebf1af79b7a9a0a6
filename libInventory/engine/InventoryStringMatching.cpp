/// The engine's one string comparison. A pattern that does not match, or does not compile, still matches its own text,
/// so that a plain name with brackets in it works as people expect.

#include "libInventory/Inventory.h"
#include "libInventory/engine/matching/Anchors.h"
#include "libRegex/Regex.h"

namespace vrx {

bool Inventory::matchString(StringView pattern, StringView value) {
    if (Regex::rangeMatches(pattern, value, Regex::CASE_SENSITIVE)) {
        return true;
    }
    return equalNoCase(withoutAnchors(pattern), value);
}

}  // namespace vrx
