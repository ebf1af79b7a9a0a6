/// The text of findings.
///
/// A device and everything found inside it is one block: a heading with the device's place, what the device itself
/// lacks, then the properties that the nearest candidate fails, each with its own place, or who has the devices that
/// would do. Other elements (groups, rules, the root) are a line each. Blocks come in the order of the script,
/// those of what sums up parts (memory, board, system) last.

#include "libReport/writers/FindingLines.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "libCommon/text/PrintableText.h"
#include "libRegex/Regex.h"
#include "libReport/faults/DifferenceText.h"
#include "libReport/patterns/ReadablePattern.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/writers/PlacedLines.h"

namespace vrx {

namespace {

/// A `device` element in a few words: type, name and locators that are written in it.
std::string headingOf(const DeviceProblem& problem) {
    const Inventory::DeviceSpec& written = problem.written;
    std::string text = printable(written.type);
    text += written.name.isEmpty() ? "" : ", " + readablePattern(written.name);
    text += written.hwLocator.isEmpty() ? "" : ", at " + printableValue(written.hwLocator);
    text += written.osLocator.isEmpty() ? "" : ", at " + printableValue(written.osLocator);
    return text.empty() ? "device without a type" : text;
}

/// What a finding outside of devices says: of a group that is not met in words of our own.
std::string sentenceOf(const ReportFinding& finding, const String& words) {
    switch (finding.kind) {
        case FindingKind::UnsatisfiedPart: return "part " + printableValue(finding.part) + " is not complete";
        case FindingKind::UnsatisfiedOr: return "none of the alternatives of this <or> is met";
        case FindingKind::UnsatisfiedAnd: return "not everything in this <and> is met";
        case FindingKind::UnsatisfiedNot: return "everything in this <not> is there, and must not be";
        default: return printable(words);
    }
}

/// Whether the problem of the device tells what the finding does.
bool isToldByProblem(FindingKind kind) noexcept {
    switch (kind) {
        case FindingKind::InvalidDeviceType:
        case FindingKind::NoDeviceOfType:
        case FindingKind::NoDeviceWithName:
        case FindingKind::NoDeviceWithOsLocator:
        case FindingKind::NoDeviceWithHwLocator:
        case FindingKind::InvalidAttribute:
        case FindingKind::NoAvailableDevice:
        case FindingKind::PropertyMissing:
        case FindingKind::PropertyMismatch:
        case FindingKind::PropertyMatched:
        case FindingKind::UnsatisfiedDevice: return true;
        default: return false;
    }
}

std::string presentText(const Refusal& refusal) {
    std::string text;
    for (const String& present : refusal.present) {
        text += (text.empty() ? "" : ", ") + printableValue(present);
    }
    return text + (refusal.hasMorePresent ? ", ..." : "");
}

class FindingWriter {
public:
    FindingWriter(const std::string& file, const TextFormat& format)
        : m_isOfScript(!file.empty()), m_lines(file, format) {}

    void write(const std::vector<ReportFinding>& findings, const std::vector<DeviceProblem>& devices) {
        std::vector<Block> blocks = blocksOf(findings);
        std::ranges::stable_sort(blocks, {}, [&devices](const Block& block) {
            return block.front().device ? devices[*block.front().device].breadth : 0;
        });
        for (const Block& block : blocks) {
            if (block.front().device) {
                writeDevice(devices[*block.front().device], block);
            } else {
                writeOther(block.front());
            }
        }
    }

    FindingLines take() { return {m_lines.take(), m_count}; }

private:
    using Block = std::span<const ReportFinding>;

    /// What is found in one device, or one other finding each.
    static std::vector<Block> blocksOf(const std::vector<ReportFinding>& findings) {
        std::vector<Block> blocks;
        for (std::size_t at = 0; at < findings.size();) {
            std::size_t end = at + 1;
            while (findings[at].device && end < findings.size() && findings[end].device == findings[at].device) {
                ++end;
            }
            blocks.emplace_back(findings.data() + at, end - at);
            at = end;
        }
        return blocks;
    }

    void writeOther(const ReportFinding& finding) {
        if (finding.kind == FindingKind::ExtraDevice) {
            return;
        }
        for (const String& words : finding.texts) {
            ++m_count;
            m_lines.placed(0, finding.place, sentenceOf(finding, words));
        }
    }

