/// Only a mistake pays for the edit distance.

#include "libCommon/text/NearestName.h"

#include "libCommon/text/EditDistance.h"
#include "libCommon/text/PrintableText.h"

namespace vrx {

namespace {

constexpr std::size_t FARTHEST = 2;
constexpr std::size_t LONGEST_COMPARED = 40;

}  // namespace

StringView nearestName(StringView written, std::span<const StringView> names) {
    if (written.size() > LONGEST_COMPARED) {
        return {};
    }
    const String folded = foldCase(written);
    std::size_t least = FARTHEST + 1;
    StringView nearest;
    for (const StringView name : names) {
        const std::size_t distance = editDistance(folded, foldCase(name));
        if (distance < least && distance < name.size()) {
            least = distance;
            nearest = name;
        }
    }
    return nearest;
}

std::string suggestion(StringView written, std::span<const StringView> names) {
    const StringView nearest = nearestName(written, names);
    return nearest.empty() ? std::string() : "; did you mean \"" + printable(nearest) + "\"?";
}

}  // namespace vrx
