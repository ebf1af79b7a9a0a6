#include "libSystemState/properties/PropertyCategoryImp.h"

namespace vrx {

String PropertyCategoryImp::toString() const {
    static constexpr struct {
        PropertyCategoryImp category;
        StringView name;
    } names[] = {{SysInfo(), u"SysInfo"}, {Internal(), u"Internal"}, {Volatile(), u"Volatile"}, {Group(), u"Group"}};

    String text;
    for (const auto& entry : names) {
        if (intersect(entry.category)) {
            text.append(text.isEmpty() ? StringView() : StringView(u", ")).append(entry.name);
        }
    }
    return text;
}

}  // namespace vrx
