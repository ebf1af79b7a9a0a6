#pragma once

#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

class PropertyExpectation;

/// Whether a property's value is what is asked for; true when nothing but its presence is.
bool meets(const IPropertyImp& property, const PropertyExpectation& expectation);

/// The same for a property whose value is that text.
bool meets(StringView text, const PropertyExpectation& expectation);

/// The same, and the log is told. Requires: more than its presence is asked for.
bool meetsAloud(const IPropertyImp& property, const PropertyExpectation& expectation);

}  // namespace vrx
