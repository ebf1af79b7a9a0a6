#include "libReport/writers/CheckHeadline.h"

#include <fmt/format.h>

#include <limits>
#include <utility>

#include "libCommon/text/PrintableText.h"
#include "libReport/faults/FaultText.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

// What is left of 100 columns behind the verdict and two blanks.
constexpr unsigned BEHIND_FAILED = 92;
constexpr unsigned BEHIND_UNDETERMINED = 86;

/// The text, cut behind a word so that it fits with what follows it.
std::string cut(const std::string& text, const std::string& end, unsigned width) {
    static const std::string DOTS = "...";
    const unsigned room = width - displayWidth(end);
    if (displayWidth(text) <= room) {
        return text + end;
    }
    std::string start = wrapped(text, room - static_cast<unsigned>(DOTS.size())).front();
    start.resize(start.find_last_not_of(",;:") + 1);
    return start + DOTS + end;
}

std::string problemSentence(const CheckReport& report) {
    if (report.faults.empty() && !report.waived.empty()) {
        return "something is wrong beside what is waived";
    }
    if (report.faults.empty()) {
        return "the machine does not hold what the script asks for";
    }
    const std::size_t more = report.faults.size() - 1;
    return cut(faultText(report.faults.front()), more > 0 ? ", and " + counted(more, "more fault") : "", BEHIND_FAILED);
}

/// Why there is no sure answer.
std::string doubtSentence(const CheckReport& report) {
    if (report.givenUpPatterns > 0) {
        return counted(report.givenUpPatterns, "pattern test") + " took too much work and had to be given up";
    }
    if (!report.doubts.empty()) {
        const std::size_t more = report.doubts.size() - 1;
        return cut(doubtText(report.doubts.front()), more > 0 ? ", and " + counted(more, "more doubt") : "",
                   BEHIND_UNDETERMINED);
    }
    if (report.hasUntried) {
        const bool isMore = report.combinations == std::numeric_limits<std::uint64_t>::max();
        return fmt::format("the alternatives of the script make {}{} combinations, which are too many to try",
                           isMore ? "more than " : "", report.combinations);
    }
    return "not everything that the script asks for could be tried";
}

std::pair<std::string, Style> wordOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::Passed: return {"PASSED", Style::Good};
        case Verdict::NothingToCheck: return {"NOTHING CHECKED", Style::Caution};
        case Verdict::Undecided: return {"UNDETERMINED", Style::Caution};
        default: return {"FAILED", Style::Bad};
    }
}

}  // namespace

std::string headlineOf(const CheckReport& report) {
    switch (report.verdict) {
        case Verdict::Passed:
            return std::string("the machine holds what the script asks for") +
                   (report.isAssignedExactly ? ", by exact assignment only" : "") +
                   (report.waived.empty() ? std::string()
                                          : ", but for " + counted(report.waived.size(), "waived fault"));
        case Verdict::NothingToCheck: return "the script asks for no device and has no fail-on-extra rule";
        case Verdict::Undecided: return doubtSentence(report);
        default: return problemSentence(report);
    }
}

std::string headlineOf(const DeviceCheckReport& report) {
    switch (report.verdict) {
        case Verdict::Passed: return "the device meets the content";
        case Verdict::Failed: return "the device does not meet the content";
        case Verdict::NothingToCheck: return "the content asks for no property";
        case Verdict::Refused: return "the content has " + counted(report.mistakes.size(), "mistake");
        case Verdict::Undecided: break;
        case Verdict::NotRun: return "the content could not be loaded";
    }
    if (!report.doubts.empty()) {
        return doubtText(report.doubts.front());
    }
    return report.isTypeUsable ? "a pattern took too much work on a value and was given up"
                               : "no script can ask for the device's type \"" + printable(report.device.type) + "\"";
}

std::string verdictLine(Verdict verdict, const std::string& headline, const TextFormat& format) {
    const auto [word, style] = wordOf(verdict);
    std::string out = styled(word, style, format.colour);
    std::string indent = "  ";
    const unsigned taken = displayWidth(word) + displayWidth(indent);
    const unsigned room = format.isTerminal && format.width > 2 * taken ? format.width - taken : TextFormat::UNBROKEN;
    for (const std::string& line : wrapped(headline, room)) {
        out += indent + line + "\n";
        indent.assign(taken, ' ');
    }
    return out;
}

}  // namespace vrx
