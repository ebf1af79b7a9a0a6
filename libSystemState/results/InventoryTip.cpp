#include "libSystemState/results/InventoryTip.h"

#include <utility>

#include "libCommon/text/NumberText.h"
#include "libCommon/xml/XmlElement.h"

namespace vrx {

InventoryTip::InventoryTip(String message, String file, const XmlElement* element, String first, String second)
    : m_message(std::move(message)), m_file(std::move(file)), m_first(std::move(first)), m_second(std::move(second)) {
    if (element) {
        m_row = element->Row() + 1;
        m_column = element->Column() + 1;
    }
}

String InventoryTip::toString(unsigned, bool verbose) const {
    String text = m_message;
    for (const String* further : {&m_first, &m_second}) {
        if (!further->isEmpty()) {
            text.append(u": ").append(*further);
        }
    }
    if (verbose) {
        text.append(u" [").append(m_file);
        if (m_row > 0) {
            text.append(u'(').append(toText(m_row)).append(u':').append(toText(m_column)).append(u')');
        }
        text.append(u']');
    }
    return text;
}

}  // namespace vrx