    void writeDevice(const DeviceProblem& problem, Block findings) {
        ++m_count;
        m_lines.placed(0, problem.place, headingOf(problem));
        bool isExplained = problem.refusal.has_value() || problem.candidates.nearest.has_value();
        if (problem.refusal) {
            writeRefusal(*problem.refusal);
        }
        for (const ReportFinding& finding : findings) {
            if (!isToldByProblem(finding.kind)) {
                isExplained = writeWords(problem, finding) || isExplained;
            }
        }
        if (problem.candidates.nearest) {
            writeNearest(problem.candidates);
        } else if (!isExplained && m_isOfScript) {
            m_lines.wrapped(2, problem.hasGroups ? "no device left for it: none meets all that it asks for, or those "
                                                   "that do serve other elements"
                                                 : "no device left for it: those that fit serve other elements");
        }
        writeTaken(problem.candidates);
    }

    bool writeWords(const DeviceProblem& problem, const ReportFinding& finding) {
        for (const String& words : finding.texts) {
            if (finding.place == problem.place) {
                m_lines.wrapped(2, printable(words));
            } else {
                m_lines.placed(2, finding.place, printable(words));
            }
        }
        return !finding.texts.isEmpty();
    }

    void writeRefusal(const Refusal& refusal) {
        switch (refusal.kind) {
            case FindingKind::InvalidDeviceType:
                m_lines.wrapped(2, "\"" + printable(refusal.expected) + "\" is no device type");
                break;
            case FindingKind::NoDeviceOfType:
                m_lines.sideBySide(2, "a device of type " + printable(refusal.expected), "none");
                break;
            case FindingKind::NoDeviceWithName:
                m_lines.sideBySide(2, "name " + readablePattern(refusal.expected), presentText(refusal));
                writePatternProblem(2, refusal.expected);
                break;
            case FindingKind::NoDeviceWithOsLocator:
                m_lines.sideBySide(2, "OS locator " + printableValue(refusal.expected), presentText(refusal));
                break;
            case FindingKind::NoDeviceWithHwLocator:
                m_lines.sideBySide(2, "hardware locator " + printableValue(refusal.expected), presentText(refusal));
                break;
            default: m_lines.wrapped(2, printable(refusal.words)); break;
        }
    }

    void writeNearest(const CandidateSummary& candidates) {
        const NearDevice& nearest = *candidates.nearest;
        if (m_isOfScript) {
            const Inventory::DeviceSpec& device = nearest.device;
            const char* const left = candidates.takenCount > 0 ? " left" : "";
            std::string line = candidates.failed == 1
                                   ? fmt::format("the only candidate{}", left)
                                   : fmt::format("nearest of {} candidates{}", candidates.failed, left);
            line += device.name.isEmpty() ? "" : ": " + printable(device.name);
            line += device.hwLocator.isEmpty()
                        ? ""
                        : (device.name.isEmpty() ? ": at " : ", at ") + printable(device.hwLocator);
            m_lines.wrapped(2, line, Style::Dim);
        }
        for (const Difference& difference : nearest.differences) {
            m_lines.placed(2, difference.place, subjectText(difference));
            m_lines.sideBySide(4, expectedText(difference), foundText(difference));
            for (const String& pattern : difference.expected) {
                writePatternProblem(4, pattern);
            }
        }
    }

    void writeTaken(const CandidateSummary& candidates) {
        for (const TakenDevice& taken : candidates.taken) {
            m_lines.wrapped(2, deviceTitle(taken.device) + " serves " + m_lines.placeText(taken.holder), Style::Dim);
        }
        if (candidates.takenCount > candidates.taken.size()) {
            m_lines.wrapped(2, fmt::format("and {} more", candidates.takenCount - candidates.taken.size()), Style::Dim);
        }
    }

    void writePatternProblem(unsigned indent, const String& pattern) {
        const String problem = Regex::compileError(pattern);
        if (!problem.isEmpty()) {
            m_lines.wrapped(indent, "the pattern is compared as plain text, it does not compile: " + printable(problem),
                            Style::Caution);
        }
    }

    bool m_isOfScript;
    PlacedLines m_lines;
    std::size_t m_count = 0;
};

}  // namespace

FindingLines findingLines(const std::vector<ReportFinding>& findings, const std::vector<DeviceProblem>& devices,
                          const std::string& file, const TextFormat& format) {
    FindingWriter writer(file, format);
    writer.write(findings, devices);
    return writer.take();
}

}  // namespace vrx
