#include "libReport/faults/FaultBlock.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "libCommon/text/PrintableText.h"
#include "libDiagnosis/TypeOrder.h"
#include "libRegex/Regex.h"
#include "libReport/faults/DifferenceText.h"
#include "libReport/faults/FaultText.h"
#include "libReport/faults/FoldedText.h"
#include "libReport/patterns/ReadablePattern.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/DoubtText.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextTable.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

namespace {

constexpr unsigned INDENT = 4;

void appendPiece(std::string& text, const std::string& piece, const char* separator = ", ") {
    if (!piece.empty()) {
        text += (text.empty() ? "" : separator) + piece;
    }
}

std::string askedValue(const Fault& fault, StringView key) {
    const AskedProperty* const asked = fault.askedProperty(key);
    return asked == nullptr || asked->patterns.size() != 1 || asked->patterns.front().isEmpty()
               ? std::string()
               : readablePattern(asked->patterns.front());
}

std::string partNameText(const PartName& part) {
    std::string text = printable(part.name);
    if (!part.id.isEmpty() && part.id != part.name) {
        text += text.empty() ? printable(part.id) : " (" + printable(part.id) + ")";
    }
    appendPiece(text, printable(part.description));
    return text;
}

class BlockWriter {
public:
    BlockWriter(const Fault& fault, const std::string& file, const TextFormat& format)
        : m_fault(fault), m_file(file), m_format(format), m_rows(INDENT, {Style::Dim, Style::Plain}) {}

    std::string write() {
        addHeading();
        addDifferences(m_fault.differences);
        addDevices();
        addRow("with it", foldedTypes(m_fault));
        addCandidates();
        addPart();
        addDoubts();
        m_rows.write(m_text, m_format);
        addPlaces();
        return std::move(m_text);
    }

private:
    void addHeading() {
        for (const std::string& line : wrapped(faultHeading(m_fault), m_format.width - 2)) {
            m_text += "  " + styled(line, Style::Bold, m_format.colour) + "\n";
        }
    }

    void addDifferences(const std::vector<Difference>& differences) {
        if (differences.empty()) {
            return;
        }
        TextTable table(INDENT, {Style::Plain, Style::Good, Style::Bad});
        table.setHeader({"", "expected", "found"});
        std::vector<std::string> problems;
        for (const DifferenceLine& line : differenceLines(differences)) {
            table.addRow({line.subject, line.expected, line.found});
            for (const String& pattern : line.difference.expected) {
                addPatternProblem(pattern, problems);
            }
        }
        table.write(m_text, m_format);
        for (const std::string& problem : problems) {
            for (const std::string& line : wrapped(problem, m_format.width - INDENT)) {
                m_text += std::string(INDENT, ' ') + styled(line, Style::Caution, m_format.colour) + "\n";
            }
        }
    }

    static void addPatternProblem(const String& pattern, std::vector<std::string>& problems) {
        const String problem = Regex::compileError(pattern);
        if (!problem.isEmpty()) {
            problems.push_back("the pattern is compared as plain text, it does not compile: " + printable(problem));
        }
    }

    void addRow(const char* label, const std::string& text) {
        if (!text.empty()) {
            m_rows.addRow({label, text});
        }
    }

    void addDevices() {
        if (m_fault.kind == FaultKind::Swapped) {
            addAt(*m_fault.device);
            addAt(*m_fault.other);
            return;
        }
        if (m_fault.device) {
            const std::string text = identityText(untold(*m_fault.device));
            const bool isOnlyMaker = text == printable(m_fault.device->manufacturer);
            addRow("there", isOnlyMaker && !m_fault.differences.empty() ? std::string() : text);
        }
        if (m_fault.other) {
            addRow("in its place", withIdentity(*m_fault.other));
        }
    }

    void addAt(const DeviceIdentity& device) {
        const std::string place = printable(device.spec.hwLocator);
        addRow(place.c_str(), identityText(device));
    }

    /// What the differences do not say.
    DeviceIdentity untold(DeviceIdentity device) const {
        for (const Difference& difference : m_fault.differences) {
            for (String* const text :
                 {&device.manufacturer, &device.model, &device.partNumber, &device.serialNumber, &device.firmware}) {
                if (difference.found == *text) {
                    text->clear();
                }
            }
        }
        return device;
    }

    static std::string withIdentity(const DeviceIdentity& device) {
        std::string text = deviceTitle(device.spec);
        appendPiece(text, identityText(device));
        return text;
    }

