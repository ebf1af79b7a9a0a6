#pragma once

#include <string>

#include "libCommon/containers/Array.h"
#include "libSystemState/UnreadSource.h"

namespace vrx {

class JsonWriter;

/// "SOURCE (REASON): what may be missing", printable.
std::string unreadText(const UnreadSource& unread);

/// An array with an object for each: source, reason, types and, where only these are missing, properties.
void writeUnread(JsonWriter& json, const Array<UnreadSource>& unread);

}  // namespace vrx
