#pragma once

#include <utility>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/results/TipImp.h"

namespace vrx {

/// A tip that carries XML text: an annotated inventory script.
class VRX_EXPORT InventoryXmlTip final : public TipImp {
public:
    explicit InventoryXmlTip(String xmlText) : m_xml(std::move(xmlText)) {}

    /// The XML text itself.
    String toString(unsigned, bool) const override { return m_xml; }
    InventoryXmlTip* clone() const override { return new InventoryXmlTip(*this); }
    Type type() const override { return Type::InventoryXml; }

    const String& xml() const noexcept { return m_xml; }

private:
    String m_xml;
};

}  // namespace vrx
