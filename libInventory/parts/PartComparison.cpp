#include "libInventory/parts/PartComparison.h"

#include <algorithm>
#include <vector>

namespace vrx {

namespace {

std::vector<StringView> sortedNames(const Array<Inventory::PartSpec>& parts) {
    std::vector<StringView> names;
    names.reserve(parts.size());
    for (const Inventory::PartSpec& part : parts) {
        names.push_back(part.name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

bool samePartSet(const Array<Inventory::PartSpec>& a, const Array<Inventory::PartSpec>& b) {
    return a.size() == b.size() && sortedNames(a) == sortedNames(b);
}

bool containsPart(const Array<Inventory::PartSpec>& list, const Inventory::PartSpec& part) {
    return std::any_of(list.begin(), list.end(), [&](const Inventory::PartSpec& entry) {
        return entry.name == part.name && entry.devices == part.devices;
    });
}

}  // namespace vrx
