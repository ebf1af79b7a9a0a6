#include "libReport/formats/JunitSuite.h"

#include <fmt/format.h>

#include <algorithm>

#include "libReport/ProgramVersion.h"
#include "libReport/text/MarkupText.h"

namespace vrx {

namespace {

std::size_t countOf(const JunitSuite& suite, JunitSuite::Outcome outcome) {
    return static_cast<std::size_t>(std::ranges::count(suite.cases, outcome, &JunitSuite::Case::outcome));
}

std::string timestampOf(const JunitSuite& suite) {
    std::string text = suite.started.toIso8601().toUtf8();
    text.erase(text.find_last_not_of('Z') + 1);
    return text;
}

void writeProperties(std::string& out, const JunitSuite& suite) {
    out += "    <properties>\n";
    for (const auto& [name, value] : suite.properties) {
        if (!value.empty()) {
            out += fmt::format("      <property name=\"{}\" value=\"{}\"/>\n", xmlAttribute(name), xmlAttribute(value));
        }
    }
    out += "    </properties>\n";
}

void writeProblem(std::string& out, const char* element, const JunitSuite::Case& one) {
    out += fmt::format("      <{} type=\"{}\" message=\"{}\">", element, xmlAttribute(one.kind),
                       xmlAttribute(one.lines.front()));
    const char* separator = "";
    for (const std::string& line : one.lines) {
        out += separator + xmlText(line);
        separator = "\n";
    }
    out += fmt::format("</{}>\n", element);
}

void writeCase(std::string& out, const JunitSuite& suite, const JunitSuite::Case& one) {
    out += fmt::format(R"(    <testcase name="{}" classname="{}" time="0")", xmlAttribute(one.name),
                       xmlAttribute(suite.name));
    if (one.outcome == JunitSuite::Outcome::Passed) {
        out += "/>\n";
        return;
    }
    out += ">\n";
    if (one.outcome == JunitSuite::Outcome::Skipped) {
        out += fmt::format("      <skipped message=\"{}\"/>\n", xmlAttribute(one.lines.front()));
    } else {
        writeProblem(out, one.outcome == JunitSuite::Outcome::Failure ? "failure" : "error", one);
    }
    out += "    </testcase>\n";
}

}  // namespace

std::string junitText(const JunitSuite& suite) {
    return std::string(JUNIT_START) + junitSuite(suite, 0) + std::string(JUNIT_END);
}

std::string junitSuite(const JunitSuite& suite, std::size_t number) {
    std::string out = fmt::format(
        R"(  <testsuite name="{}" package="{}" id="{}" timestamp="{}" hostname="{}" tests="{}" failures="{}" errors="{}" )"
        R"(skipped="{}" time="{:.3f}">)",
        xmlAttribute(suite.name), PROGRAM_NAME, number, timestampOf(suite),
        xmlAttribute(suite.host.empty() ? "localhost" : suite.host), suite.cases.size(),
        countOf(suite, JunitSuite::Outcome::Failure), countOf(suite, JunitSuite::Outcome::Error),
        countOf(suite, JunitSuite::Outcome::Skipped), std::chrono::duration<double>(suite.duration).count());
    out += "\n";
    writeProperties(out, suite);
    for (const JunitSuite::Case& one : suite.cases) {
        writeCase(out, suite, one);
    }
    return out + "    <system-out/>\n    <system-err/>\n  </testsuite>\n";
}

}  // namespace vrx
