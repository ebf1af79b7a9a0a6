#include "libCommon/text/EditDistance.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace vrx {

std::size_t editDistance(StringView a, StringView b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t above = row[j + 1];
            row[j + 1] = std::min({above + 1, row[j] + 1, diagonal + (a[i] == b[j] ? 0u : 1u)});
            diagonal = above;
        }
    }
    return row.back();
}

}  // namespace vrx
