#include "libCommon/values/VRXValue.h"

#include <type_traits>

#include "libCommon/text/NumberText.h"

namespace vrx {

const VRXValue& VRXValue::nilValue() {
    static const VRXValue nil;
    return nil;
}

String VRXValue::toString(const VRXValue& format) const {
    VRX_ASSERT(format.isNil());
    return std::visit(
        [](const auto& value) -> String {
            using Value = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<Value, std::monostate>) {
                return String();
            } else if constexpr (std::is_same_v<Value, bool>) {
                return value ? u"true" : u"false";
            } else if constexpr (std::is_same_v<Value, String>) {
                return value;
            } else {
                return toText(value);
            }
        },
        m_value);
}

}  // namespace vrx
