#include "libReport/DeviceCheckReport.h"
#include "libInventory/InventoryTestObserver.h"
#include "libInventory/script/ScriptContent.h"
#include "libReport/ReportFindings.h"

namespace vrx {

namespace {

class EventKeeper final : public InventoryTestObserver {
public:
    void handleEvent(const TestRunEventImp& event) override { events.append(event); }
    Array<TestRunEventImp> events;
};

Verdict verdictOfDevice(const Inventory& engine, bool passed, const Certainty& certainty) {
    if (engine.summary().patternsGivenUp > 0 || certainty.couldHavePassed || certainty.couldHaveFailed) {
        return Verdict::Undecided;
    }
    if (!passed) {
        return Verdict::Failed;
    }
    const bool asksForSomething = hasElement(*engine.script().RootElement(), vocabulary::ElementKind::Property);
    return asksForSomething ? Verdict::Passed : Verdict::NothingToCheck;
}

}  // namespace

DeviceCheckReport checkDevice(const IDeviceImp& device, const String& content, bool withScript,
                              const StateManager* machine, const CheckBasis& basis) {
    DeviceCheckReport report;
    report.device = specOf(device);
    report.guid = device.guid();
    report.isTypeUsable = Inventory::canCheckDevice(device);
    if (!report.isTypeUsable && !basis.isPlain) {
        report.verdict = Verdict::Undecided;
        return report;
    }
    EventKeeper observer;
    Inventory engine;
    const bool passed = Inventory::checkDevice(device, content, &observer, withScript, engine);
    report.events = std::move(observer.events);
    if (engine.script().Error() || engine.script().RootElement() == nullptr) {
        return report;
    }
    if (basis.isPlain) {
        report.verdict = passed ? Verdict::Passed : Verdict::Failed;
    } else {
        Certainty certainty;
        if (machine != nullptr) {
            certainty = certaintyOfDevice(engine, device, *machine, basis.import, passed);
        }
        report.verdict = verdictOfDevice(engine, passed, certainty);
        report.doubts = std::move(certainty.doubts);
    }
    if (withScript) {
        report.annotatedScript = engine.script().toString();
    }
    if (!passed) {
        addFindings(engine.findings(), engine, nullptr, report.findings, report.devices);
    }
    return report;
}

}  // namespace vrx
