#pragma once

#include <cstdint>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// Values as they were, for who quotes them later without having copied them: as long as there are moments, a property
/// that gets another value leaves the former one with them. Any thread may ask; with no moment this costs nothing.
class VRX_EXPORT ValueMoment {
public:
    /// The present moment.
    ValueMoment();
    ~ValueMoment();
    ValueMoment(const ValueMoment&) = delete;
    ValueMoment& operator=(const ValueMoment&) = delete;

    /// The text of the value that the property had then.
    String textOf(const IPropertyImp& property) const;

    /// For properties: this was the value until now.
    static void keep(const IPropertyImp& property, ValueImp&& former);

private:
    std::uint64_t m_time;
};

}  // namespace vrx
