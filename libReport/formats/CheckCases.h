#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "libReport/CheckReport.h"

namespace vrx {

/// One test of a check, as programs that collect the results of tests want it.
struct CheckCase {
    enum class Outcome : std::uint8_t { Passed, Failed, Undetermined, Skipped };

    std::string name;  ///< printable, of each case another; it does not hang on the machine
    Outcome outcome = Outcome::Passed;
    std::string kind;                         ///< of what is wrong: that of a fault, "mistake", "error"
    std::vector<std::string> messages;        ///< printable, one line each
    ElementPlace place;                       ///< in the script; row 0 for none
    const CheckedElement* element = nullptr;  ///< borrowed from the report; null where it is about none
    std::vector<const Fault*> faults;         ///< likewise
};

/// A case for each `device` element and rule, and one for each fault that none of them tells of. Of a script that was
/// refused one for each mistake, of one that did not load one for each reason. A check that has not passed has a case
/// that says so, in any event. Requires: the report lists the elements of the script.
std::vector<CheckCase> checkCases(const CheckReport& report);

/// "passed", "failed", "undetermined", "skipped".
std::string_view nameOf(CheckCase::Outcome outcome) noexcept;

/// "file:row:column"; the file alone without a row.
std::string placeInScript(const CheckReport& report, const ElementPlace& place);

}  // namespace vrx
