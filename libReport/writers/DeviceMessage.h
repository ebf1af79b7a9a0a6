#pragma once

#include <optional>
#include <string>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libSystemState/StateManager.h"

namespace vrx {

/// What a message on a `device` element says: what was asked for and what the machine has, or one sentence.
struct DeviceMessage {
    std::string sentence;  ///< when it is not empty the other two are
    std::string expected;
    std::string found;
    String pattern;  ///< the pattern that no device meets; empty when it was none
};

/// Reads one message. Nothing for the message that every unsatisfied device gets: it says no more than its heading.
std::optional<DeviceMessage> deviceMessage(const XmlElement& device, StringView message, const StateManager* machine);

/// A `device` element in a few words: type, name and locators that it asks for.
std::string deviceHeading(const XmlElement& device);

}  // namespace vrx
