#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/results/TipImp.h"

namespace vrx {

class XmlElement;

/// A tip about an element of an inventory script. It keeps the element's place, not the element: an engine may hold
/// many tips about large elements.
///
///     for (const auto& tip : event.tips()) {
///         if (tip->type() == TipImp::Type::Inventory) {
///             std::cerr << tip->toString(0, true).toUtf8() << '\n';            // with file, row and column
///         }
///     }
class VRX_EXPORT InventoryTip final : public TipImp {
public:
    /// `file` is the script's path; `element` may be null; the two further strings are appended to the text when they
    /// are not empty.
    InventoryTip(String message, String file, const XmlElement* element, String first, String second);

    /// The message; then, for each of the two further strings that is not empty, ": " and that string. With `verbose`
    /// followed by " [" file "(" row ":" column ")]", 1-based, without the place when there was no element. `indent`
    /// changes nothing.
    String toString(unsigned indent, bool verbose) const override;
    InventoryTip* clone() const override { return new InventoryTip(*this); }
    Type type() const override { return Type::Inventory; }

    const String& message() const noexcept { return m_message; }

private:
    String m_message;
    String m_file;
    String m_first;
    String m_second;
    std::uint32_t m_row = 0;  ///< 1-based; 0 without an element
    std::uint32_t m_column = 0;
};

}  // namespace vrx
