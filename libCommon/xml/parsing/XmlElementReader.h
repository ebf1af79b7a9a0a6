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

    /// A reader for one more thread, which reads another part of the same document at the same time and is asked for
    /// before any part is read. It lives as long as this one, and is started over with it. Null, the default, when one
    /// thread has to read all.
    virtual XmlElementReader* forAnotherThread() { return nullptr; }

    /// What was read so far does not count: the document is read again, from its start. Only readers of files are told.
    virtual void startOver() {}

    /// Following places through the text takes time, so only the root and the elements that have an attribute of this
    /// name (UTF-8) tell theirs; the others say 0. Asked once. Empty, the default, for the root alone.
    virtual const char* attributeOfPlacedElements() const noexcept;
};

}  // namespace vrx
