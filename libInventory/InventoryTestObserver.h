#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

class TestRunEventImp;

/// Through this a host hears what an inventory test does. Derive from it and override what is wanted; each operation
/// of the base class writes one log line at priority 1 to the logger "InventoryTestObserver" and does nothing else.
///
///     class Notices : public InventoryTestObserver {
///         void handleEvent(const TestRunEventImp& event) override { m_names.append(event.name()); }
///         void handleFileError(const String& msg) override { m_problems.append(msg); }
///         ...
///     };
///     inventory.registerInventoryObserver(notices);
///
/// All calls come synchronously on the thread that called the engine. While it is told something, an observer may
/// register others, which hear of what comes after, and add devices to the store, which elements after the present one
/// are matched with. What a run found is read from the `Inventory` afterwards (Finding.h).
class VRX_EXPORT InventoryTestObserver {
public:
    InventoryTestObserver() = default;
    InventoryTestObserver(const InventoryTestObserver&) = default;
    InventoryTestObserver& operator=(const InventoryTestObserver&) = default;
    virtual ~InventoryTestObserver() = default;

    /// A text about progress. The engine never calls it; it exists for hosts that share one observer among modules.
    virtual void handleProgress(const String& msg);

    /// A notice about the script (event type 2) or a failed test (event type 1, with the annotated script as a tip).
    /// The event lives only for the duration of the call.
    virtual void handleEvent(const TestRunEventImp& event);

    /// Whether it reads that tip, whose text takes time to write. Without anybody who does the event comes without.
    virtual bool readsAnnotatedScript() const { return true; }

    /// A script that could not be read or used.
    virtual void handleFileError(const String& msg);

    /// Progress in percent. The engine never calls it.
    virtual void handlePercentDone(int iPercent);
};

}  // namespace vrx
