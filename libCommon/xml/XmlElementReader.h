#pragma once

#include "libCommon/Export.h"

namespace vrx {

class XmlElement;

/// Reads elements while their document is still being parsed, so that a large document need not be held as a whole.
class VRX_EXPORT XmlElementReader {
public:
    virtual ~XmlElementReader();

    /// Called at the end tag of each element, so for inner elements before outer ones. True when nobody needs the
    /// element's attributes and children any more: they are gone when the call has returned. The element itself stays,
    /// with its name and user data. What was read counts only if the parse succeeds.
    virtual bool readElement(XmlElement& element) = 0;
};

}  // namespace vrx
