#pragma once

#include <vector>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libDiagnosis/AskedProperty.h"

/// What a `device` element says about the device that it asks for, beside its attributes.
namespace vrx {

/// The properties that a device must have whatever else is the case: none of an `or` or a `not`.
std::vector<AskedProperty> askedProperties(const XmlElement& device);

/// Whether properties of that key tell one device from all others: serial numbers, addresses.
bool isIdentity(StringView key) noexcept;

/// The elements inside, as XML and without what a check has left there: equal for elements that ask for the same.
String contentOfDevice(const XmlElement& device);

/// The nearest `part` around the element; null when there is none.
const XmlElement* partAround(const XmlElement& element) noexcept;

}  // namespace vrx
