#include "libReport/changes/UntoldText.h"

#include <fmt/format.h>

#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

std::string untoldText(const UntoldChanges::Count& untold) {
    std::string text = untold.devices > 0 ? counted(untold.devices, "device") : "";
    if (untold.values > 0) {
        text += (text.empty() ? "" : " and ") +
                (untold.values == 1 ? "1 property" : fmt::format("{} properties", untold.values));
    }
    const bool isOne = untold.devices + untold.values == 1;
    return fmt::format("{} {} in one recording only, and the other cannot tell of {}", text, isOne ? "is" : "are",
                       isOne ? "it" : "them");
}

std::string comparedWord(bool isEqual, bool isUntold, const TextFormat& format) {
    return !isEqual   ? styled("DIFFERENT", Style::Bad, format.colour)
           : isUntold ? styled("UNDETERMINED", Style::Caution, format.colour)
                      : styled("EQUAL", Style::Good, format.colour);
}

}  // namespace vrx
