#pragma once

#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlDocument.h"

namespace vrx {

/// An element of a script that got `error` children, with their whole texts in order.
struct ScriptFinding {
    const XmlElement* element;
    Array<String> messages;
};

/// Every such element, in document order.
std::vector<ScriptFinding> findingsOf(const XmlDocument& annotatedScript);

/// The same of an element and everything inside it.
std::vector<ScriptFinding> findingsIn(const XmlElement& element);

}  // namespace vrx
