// What the program vrx-inventory does, done by calls: each function stands for one of its commands.

#include <iostream>
#include <string>
#include <vector>

#include "libDiagnosis/MachineChanges.h"
#include "libInventory/Inventory.h"
#include "libInventory/recording/SysInfoWriter.h"
#include "libLint/Lint.h"
#include "libMachine/MachineCollector.h"
#include "libMachine/MachineImport.h"
#include "libReport/CheckReport.h"
#include "libReport/changes/ChangesReport.h"
#include "libReport/lint/LintReport.h"
#include "libReport/parts/PartsReport.h"
#include "libReport/show/ShowReport.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace {

using namespace vrx;

/// collect: the machine that the program runs on, as a recording.
std::string collect() {
    StateManager machine;
    std::vector<CollectNote> notes;
    collectMachine(machine, CollectOptions(), notes);
    for (const CollectNote& note : notes) {
        std::cerr << noteText(note) << '\n';
    }
    return sysInfoXml(machine, false);
}

/// Any recording, whoever made it.
bool load(const std::string& path, StateManager& machine) {
    const ImportResult result = importMachineFile(path, machine);
    for (const ImportDamage& damage : result.damage) {
        std::cerr << damageText(damage) << '\n';
    }
    return result.isImported();
}

/// convert: the same machine as SysInfo XML.
std::string convert(const StateManager& machine) { return sysInfoXml(machine, false); }

/// show
std::string show(const StateManager& machine) {
    ShowReport report{machine, "a machine", {}};
    for (const auto& device : machine.devicesCapableOf(CapabilityImp::ALL())) {
        report.devices.push_back(device.get());
    }
    return writerNamed(showWriters(), "text")->write(report, TextFormat());
}

/// generate: a script that this machine passes.
String generate(StateManager& machine) {
    Inventory inventory;
    inventory.setStateManager(machine);
    String script;
    inventory.generateInventoryScript(script, false, true, true, nullptr);
    return script;
}

/// lint
std::string lint(const std::string& script) {
    Lint lint;
    if (lint.run(script) != Lint::Result::Done) {
        return lint.document().ErrorDesc().toUtf8();
    }
    return writerNamed(lintWriters(), "text")->write({"script.xml", lint.findings()}, TextFormat());
}

/// parts parse
std::string parts(const String& list) {
    PartsReport report;
    report.path = "parts.xml";
    report.result = Inventory::parsePartsList(list, report.parts, report.error);
    return writerNamed(partsWriters(), "json")->write(report, TextFormat());
}

/// check, with the report in every format there is.
bool check(StateManager& machine, const String& script) {
    Inventory inventory;
    inventory.setStateManager(machine);
    if (!inventory.loadInventoryScript(script)) {
        return false;
    }
    const bool passed = inventory.run();
    const CheckReport report = checkReport(inventory, machine, passed);
    for (const ReportWriter<CheckReport>& writer : checkWriters()) {
        std::cout << "== " << writer.name << '\n' << writer.write(report, TextFormat()) << '\n';
    }
    return passed;
}

/// show --against: what differs between two machines.
std::string changes(const StateManager& before, const StateManager& after) {
    const ChangesReport report{"before", "after", machineChanges(before, after, false)};
    return writerNamed(changesWriters(), "text")->write(report, TextFormat());
}

/// match: does a pattern describe a text?
bool match() { return Inventory::matchString(u"^VRXRRANGE[16-64] GB$", u"32 GB"); }

}  // namespace

/// tour <recording>: ends with 0 when the machine passes the script that was generated from it.
int main(int argc, char** argv) {
    StateManager machine;
    if (argc != 2 || !load(argv[1], machine)) {
        return 2;
    }
    StateManager again;
    importMachine(convert(machine), again);
    const String script = generate(machine);
    std::cout << show(machine) << lint(script.toUtf8()) << changes(machine, again)
              << parts(u"<parts><part name='all'><device type='Processor'/></part></parts>") << collect().size()
              << " bytes of this machine, " << (match() ? "a match" : "no match") << '\n';
    return check(machine, script) ? 0 : 1;
}