    void addCandidates() {
        if (m_fault.refusal && !m_fault.refusal->present.empty() && !m_fault.alike.one) {
            std::string text;
            for (const String& present : m_fault.refusal->present) {
                appendPiece(text, printableValue(present));
            }
            addRow("there are", text + (m_fault.refusal->hasMorePresent ? ", ..." : ""));
        }
        if (m_fault.alike.asked > 1) {
            addRow("of its kind", likeText());
        }
        if (m_fault.nearest) {
            addRow("nearest", fmt::format("{}, of {} tried", deviceTitle(m_fault.nearest->device), m_fault.candidates));
            for (const DifferenceLine& line : differenceLines(m_fault.nearest->differences)) {
                addRow("", sentenceOf(line).insert(0, "  "));
            }
        }
        if (m_fault.taken) {
            addRow("taken",
                   deviceTitle(m_fault.taken->device) + " would do and serves " + placeText(m_fault.taken->holder));
        }
        addShortage();
        for (const Inventory::DeviceSpec& other : m_fault.alternatives) {
            addRow("or", faultTitleOf(other));
        }
    }

    void addShortage() {
        const std::string text = shortageText(m_fault);
        if (text.empty()) {
            return;
        }
        addRow("compete", text);
        std::string elements;
        for (const ElementPlace& place : m_fault.shortage->elementPlaces) {
            appendPiece(elements, elements.empty() ? placeText(place) : fmt::format("{}:{}", place.row, place.column));
        }
        addRow("", elements + (m_fault.shortage->elements > m_fault.shortage->elementPlaces.size() ? ", ..." : ""));
        std::string devices;
        for (const Inventory::DeviceSpec& device : m_fault.shortage->deviceSpecs) {
            appendPiece(devices, deviceTitle(device));
        }
        addRow("", devices + (m_fault.shortage->devices > m_fault.shortage->deviceSpecs.size() ? ", ..." : ""));
    }

    std::string likeText() const {
        const LikeDevices& alike = m_fault.alike;
        const std::string count = fmt::format("{} of {} are there", alike.present, alike.asked);
        return alike.one ? count + ", the first is " + deviceTitle(alike.one->spec) : count;
    }

    void addPart() {
        addRow("fetch", partText(m_fault));
        if (m_fault.part) {
            addRow("part", partNameText(*m_fault.part));
        }
    }

    void addDoubts() {
        for (const Doubt& doubt : m_fault.furtherDoubts) {
            addRow("also", doubtText(doubt));
        }
    }

    void addPlaces() {
        addPlace(m_fault.place);
        if (m_fault.otherPlace) {
            addPlace(*m_fault.otherPlace);
        }
    }

    void addPlace(const ElementPlace& place) {
        if (place.row != 0) {
            m_text += std::string(INDENT, ' ') + styled(placeText(place), Style::Dim, m_format.colour) + "\n";
        }
    }

    std::string placeText(const ElementPlace& place) const {
        return fmt::format("{}:{}:{}", printable(std::string_view(m_file)), place.row, place.column);
    }

    const Fault& m_fault;
    const std::string& m_file;
    const TextFormat& m_format;
    TextTable m_rows;
    std::string m_text;
};

/// Whether somebody can fetch what is asked for.
bool wantsPart(const Fault& fault) {
    const bool isOnlyRenamed =
        !fault.differences.empty() &&
        std::ranges::all_of(fault.differences, [](const auto& one) { return one.what == Difference::What::OsLocator; });
    return !isOnlyRenamed &&
           (fault.kind == FaultKind::Missing || fault.kind == FaultKind::Wrong || fault.kind == FaultKind::Replaced) &&
           fault.breadth == 0 && !fault.isOfOtherMachine && isReplaceable(CapabilityImp(fault.asked.type));
}

}  // namespace

std::string partText(const Fault& fault) {
    if (!wantsPart(fault)) {
        return {};
    }
    const std::string number = askedPartNumber(fault);
    const std::string vendor = askedValue(fault, property::VENDOR);
    std::string text = number;
    appendPiece(text, vendor.empty() && fault.alike.one ? printable(fault.alike.one->manufacturer) : vendor);
    for (const StringView key : {property::SIZE, property::SPEED, property::MAX_POWER, property::LINK_SPEED}) {
        appendPiece(text, askedValue(fault, key));
    }
    return text.empty() || !number.empty() ? text : printable(fault.asked.type) + ", " + text;
}

std::string identityText(const DeviceIdentity& device) {
    std::string text = printable(device.manufacturer);
    const String& number = device.partNumber.isEmpty() ? device.model : device.partNumber;
    appendPiece(text, printable(number), " ");
    if (!device.serialNumber.isEmpty()) {
        appendPiece(text, "serial number " + printable(device.serialNumber));
    }
    if (!device.firmware.isEmpty()) {
        appendPiece(text, "firmware " + printable(device.firmware));
    }
    return text;
}

std::string faultBlock(const Fault& fault, const std::string& file, const TextFormat& format) {
    return BlockWriter(fault, file, format).write();
}

}  // namespace vrx
