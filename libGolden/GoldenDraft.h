#pragma once

#include <string>
#include <vector>

#include "libGolden/GoldenDecision.h"
#include "libSystemState/StateManager.h"

/// What several good machines have in common, decided and not yet written.
///
///     const GoldenDraft draft = goldenDraft({{&a, "a"}, {&b, "b"}, {&c, "c"}}, GoldenOptions());
///     std::ofstream("golden.xml") << goldenScript(draft, GoldenForm()).toUtf8();
namespace vrx {

/// A machine that is known to be good. The store is borrowed.
struct GoldenMachine {
    const StateManager* store = nullptr;
    std::string name;  ///< how comments and reports call it
};

struct GoldenOptions {
    bool hasAllCategories = false;  ///< properties of the categories Volatile, Internal and Group as well
    bool checksNames = true;
    bool checksHwLocators = true;
    bool checksOsLocators = true;
    const SysinfoFilter* filter = nullptr;  ///< borrowed; null selects everything
    double mostSpread = 5;                  ///< numbers that lie nearer become a range; percent of the largest
    std::size_t mostAlternatives = 4;       ///< texts of one thing
    bool failsOnExtra = false;              ///< wants `closedTypes`
};

struct GoldenDraft {
    std::vector<std::string> machines;
    std::vector<GoldenDevice> devices;  ///< in the order of the first machine; stores stay borrowed
    Array<String> closedTypes;          ///< every device of these types is asked for, on every machine
};

/// Whether all machines have a device in common.
bool asksForAnything(const GoldenDraft& draft);

/// Requires: at least one machine. Their devices have types, and keys that a script can ask for.
GoldenDraft goldenDraft(const std::vector<GoldenMachine>& machines, const GoldenOptions& options);

}  // namespace vrx
