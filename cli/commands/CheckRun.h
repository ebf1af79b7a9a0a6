#pragma once

#include <string>

#include "cli/program/Session.h"
#include "libInventory/Inventory.h"
#include "libInventory/InventoryTestObserver.h"
#include "libReport/CheckReport.h"
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

    CheckRun(Request request, const Session& session);

    /// Loads the script, refuses one that cannot be decided, loads the machine, runs. Throws a CommandFailure when one
    /// of them is of no use; `report` then holds the reasons in `fileErrors`.
    void run();

    const CheckReport& report() const noexcept { return m_report; }

    /// How the program ends after such an outcome.
    ExitStatus status() const noexcept;

private:
    void loadScript();
    void refuse(const std::string& line);
    void loadState();
    void check();
    Verdict verdictOf(bool passed) const;

    const Request m_request;
    const Session& m_session;
    RunObserver m_observer;
    StateManager m_store;
    Inventory m_inventory;
    CheckReport m_report;
};

}  // namespace vrx::cli
