/// The text of findings.
///
/// The engine's messages stand on `device` elements and on the `property` elements inside them, those of every
/// candidate one after the other. Here a device and everything inside it is one block: a heading with the device's
/// place, what the device itself lacks, then the properties that the nearest candidate fails, each with its own place.
/// Other elements (groups, rules, the root) are a line each. Blocks come in the order of the script.

#include "libReport/writers/FindingText.h"

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libInventory/script/ScriptElement.h"
#include "libRegex/Regex.h"
#include "libReport/text/Style.h"
#include "libReport/writers/DeviceMessage.h"
#include "libReport/writers/NearestCandidate.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

bool hasLogic(const XmlElement& device) {
    for (const XmlElement* child = device.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (isNamed(*child, u"not") || isNamed(*child, u"or") || isNamed(*child, u"and")) {
            return true;
        }
    }
    return false;
}

/// What a group that is not met says about itself, in place of the engine's words.
std::string groupSentence(const XmlElement& element) {
    if (isNamed(element, u"part")) {
        return "part " + printableValue(element.Attribute(u"name")) + " is not complete";
    }
    if (isNamed(element, u"or")) {
        return "none of the alternatives of this <or> is met";
    }
    return isNamed(element, u"and") ? "not everything in this <and> is met"
                                    : "everything in this <not> is there, and must not be";
}

class FindingWriter {
public:
    FindingWriter(const std::string& file, const StateManager* machine, const TextFormat& format)
        : m_file(file), m_machine(machine), m_format(format) {}

    void write(const std::vector<ScriptFinding>& findings) {
        for (std::size_t at = 0; at < findings.size();) {
            const XmlElement* const device = deviceAround(*findings[at].element);
            if (device == nullptr) {
                writeOther(findings[at++]);
                continue;
            }
            std::size_t end = at + 1;
            while (end < findings.size() && deviceAround(*findings[end].element) == device) {
                ++end;
            }
            writeDevice(*device, findings.data() + at, findings.data() + end);
            at = end;
        }
    }

    FindingText take() { return {std::move(m_text), m_count}; }

private:
    void writeOther(const ScriptFinding& finding) {
        for (const String& message : finding.messages) {
            if (message.view().starts_with(u"Found Extra Device: ")) {
                continue;
            }
            ++m_count;
            const StringView text = message;
            const bool isGroup = (text.starts_with(u"unsatisfied ") && text.find(u" node") != StringView::npos) ||
                                 text == u"matched device under not node";
            writePlaced(0, *finding.element, isGroup ? groupSentence(*finding.element) : printable(text));
        }
    }

    void writeDevice(const XmlElement& device, const ScriptFinding* begin, const ScriptFinding* end) {
        ++m_count;
        writePlaced(0, device, deviceHeading(device));
        const std::size_t before = m_text.size();
        std::vector<PropertyMismatch> mismatches;
        for (const ScriptFinding* finding = begin; finding != end; ++finding) {
            if (finding->element == &device) {
                writeOwnMessages(*finding);
            } else {
                addMismatches(*finding, mismatches);
            }
        }
        if (m_file.empty()) {
            writeAll(mismatches);
        } else if (!mismatches.empty()) {
            writeNearest(device, mismatches);
        } else if (m_text.size() == before) {
            writeLines(2, hasLogic(device) ? "no device left for it: none meets all that it asks for, or those that do "
                                             "serve other elements"
                                           : "no device left for it: those that fit serve other elements");
        }
    }

    void writeOwnMessages(const ScriptFinding& finding) {
        for (const String& text : finding.messages) {
            const std::optional<DeviceMessage> message = deviceMessage(*finding.element, text, m_machine);
            if (!message) {
                continue;
            }
            if (message->sentence.empty()) {
                writeSideBySide(2, message->expected, message->found);
                writePatternProblem(2, message->pattern);
            } else {
                writeLines(2, message->sentence);
            }
        }
    }

    void addMismatches(const ScriptFinding& finding, std::vector<PropertyMismatch>& mismatches) {
        Array<String> rest;
        for (PropertyMismatch& mismatch : mismatchesOf(finding, rest)) {
            mismatches.push_back(std::move(mismatch));
        }
        for (const String& text : rest) {
            writePlaced(2, *finding.element, printable(text));
        }
    }

