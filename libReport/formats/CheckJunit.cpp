/// A test case for everything that the script asks for. What has failed for sure is a failure, what nobody can tell is
/// an error.

#include "libReport/formats/CheckCases.h"
#include "libReport/formats/JunitSuite.h"
#include "libReport/text/TextPieces.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

JunitSuite::Outcome outcomeOf(CheckCase::Outcome outcome) noexcept {
    switch (outcome) {
        case CheckCase::Outcome::Passed: return JunitSuite::Outcome::Passed;
        case CheckCase::Outcome::Failed: return JunitSuite::Outcome::Failure;
        case CheckCase::Outcome::Skipped: return JunitSuite::Outcome::Skipped;
        case CheckCase::Outcome::Undetermined: break;
    }
    return JunitSuite::Outcome::Error;
}

}  // namespace

std::string checkJunit(const CheckReport& report, const TextFormat&) {
    JunitSuite suite;
    suite.name = inputName(report.script);
    suite.host = report.machine.hostName.toUtf8();
    suite.started = report.started;
    suite.duration = report.duration;
    suite.properties = {{"program", std::string(PROGRAM_NAME)},
                        {"version", std::string(report.version)},
                        {"verdict", std::string(nameOf(report.verdict))},
                        {"machine", report.state ? inputName(*report.state) : "this machine"},
                        {"manufacturer", report.machine.manufacturer.toUtf8()},
                        {"model", report.machine.model.toUtf8()},
                        {"serialNumber", report.machine.serialNumber.toUtf8()}};
    for (CheckCase& one : checkCases(report)) {
        suite.cases.push_back(
            {std::move(one.name), outcomeOf(one.outcome), std::move(one.kind), std::move(one.messages)});
        suite.cases.back().lines.push_back(placeInScript(report, one.place));
    }
    return junitText(suite);
}

}  // namespace vrx
