#pragma once

#include "libCommon/Forward.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// What could not be read of a machine, in a recording: `UnreadSource` elements beside the devices. Imports look for
/// devices only and pass them over.
///
///     <UnreadSource source="/sys/firmware/dmi/tables/DMI" reason="needs root">
///         <DeviceType>MemoryModule</DeviceType>
///     </UnreadSource>
///
/// `DeviceType` children name the types, `Key` children the properties where only these are missing. One that names no
/// type, or one that is none, may stand for devices of any type.

/// Adds what the recording with that root element tells to the store.
void readUnread(const XmlElement& root, StateManager& store);

/// Adds an element for each unread source of the store to `list`.
void writeUnread(const StateManager& store, XmlDocument& document, XmlElement& list);

}  // namespace vrx