    void writeNearest(const XmlElement& device, const std::vector<PropertyMismatch>& mismatches) {
        const CapabilityImp type(attributeOf(device, u"type"));
        const NearestCandidate nearest = nearestOf(mismatches, type, m_machine);
        std::string line = nearest.candidates == 1 ? "the only candidate"
                                                   : "nearest of " + std::to_string(nearest.candidates) + " candidates";
        const PropertyMismatch& first = nearest.mismatches.front();
        const StringView name = nearest.device ? nearest.device->name().view() : first.deviceName.view();
        const StringView locator = nearest.device ? nearest.device->hwLocator().view() : first.hwLocator.view();
        line += name.empty() ? "" : ": " + printable(name);
        line += locator.empty() ? "" : (name.empty() ? ": at " : ", at ") + printable(locator);
        writeLines(2, line, Style::Dim);
        writeAll(nearest.mismatches);
    }

    void writeAll(const std::vector<PropertyMismatch>& mismatches) {
        for (const PropertyMismatch& mismatch : mismatches) {
            writeMismatch(mismatch);
        }
    }

    void writeMismatch(const PropertyMismatch& mismatch) {
        const XmlElement& property = *mismatch.property;
        writePlaced(2, property, printable(property.Attribute(u"key")));
        writeSideBySide(4, expectedText(property),
                        mismatch.isAbsent ? "no such property" : printableValue(mismatch.found));
        for (const String& value : askedValues(property)) {
            writePatternProblem(4, value);
        }
    }

    void writePatternProblem(unsigned indent, const String& pattern) {
        const String problem = Regex::compileError(pattern);
        if (!problem.isEmpty()) {
            writeLines(indent, "the pattern is compared as plain text, it does not compile: " + printable(problem),
                       Style::Caution);
        }
    }

    /// "file:row:column  text"
    void writePlaced(unsigned indent, const XmlElement& element, const std::string& text) {
        if (m_file.empty()) {
            writeLines(indent, text, Style::Bold);
            return;
        }
        const std::string place = placeOf(element, m_file);
        const unsigned start = indent + displayWidth(place) + 2;
        const bool isOneLine = start + displayWidth(text) <= m_format.width;
        m_text.append(indent, ' ');
        m_text += styled(place, Style::Dim, m_format.colour);
        if (isOneLine) {
            m_text += "  " + styled(text, Style::Bold, m_format.colour) + "\n";
        } else {
            m_text += '\n';
            writeLines(indent + 2, text, Style::Bold);
        }
    }

    void writeLines(unsigned indent, const std::string& text, Style style = Style::Plain) {
        for (const std::string& line : wrapped(text, m_format.width - indent)) {
            m_text.append(indent, ' ');
            m_text += styled(line, style, m_format.colour) + "\n";
        }
    }

    /// Two columns of equal width, each wrapped; one below the other when a value is too long to be read so.
    void writeSideBySide(unsigned indent, const std::string& expected, const std::string& found) {
        constexpr unsigned LABEL = 10;  // "expected" and two blanks
        constexpr unsigned GAP = 1;
        constexpr unsigned LONGEST_IN_HALF = 3;
        const unsigned half = (m_format.width - indent) / 2;
        const auto left = wrapped(expected, half - LABEL - GAP);
        const auto right = wrapped(found, half - LABEL);
        if (std::max(left.size(), right.size()) > LONGEST_IN_HALF) {
            writeLabelled(indent, "expected  ", expected, Style::Good);
            writeLabelled(indent, "found     ", found, Style::Bad);
            return;
        }
        for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
            const std::string leftText = i < left.size() ? left[i] : "";
            std::string line(indent, ' ');
            line += (i == 0 ? "expected  " : std::string(LABEL, ' ')) + styled(leftText, Style::Good, m_format.colour);
            if (i < right.size()) {
                line.append(half - LABEL - displayWidth(leftText), ' ');
                line +=
                    (i == 0 ? "found     " : std::string(LABEL, ' ')) + styled(right[i], Style::Bad, m_format.colour);
            }
            m_text += line + "\n";
        }
    }

    void writeLabelled(unsigned indent, const char* label, const std::string& text, Style style) {
        const auto lines = wrapped(text, m_format.width - indent - 10);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            m_text.append(indent, ' ');
            m_text += i == 0 ? label : std::string(10, ' ');
            m_text += styled(lines[i], style, m_format.colour) + "\n";
        }
    }

    const std::string& m_file;
    const StateManager* m_machine;
    const TextFormat& m_format;
    std::string m_text;
    std::size_t m_count = 0;
};

}  // namespace

FindingText findingText(const std::vector<ScriptFinding>& findings, const std::string& file,
                        const StateManager* machine, const TextFormat& format) {
    FindingWriter writer(file, machine, format);
    writer.write(findings);
    return writer.take();
}

}  // namespace vrx
