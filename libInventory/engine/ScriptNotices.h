#pragma once

#include "libCommon/Forward.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"

namespace vrx {

struct InventoryState;

/// Tells the observers of a run about it.
class ScriptNotices {
public:
    explicit ScriptNotices(InventoryState& state) noexcept : m_state(state) {}

    void unknownElement(const XmlElement& element);
    void notUnderNot(const XmlElement& element);

    /// A script that could not be read or used.
    void fileError(const String& message);

    /// The closing event of a run that failed, with the annotated script.
    void testFailed();

private:
    template <typename Tell>
    void tellAll(const Tell& tell);
    void notify(const TestRunEventImp& event);

    InventoryState& m_state;
};

}  // namespace vrx
