#include <map>
#include <set>

#include "libCommon/text/PrintableText.h"
#include "libReport/parts/PartDifferences.h"
#include "libReport/parts/PartGenerationReport.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

constexpr std::size_t MOST_NAMES = 10;
constexpr std::size_t MOST_VALUES = 4;
constexpr std::size_t MOST_PROPERTIES = 10;

std::vector<std::string> deviceCells(const std::string& first, const IDeviceImp& device) {
    return {first, printable(device.type().toString(0, false).view()), orDash(device.name()),
            orDash(device.hwLocator()), orDash(device.osLocator())};
}

TextTable deviceTable() { return TextTable(4, {Style::Dim, Style::Plain, Style::Plain, Style::Dim, Style::Dim}); }

void writeTitle(std::string& out, const std::string& title, const TextFormat& format) {
    out += "\n" + styled(title, Style::Bold, format.colour) + "\n";
}

using Instances = std::map<std::string, std::vector<const Inventory::PartSpec*>>;

Instances instancesOf(const PartGenerationReport& report) {
    Instances instances;
    for (const Inventory::PartSpec& part : report.generatedParts) {
        instances[part.name.toUtf8()].push_back(&part);
    }
    return instances;
}

/// The parts of the list, those of one name once.
std::vector<const Inventory::PartSpec*> differentParts(const PartGenerationReport& report) {
    std::vector<const Inventory::PartSpec*> parts;
    std::set<std::string> names;
    for (const Inventory::PartSpec& part : report.partsList) {
        if (names.insert(part.name.toUtf8()).second) {
            parts.push_back(&part);
        }
    }
    return parts;
}

void writeCounts(std::string& out, const PartGenerationReport& report, const Instances& instances,
                 const TextFormat& format) {
    out += "\n";
    TextTable table(2, {Style::Plain, Style::Plain, Style::Plain, Style::Plain});
    table.setHeader({"found", "part", "id", "description"});
    for (const Inventory::PartSpec* const part : differentParts(report)) {
        const auto found = instances.find(part->name.toUtf8());
        table.addRow({std::to_string(found == instances.end() ? 0 : found->second.size()), orDash(part->name),
                      orDash(part->id), orDash(part->description)});
    }
    table.write(out, format);
}

void writeInstances(std::string& out, const PartGenerationReport& report, const Instances& instances,
                    const TextFormat& format) {
    for (const Inventory::PartSpec* const part : differentParts(report)) {
        const auto found = instances.find(part->name.toUtf8());
        if (found == instances.end()) {
            continue;
        }
        writeTitle(out, orDash(part->name) + ": " + std::to_string(found->second.size()), format);
        TextTable table = deviceTable();
        for (std::size_t i = 0; i < found->second.size(); ++i) {
            std::string number = std::to_string(i + 1) + ".";
            for (const String& guid : found->second[i]->devices) {
                if (const auto device = report.machine->deviceByGuid(guid)) {
                    table.addRow(deviceCells(number, *device));
                    number.clear();
                }
            }
        }
        table.write(out, format);
    }
}

void writeLine(std::string& out, const std::string& text, const TextFormat& format) {
    for (const std::string& line : wrapped(text, format.width > 4 ? format.width - 4 : 1)) {
        out += "    " + line + "\n";
    }
}

std::string fewOf(const std::vector<std::string>& texts, const char* separator, std::size_t most = MOST_VALUES) {
    std::string out;
    for (std::size_t i = 0; i < texts.size() && i < most; ++i) {
        out += (i == 0 ? "" : separator) + texts[i];
    }
    return texts.size() > most ? out + " and " + std::to_string(texts.size() - most) + " more" : out;
}

void writeSharedDevices(std::string& out, const PartDifferences& differences, const TextFormat& format) {
    out += "  devices that more than one of them stands for:\n";
    TextTable table = deviceTable();
    for (const auto& device : differences.sharedDevices) {
        table.addRow(deviceCells("", *device));
    }
    table.write(out, format);
}

