#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// A hint attached to a result or an event: what was wrong, in words.
///
///     for (const auto& tip : event.tips()) {
///         show(tip->toString(0, true));
///     }
class VRX_EXPORT TipImp {
public:
    enum class Type { Inventory, InventoryXml };

    virtual ~TipImp() = default;
    virtual String toString(unsigned indent, bool verbose) const = 0;
    virtual TipImp* clone() const = 0;  ///< the caller owns the copy
    virtual Type type() const = 0;

protected:
    TipImp() = default;
    TipImp(const TipImp&) = default;
    TipImp& operator=(const TipImp&) = default;
};

}  // namespace vrx
