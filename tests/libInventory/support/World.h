#pragma once

#include <boost/shared_ptr.hpp>
#include <string>
#include <utility>
#include <vector>

#include "libInventory/Inventory.h"
#include "libInventory/InventoryTestObserver.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/results/TestRunEventImp.h"

/// Small made-up machines and what a run says of them, in UTF-8 so that expectations read well.
namespace vrx::test {

using Properties = std::vector<std::pair<std::string, std::vector<std::string>>>;

/// Adds a device; a property with one value is a string, with another number of values a string array.
boost::shared_ptr<IDeviceImp> addDevice(StateManager& store, const std::string& type, const std::string& name,
                                        const std::string& hwLocator, const std::string& osLocator = "",
                                        const Properties& properties = {});

String text(const std::string& utf8);
std::string utf8(const String& text);

/// Keeps everything that it hears.
class RecordingObserver : public InventoryTestObserver {
public:
    void handleEvent(const TestRunEventImp& event) override { events.push_back(event); }
    void handleFileError(const String& msg) override { fileErrors.push_back(utf8(msg)); }

    std::vector<TestRunEventImp> events;
    std::vector<std::string> fileErrors;
};

struct Outcome {
    bool loaded = false;
    bool passed = false;
    bool satisfied = false;
    std::string annotated;
    std::vector<std::string> unsatisfied;  ///< names of the missing devices, or their hardware locators
    std::vector<std::string> extra;        ///< names of the extra devices
    std::vector<std::string> errors;       ///< texts of all `error` elements in document order
    std::vector<std::string> events;       ///< names of the events
};

/// Loads and runs a script; `body` stands inside `inventory-check`.
Outcome check(StateManager& store, const std::string& body, const std::string& rootAttributes = "");

}  // namespace vrx::test