void writeWhatTellsApart(std::string& out, const PartDifferences& differences, const TextFormat& format) {
    out += "  what would tell them apart:\n";
    for (const PartDifferences::Asked& asked : differences.asked) {
        writeLine(out, orDash(asked.part) + " alone asks for " + fewOf(asked.tests, "; "), format);
    }
    if (differences.asked.empty()) {
        writeLine(out, "the parts ask for the same", format);
    }
    if (differences.alikeCount == differences.sharedDevices.size()) {
        writeLine(out, "the machine has no other devices of that type", format);
    } else if (differences.differing.empty()) {
        writeLine(out, "the devices of that type are equal in every property; only a locator tells them apart", format);
    }
    const std::size_t count = differences.differing.size();
    for (std::size_t i = 0; i < count && i < MOST_PROPERTIES; ++i) {
        const PartDifferences::Differing& differing = differences.differing[i];
        writeLine(out, "devices of that type differ in " + differing.key + ": " + fewOf(differing.values, ", "),
                  format);
    }
    if (count > MOST_PROPERTIES) {
        writeLine(out, "and in " + counted(count - MOST_PROPERTIES, "further property value"), format);
    }
}

void writeGroups(std::string& out, const PartGenerationReport& report, const TextFormat& format) {
    for (const Array<Inventory::PartSpec>& group : report.ambiguousGroups) {
        std::vector<std::string> names;
        for (const Inventory::PartSpec& part : group) {
            names.push_back(orDash(part.name));
        }
        writeTitle(out, "ambiguous: " + fewOf(names, ", ", MOST_NAMES), format);
        const PartDifferences differences = differencesOf(group, report);
        writeSharedDevices(out, differences, format);
        writeWhatTellsApart(out, differences, format);
    }
}

void writeExtraDevices(std::string& out, const PartGenerationReport& report, const TextFormat& format) {
    if (report.extraDevices.isEmpty()) {
        return;
    }
    writeTitle(out, "extra devices: " + std::to_string(report.extraDevices.size()), format);
    TextTable table = deviceTable();
    for (const Inventory::DeviceSpec& device : report.extraDevices) {
        table.addRow(
            {"", orDash(device.type), orDash(device.name), orDash(device.hwLocator), orDash(device.osLocator)});
    }
    table.write(out, format);
}

}  // namespace

std::string partGenerationText(const PartGenerationReport& report, const TextFormat& format) {
    const bool isGenerated = report.isGenerated();
    const std::string machine =
        printable(std::string_view(report.machineName)) + " (" + counted(report.machine->deviceCount(), "device") + ")";
    std::string out = styled(report.result.toString().toUtf8(), isGenerated ? Style::Good : Style::Bad, format.colour);
    const Instances instances = instancesOf(report);
    if (isGenerated) {
        out += ": " + counted(report.generatedParts.size(), "part") + " found on " + machine + "\n";
        writeCounts(out, report, instances, format);
        writeInstances(out, report, instances, format);
    } else {
        out += report.ambiguousGroups.isEmpty()
                   ? ": the base script and the parts together are not met on " + machine +
                         "; no two parts claim the same devices\n"
                   : ": the parts that were found on " + machine + " do not fit together\n";
        writeGroups(out, report, format);
    }
    writeExtraDevices(out, report, format);
    return out;
}

std::string partGenerationXml(const PartGenerationReport& report, const TextFormat&) {
    String text;
    report.document.GetFormattedStr(text, 0);
    return text.toUtf8();
}

ReportWriters<PartGenerationReport> partGenerationWriters() {
    static constexpr ReportWriter<PartGenerationReport> WRITERS[] = {{"text", partGenerationText},
                                                                     {"json", partGenerationJson},
                                                                     {"xml", partGenerationXml},
                                                                     {"csv", partGenerationCsv}};
    return WRITERS;
}

}  // namespace vrx
