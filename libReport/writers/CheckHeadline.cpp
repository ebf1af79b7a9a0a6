/// The head line of a check.
///
/// Of a missing device the device at its place is what became of it. Without a locator in the script the candidate
/// whose properties come nearest stands in, and then the line says so, because another device may have been meant. A
/// device that is there is said to differ, in the first thing that does, or to be taken.

#include "libReport/writers/CheckHeadline.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <set>
#include <utility>
#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/ReadablePattern.h"
#include "libReport/text/TextPieces.h"
#include "libReport/writers/DifferenceText.h"

namespace vrx {

namespace {

constexpr std::size_t LONGEST_TEXT = 60;

/// The text, or its beginning when it is too long for a head line. It is printable UTF-8.
std::string shortened(std::string text) {
    if (text.size() <= LONGEST_TEXT) {
        return text;
    }
    std::size_t end = LONGEST_TEXT;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
        --end;
    }
    return text.substr(0, end) + "...";
}

/// The name that an element asks for, in quotes unless it is a true pattern; empty when it asks for none.
std::string askedName(const String& asked) {
    const std::string name = readablePattern(asked);
    if (name == "\"\"") {
        return {};
    }
    const bool isLiteral = !name.starts_with("pattern ") && !name.starts_with("begins with ") &&
                           !name.starts_with("ends with ") && !name.starts_with('"');
    return isLiteral ? "\"" + name + "\"" : name;
}

/// `TYPE "NAME" (LOCATOR)` of what an element asks for; `device`, if any, tells what the element leaves open.
std::string titleOf(const Inventory::DeviceSpec& asked, const Inventory::DeviceSpec* device) {
    std::string title = printable(asked.type);
    std::string name = askedName(asked.name);
    if (device != nullptr && !device->name.isEmpty() && !name.starts_with('"')) {
        name = "\"" + printable(device->name) + "\"";
    }
    title += (name.empty() ? "" : " ") + name;
    String locator = asked.hwLocator;
    if (locator.isEmpty() && device != nullptr) {
        locator = device->hwLocator;
    }
    if (locator.isEmpty()) {
        locator = asked.osLocator;
    }
    return (title.empty() ? "device without a type" : title) +
           (locator.isEmpty() ? "" : " (" + printable(locator) + ")");
}

std::string firstDifference(const NearDevice& near) {
    const Difference& first = near.differences.front();
    return subjectText(first) + ": expected " + shortened(expectedText(first)) + ", found " +
           shortened(foundText(first));
}

std::string textAtPlace(const DeviceProblem& problem) {
    const NearDevice& near = *problem.atPlace;
    const std::string title = titleOf(problem.asked, &near.device);
    if (!near.differences.empty()) {
        return title + " differs: " + firstDifference(near);
    }
    if (problem.candidates.taken.empty()) {
        return title + " is missing";
    }
    const ElementPlace& holder = problem.candidates.taken.front().holder;
    return title + fmt::format(" is missing: the element at {}:{} has it", holder.row, holder.column);
}

std::string textOf(const DeviceProblem& problem) {
    if (problem.atPlace) {
        return textAtPlace(problem);
    }
    if (!problem.candidates.nearest) {
        return titleOf(problem.asked, nullptr) +
               (problem.isKnownType ? " is missing" : " cannot be found: that is no device type");
    }
    const NearDevice& nearest = *problem.candidates.nearest;
    if (problem.candidates.failed == 1) {
        return titleOf(problem.asked, &nearest.device) + " differs: " + firstDifference(nearest);
    }
    return titleOf(problem.asked, nullptr) + " is missing; nearest is " + deviceTitle(nearest.device) + ", " +
           firstDifference(nearest);
}

using Locators = std::pair<StringView, StringView>;

/// Where the devices are that became of missing ones.
std::set<Locators> changedPlaces(const CheckReport& report) {
    std::set<Locators> places;
    for (const DeviceProblem& problem : report.devices) {
        const std::optional<NearDevice>& device = problem.atPlace ? problem.atPlace : problem.candidates.nearest;
        if (problem.isMissing && device) {
            places.emplace(device->device.hwLocator, device->device.osLocator);
        }
    }
    return places;
}

/// Extra devices that are not the other side of a missing one.
std::vector<const Inventory::DeviceSpec*> unpairedExtras(const CheckReport& report) {
    std::vector<const Inventory::DeviceSpec*> left;
    if (report.extra.isEmpty()) {
        return left;
    }
    const std::set<Locators> changed = changedPlaces(report);
    for (const Inventory::DeviceSpec& device : report.extra) {
        if (!changed.contains({device.hwLocator, device.osLocator})) {
            left.push_back(&device);
        }
    }
    return left;
}

/// Null when nothing is missing. Parts come before what sums them up.
const DeviceProblem* firstMissing(const CheckReport& report) {
    const auto at = std::ranges::find_if(
        report.devices, [](const DeviceProblem& problem) { return problem.isMissing && !problem.isUndetermined; });
    return at == report.devices.end() ? nullptr : &*at;
}

std::string firstSentence(const CheckReport& report, const std::vector<const Inventory::DeviceSpec*>& extra) {
    const DeviceProblem* const missing = firstMissing(report);
    if (missing != nullptr && missing->breadth == 0) {
        return textOf(*missing);
    }
    if (!extra.empty()) {
        return deviceTitle(*extra.front()) + " is too many";
    }
    if (!report.forbidden.empty()) {
        return titleOf(report.forbidden.front(), nullptr) + " is there and must not be";
    }
    return missing != nullptr ? textOf(*missing) : std::string();
}

std::string problemSentence(const CheckReport& report) {
    const std::vector<const Inventory::DeviceSpec*> extra = unpairedExtras(report);
    const std::string first = firstSentence(report, extra);
    if (first.empty()) {
        return "the machine does not hold what the script asks for";
    }
    const std::size_t count = report.missingCount() + extra.size() + report.forbidden.size();
    return count > 1 ? first + ", and " + counted(count - 1, "more problem") : first;
}

/// Why there is no sure answer.
std::string doubtSentence(const CheckReport& report) {
    if (report.givenUpPatterns > 0) {
        return counted(report.givenUpPatterns, "pattern test") + " took too much work and had to be given up";
    }
    if (!report.doubts.empty()) {
        const std::size_t more = report.doubts.size() - 1;
        return doubtText(report.doubts.front()) + (more > 0 ? ", and " + counted(more, "more doubt") : "");
    }
    if (report.combinations > MOST_COMBINATIONS) {
        const bool isMore = report.combinations == std::numeric_limits<std::uint64_t>::max();
        return fmt::format("the alternatives of the script make {}{} combinations, which are too many to try",
                           isMore ? "more than " : "", report.combinations);
    }
    return "not everything that the script asks for could be tried";
}

}  // namespace

std::string headlineOf(const CheckReport& report) {
    switch (report.verdict) {
        case Verdict::Passed: return "the machine holds what the script asks for";
        case Verdict::NothingToCheck: return "the script asks for no device and has no fail-on-extra rule";
        case Verdict::Undecided: return doubtSentence(report);
        default: return problemSentence(report);
    }
}

}  // namespace vrx
