/// The check of one device as one test case; of content that was refused a case for each mistake.

#include <fmt/format.h>

#include "libReport/faults/DifferenceText.h"
#include "libReport/formats/JunitSuite.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/DoubtText.h"
#include "libReport/writers/Writers.h"

namespace vrx {

namespace {

JunitSuite::Case caseOfDevice(const DeviceCheckReport& report) {
    JunitSuite::Case one{
        deviceTitle(report.device), JunitSuite::Outcome::Passed, std::string(nameOf(report.verdict)), {}};
    if (report.verdict == Verdict::Passed) {
        return one;
    }
    one.outcome = report.verdict == Verdict::Failed ? JunitSuite::Outcome::Failure : JunitSuite::Outcome::Error;
    one.lines.push_back(one.name + (report.verdict == Verdict::Failed ? " does not meet the content"
                                                                      : " cannot be judged by the content"));
    for (const DeviceProblem& problem : report.devices) {
        if (problem.candidates.nearest) {
            for (const Difference& difference : problem.candidates.nearest->differences) {
                one.lines.push_back(fmt::format("{}: expected {}, found {}", subjectText(difference),
                                                expectedText(difference), foundText(difference)));
            }
        }
    }
    for (const Doubt& doubt : report.doubts) {
        one.lines.push_back(doubtText(doubt));
    }
    return one;
}

}  // namespace

std::string deviceCheckJunit(const DeviceCheckReport& report, const TextFormat&) {
    JunitSuite suite;
    suite.name = "check-device";
    suite.started = report.started;
    for (const ScriptMistake& mistake : report.mistakes) {
        suite.cases.push_back({fmt::format("lint {} #{}", mistake.finding.rule, suite.cases.size() + 1),
                               JunitSuite::Outcome::Error,
                               "mistake",
                               {mistakeLine(mistake)}});
    }
    if (report.mistakes.empty()) {
        suite.cases.push_back(caseOfDevice(report));
    }
    return junitText(suite);
}

}  // namespace vrx
