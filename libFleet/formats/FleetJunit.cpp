/// A suite for each machine, with a case for each of its faults. A machine without any has one case, which says that it
/// passed or why it did not. Programs show cases by name, so each has its own: that of its machine stands in front, and
/// equal ones of a machine have a number.

#include <map>

#include "libCommon/text/PrintableText.h"
#include "libFleet/formats/Formats.h"
#include "libReport/ProgramVersion.h"
#include "libReport/formats/JunitSuite.h"

namespace vrx {

namespace {

JunitSuite::Case caseOf(const FleetFault& fault) {
    const bool isSure = fault.key.kind != nameOf(FaultKind::Undetermined);
    return {fault.key.title(),
            isSure ? JunitSuite::Outcome::Failure : JunitSuite::Outcome::Error,
            fault.key.kind,
            {fault.text}};
}

/// What the faults do not say.
JunitSuite::Case verdictCase(const FleetResult& result) {
    const std::string text = printable(std::string_view(result.headline));
    switch (result.verdict) {
        case FleetVerdict::Passed: return {"inventory", JunitSuite::Outcome::Passed, {}, {}};
        case FleetVerdict::Failed: return {"inventory", JunitSuite::Outcome::Failure, "failed", {text}};
        default: return {"inventory", JunitSuite::Outcome::Error, std::string(nameOf(result.verdict)), {text}};
    }
}

/// A verdict that no fault tells of needs a case of its own.
bool isTold(const FleetResult& result) {
    for (const FleetFault& fault : result.faults) {
        const bool isDoubt = fault.key.kind == nameOf(FaultKind::Undetermined);
        if (isDoubt == (result.verdict != FleetVerdict::Failed)) {
            return true;
        }
    }
    return false;
}

void nameApart(JunitSuite& suite) {
    std::map<std::string, std::size_t> counts;
    for (JunitSuite::Case& one : suite.cases) {
        const std::size_t count = ++counts[one.name];
        one.name = suite.name + ": " + one.name + (count == 1 ? std::string() : " (" + std::to_string(count) + ")");
    }
}

class JunitSuites final : public FleetWriter {
public:
    void begin(std::string& out) override { out += JUNIT_START; }

    void add(const FleetResult& result, std::optional<std::uint32_t>, std::string& out) override {
        JunitSuite suite;
        suite.name = printable(std::string_view(result.file));
        suite.host = result.hostName;
        suite.started = DateTime::fromIso8601(String::UTF8Decode(result.time)).value_or(DateTime());
        suite.properties = {{"program", std::string(PROGRAM_NAME)},
                            {"verdict", std::string(nameOf(result.verdict))},
                            {"script", result.script},
                            {"manufacturer", result.manufacturer},
                            {"model", result.model},
                            {"serialNumber", result.serialNumber}};
        for (const FleetFault& fault : result.faults) {
            suite.cases.push_back(caseOf(fault));
        }
        if (!isTold(result)) {
            suite.cases.push_back(verdictCase(result));
        }
        nameApart(suite);
        out += junitSuite(suite, m_number++);
    }

    void end(const FleetSummary&, std::string& out) override { out += JUNIT_END; }

private:
    std::size_t m_number = 0;
};

}  // namespace

std::unique_ptr<FleetWriter> fleetJunit(const TextFormat&) { return std::make_unique<JunitSuites>(); }

}  // namespace vrx
