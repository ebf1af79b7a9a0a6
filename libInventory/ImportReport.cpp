#include "libInventory/ImportReport.h"

#include "libCommon/text/NumberText.h"

namespace vrx {

namespace {

/// The reason and where it was met. What the parser says of the very beginning has no place, nor has a file that could
/// not be read.
String placedReason(const ImportReport& report) {
    if (report.row <= 1 && report.column <= 1) {
        return report.reason;
    }
    return concat(report.reason, u" (", toText(report.row), u":", toText(report.column), u")");
}

}  // namespace

String ImportReport::Skipped::line() const { return concat(u"Could not find UnitType for string: ", text); }

Array<String> ImportReport::failureLines() const {
    const String operation =
        isFile ? concat(u"importStateFromXmlFile(", path, u")") : String(u"importStateFromXmlString()");
    switch (failure) {
        case Failure::None: return {};
        case Failure::Unreadable:
        case Failure::Malformed:
            return {concat(operation, isFile ? u" LoadFile failed: " : u" Parse failed: ", placedReason(*this))};
        case Failure::NoRoot:
            // Contract: the two operations spell the missing root differently.
            return {operation + (isFile ? u" root element not found in xml." : u" root element notforfound in xml.")};
        case Failure::NoDevices: break;
    }
    return {u"Failed to parse sysinfo file", operation + u" populateStateManagerRecursive failed."};
}

Array<String> ImportReport::errorLines() const {
    Array<String> lines;
    for (const Skipped& one : skipped) {
        lines.append(one.line());
    }
    for (const String& line : failureLines()) {
        lines.append(line);
    }
    return lines;
}

}  // namespace vrx
