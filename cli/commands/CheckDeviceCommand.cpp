/// The check of one device of a machine against the inner XML of a `device` element.
///
/// The engine answers only "no" when the content does not load, so the content is parsed here first, in the same
/// envelope, to say where it is broken and to refuse what cannot be decided.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>

#include "cli/commands/Commands.h"
#include "cli/files/InputFile.h"
#include "cli/files/XmlFileProblem.h"
#include "cli/input/DeviceChoice.h"
#include "cli/input/MachineSource.h"
#include "cli/input/MistakesFound.h"
#include "cli/program/CommonOptions.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/script/OrInsidePart.h"
#include "libReport/DeviceCheckReport.h"
#include "libReport/writers/CheckHeadline.h"

namespace vrx::cli {

namespace {

constexpr const char* EXPECTED_CONTENT = "expected the inner XML of a <device> element: <property>, <and>, <or>, <not>";
constexpr StringView ENVELOPE = u"<inventory-check><device type=\"Device\">";
constexpr StringView ENVELOPE_END = u"</device></inventory-check>";

constexpr const char* CHECK_DEVICE_FOOTER =
    "CONTENT is what would stand inside a <device> element: property, and, or, not.\n"
    "A guid is HARDWARE-LOCATOR|OS-LOCATOR; show --properties prints them.\n"
    "Exit status: 0 the device meets the content; 1 it does not; 2 the content has\n"
    "mistakes, it or the state cannot be read or parsed, or there is no such device;\n"
    "3 undetermined: the content asks for no property, a pattern took too much work, or\n"
    "this machine cannot be read; 4 internal error.\n"
    "\n"
    "Examples:\n"
    "  vrx-inventory check-device '<property key=\"Size\" value=\"^500 GB$\"/>' \\\n"
    "      --device 'bay-0|/dev/sda' --state machine.xml\n"
    "  vrx-inventory check-device @disk.xml --device 'bay-0|/dev/sda' --report";

struct CheckDeviceOptions : CommonOptions {
    std::string content;
    std::string which;
    bool hasReport = false;
};

/// The content and what to call it in messages.
struct Content {
    std::string name = "content";
    String text;
};

Content readContent(const std::string& argument) {
    Content content;
    if (!argument.starts_with('@')) {
        content.text = String::UTF8Decode(argument);
        return content;
    }
    content.name = argument.substr(1);
    std::string bytes;
    String reason;
    if (!loadInput(content.name, bytes, reason)) {
        throw CommandFailure(ExitStatus::BadInput, content.name + ": " + reason.toUtf8() + "; " + EXPECTED_CONTENT);
    }
    content.text = String::UTF8Decode(bytes);
    return content;
}

/// 0-based place in the content of a place in the envelope.
std::string problemIn(const Content& content, std::uint32_t row, std::uint32_t column, const std::string& text) {
    const auto before = static_cast<std::uint32_t>(ENVELOPE.size());
    return problemAt(content.name, row, row == 0 && column >= before ? column - before : column, text);
}

/// Text is no condition, and the engine passes over it; what was meant by it stands in an attribute.
bool holdsOnlyText(const XmlElement& device) {
    return device.FirstChildElement() == nullptr && device.FirstChild() != nullptr;
}

/// Throws when the content does not load, has mistakes that are not to be passed over, or cannot be decided.
void examine(const Content& content, bool passesMistakesOver) {
    XmlDocument document;
    if (!document.Parse(toXmlSafe(concat(ENVELOPE, content.text, ENVELOPE_END)))) {
        throw CommandFailure(ExitStatus::BadInput, problemIn(content, document.ErrorRow(), document.ErrorColumn(),
                                                             document.ErrorDesc().toUtf8() + "; " + EXPECTED_CONTENT));
    }
    if (holdsOnlyText(*document.RootElement()->FirstChildElement())) {
        throw CommandFailure(ExitStatus::BadInput,
                             problemIn(content, 0, static_cast<std::uint32_t>(ENVELOPE.size()),
                                       std::string("this is text; ") + EXPECTED_CONTENT +
                                           ", such as <property key=\"Size\" value=\"^32 GB$\"/>"));
    }
    if (!passesMistakesOver) {
        refuseMistakes(content.name, document, ENVELOPE.size());
    }
    if (const XmlElement* const found = findOrInsidePart(*document.RootElement())) {
        throw CommandFailure(ExitStatus::BadInput,
                             problemIn(content, found->Row(), found->Column(), OR_INSIDE_PART_REASON));
    }
}

const IDeviceImp& findDevice(const std::string& which, const StateManager& store, const std::string& machine) {
    if (const StateManager::DevicePointer device = store.deviceByGuid(String::UTF8Decode(which))) {
        return *device;
    }
    const std::vector<const IDeviceImp*> devices = chosenDevices(store, {{}, which});
    if (devices.empty()) {
        throw CommandFailure(ExitStatus::BadInput, noSuchDevice(which, machine, store));
    }
    if (devices.size() > 1) {
        throw CommandFailure(ExitStatus::BadInput,
                             fmt::format("{} has {} devices \"{}\"; take the guid of one, such as \"{}\"", machine,
                                         devices.size(), which, devices.front()->guid().toUtf8()));
    }
    return *devices.front();
}

CommandResult refusal(const CheckDeviceOptions& options, const Session& session, const MistakesFound& found) {
    CommandResult result{found.status(), {}, {}, found.lines()};
    if (options.format != "text") {
        DeviceCheckReport report;
        report.verdict = Verdict::Refused;
        report.mistakes = found.mistakes();
        report.started = session.console.time();
        result.text = options.written(report, deviceCheckWriters(), session);
    }
    return result;
}

CommandResult checkDevice(const CheckDeviceOptions& options, Session& session) {
    if (options.content.starts_with('@')) {
        options.refuseAsOutput(options.content.substr(1));
    }
    const Content content = readContent(options.content);
    try {
        examine(content, options.isPlain);
    } catch (const MistakesFound& found) {
        return refusal(options, session, found);
    }
    StateManager& store = session.make<StateManager>();
    const ImportReport import = loadMachine(options.statePath, store, session);
    const IDeviceImp& device = findDevice(options.which, store, machineName(options.statePath));
    DeviceCheckReport report =
        vrx::checkDevice(device, content.text, options.hasReport, &store, {&import, options.isPlain});
    report.started = session.console.time();
    CommandResult result{report.verdict == Verdict::Passed ? ExitStatus::Success : ExitStatus::NotPassed,
                         options.written(report, deviceCheckWriters(), session)};
    if (report.verdict == Verdict::NothingToCheck) {
        result.status = ExitStatus::Undetermined;
        result.note = content.name + ": nothing to check: the content asks for no property";
    } else if (report.verdict == Verdict::Undecided) {
        result.status = ExitStatus::Undetermined;
        result.note = content.name + ": undecided: " + headlineOf(report);
    }
    return result;
}

}  // namespace

void addCheckDeviceCommand(CLI::App& parent, Session& session) {
    const auto options = std::make_shared<CheckDeviceOptions>();
    CLI::App& command = *parent.add_subcommand("check-device", "Check one device of a machine");
    command.add_option("CONTENT", options->content, "What the device must have; @FILE reads it from a file")
        ->required();
    command.add_option("--device", options->which, "The device: a guid, a locator or a name that it alone has")
        ->required()
        ->type_name("WHICH");
    options->addState(command);
    command.add_flag("--report", options->hasReport, "Report the script with what was found");
    options->addFormat(command, deviceCheckWriters());
    options->addOutput(command);
    options->addPlain(command, "mistakes are passed over, and what is not known counts as absent");
    options->addLogging(command);
    command.footer(CHECK_DEVICE_FOOTER);
    setAction(command, session, options, [options, &session] { return checkDevice(*options, session); });
}

}  // namespace vrx::cli
