/// Only the start of a recording is looked at: the first elements of an XML document, the first names of a JSON object,
/// the first lines of a text. Where something stands before the document (a shell's prompt, a warning of the program
/// that wrote it), the first line that looks like a start counts.

#include "libMachine/RecordingFormat.h"

#include <algorithm>
#include <string>

#include "libMachine/import/mending/TextMending.h"

namespace vrx {

namespace {

struct NamedFormat {
    RecordingFormat format;
    std::string_view name;
    std::string_view title;
};

constexpr NamedFormat FORMATS[] = {
    {RecordingFormat::SysInfo, "sysinfo", "SysInfo XML"},  {RecordingFormat::LshwXml, "lshw-xml", "lshw XML"},
    {RecordingFormat::LshwJson, "lshw-json", "lshw JSON"}, {RecordingFormat::Dmidecode, "dmidecode", "dmidecode text"},
    {RecordingFormat::HwlocXml, "hwloc-xml", "hwloc XML"},
};

constexpr std::string_view BLANKS = " \t\r\n";

/// The start as text in which ASCII can be looked for.
std::string startOf(std::string_view bytes) {
    std::string start(bytes.substr(0, RECOGNITION_SIZE));
    if (utf16Order(start) != Utf16Order::None) {
        std::erase(start, '\0');
    }
    const std::size_t first = start.find_first_of("<{[#HSBW \t\r\n");
    return first == std::string::npos || first > 3 ? start : start.substr(first);  // behind a byte-order mark
}

/// Moves to the next element, past declarations and comments; false when there is none.
bool skipToElement(std::string_view& text) {
    while (true) {
        const std::size_t at = text.find('<');
        if (at == std::string_view::npos) {
            return false;
        }
        text.remove_prefix(at);
        if (!text.starts_with("<?") && !text.starts_with("<!")) {
            return true;
        }
        const std::string_view end = text.starts_with("<!--") ? "-->" : ">";
        text.remove_prefix(std::min(text.find(end, 2), text.size()));
    }
}

/// The name of the element that the text starts with.
std::string_view elementName(std::string_view text) {
    text.remove_prefix(1);
    return text.substr(0, text.find_first_of(" \t\r\n/>"));
}

bool isLshwNode(std::string_view text) {
    return elementName(text) == "node" && text.substr(0, text.find('>')).find("class=") != std::string_view::npos;
}

RecordingFormat xmlFormat(std::string_view text) {
    if (!skipToElement(text)) {
        return RecordingFormat::Unknown;
    }
    const std::string_view root = elementName(text);
    if (root == "topology" || root == "topologydiff") {
        return RecordingFormat::HwlocXml;
    }
    if (isLshwNode(text)) {
        return RecordingFormat::LshwXml;
    }
    if (root == "list") {
        text.remove_prefix(1);
        if (skipToElement(text) && isLshwNode(text)) {
            return RecordingFormat::LshwXml;
        }
    }
    return RecordingFormat::SysInfo;
}

bool holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

bool isLshwJson(std::string_view text) {
    return holds(text, "\"class\"") && (holds(text, "\"id\"") || holds(text, "\"claimed\""));
}

bool isDmidecode(std::string_view text) {
    return text.starts_with("# dmidecode") || holds(text, "\n# dmidecode") ||
           (holds(text, "Handle 0x") && holds(text, ", DMI type "));
}

}  // namespace

RecordingFormat recognisedFormat(std::string_view bytes) {
    const std::string start = startOf(bytes);
    std::string_view text = start;
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    if (isDmidecode(text)) {
        return RecordingFormat::Dmidecode;
    }
    while (!text.empty()) {
        if (text.front() == '<') {
            return xmlFormat(text);
        }
        if (text.front() == '{' || text.front() == '[') {
            return isLshwJson(text) ? RecordingFormat::LshwJson : RecordingFormat::Unknown;
        }
        text.remove_prefix(std::min(text.find('\n'), text.size()));
        text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    }
    return RecordingFormat::Unknown;
}

std::string_view formatTitle(RecordingFormat format) noexcept {
    const auto* const at = std::find_if(std::begin(FORMATS), std::end(FORMATS),
                                        [format](const NamedFormat& known) { return known.format == format; });
    return at == std::end(FORMATS) ? "unknown" : at->title;
}

std::optional<RecordingFormat> formatNamed(std::string_view name) noexcept {
    const auto* const at = std::find_if(std::begin(FORMATS), std::end(FORMATS),
                                        [name](const NamedFormat& known) { return known.name == name; });
    return at == std::end(FORMATS) ? std::nullopt : std::optional(at->format);
}

std::string_view formatNames() noexcept { return "sysinfo, lshw-xml, lshw-json, dmidecode, hwloc-xml"; }

}  // namespace vrx
