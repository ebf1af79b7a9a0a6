#include "libInventory/generation/ValuePattern.h"

#include "libCommon/text/UuCode.h"
#include "libCommon/values/VRXValue.h"
#include "libRegex/Regex.h"

namespace vrx {

void escapeRegex(String& text) {
    constexpr StringView SPECIAL = u"\\^$.?*+{}()[]";
    if (text.view().find_first_of(SPECIAL) == StringView::npos) {
        return;
    }
    String escaped;
    escaped.reserve(text.size() + 8);
    for (const char16_t unit : text.view()) {
        if (SPECIAL.find(unit) != StringView::npos) {
            escaped.append(u'\\');
        }
        escaped.append(unit);
    }
    text = std::move(escaped);
}

String exactValuePattern(const String& text) {
    String escaped = text;
    escapeRegex(escaped);
    return concat(u"^", needsUuEncode(escaped) ? toXmlSafe(escaped) : escaped, u"$");
}

String rangePattern(double low, double high, const String& units) {
    return concat(u"^", Regex::VRXRRANGE(), u"[", VRXValue(low).toString(VRXValue::nilValue()), u"-",
                  VRXValue(high).toString(VRXValue::nilValue()), u"]", units.isEmpty() ? u"" : u" ", units, u"$");
}

}  // namespace vrx
