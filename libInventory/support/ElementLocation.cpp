#include "libInventory/support/ElementLocation.h"

#include "libCommon/Assertion.h"
#include "libCommon/text/NumberText.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

String locationOf(const XmlElement* element) {
    VRX_ASSERT(element);
    return concat(u"(", toText(std::uint64_t{element->Row()} + 1), u":", toText(std::uint64_t{element->Column()} + 1),
                  u")");
}

}  // namespace vrx
