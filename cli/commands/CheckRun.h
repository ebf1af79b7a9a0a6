#pragma once

#include <string>

#include "cli/program/Session.h"
#include "libInventory/Inventory.h"
#include "libInventory/InventoryTestObserver.h"
#include "libReport/check/CheckOutcome.h"
#include "libSystemState/StateManager.h"

namespace vrx::cli {

/// Keeps what a run tells its observers, but for the closing event of a failed check: whoever wants the annotated
/// script asks the inventory for it.
class RunObserver final : public InventoryTestObserver {
public:
    void handleEvent(const TestRunEventImp& event) override;
    void handleFileError(const String& msg) override { fileErrors.append(msg); }

    Array<String> fileErrors;
    Array<TestRunEventImp> events;
};

/// One check of a script file against a machine, up to the outcome that reports are made from.
class CheckRun {
public:
    struct Request {
        std::string scriptPath;
        std::string statePath;
        bool hasUnsatisfiedTips = true;
    };

    CheckRun(const Request& request, const Session& session);

    /// Loads the script, refuses one that cannot be decided, loads the machine, runs. Throws a CommandFailure when one
    /// of them is of no use; `outcome` then holds the reasons in `fileErrors`.
    void run();

    const CheckOutcome& outcome() const noexcept { return m_outcome; }

    /// How the program ends after such an outcome.
    ExitStatus status() const noexcept;

private:
    void loadScript();
    void refuse(const std::string& line);
    void loadState();
    void check();
    Verdict verdictOf(bool passed) const;

    const Request& m_request;
    const Session& m_session;
    RunObserver m_observer;
    StateManager m_store;
    Inventory m_inventory;
    CheckOutcome m_outcome;
};

}  // namespace vrx::cli
