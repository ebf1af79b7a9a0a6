/// The tree has three columns: type, locator, and the name with the main properties, which takes what is left
/// of the line and goes on below itself. The first two are as wide as their texts, up to a share of the line; a longer
/// text pushes what follows to the right, or on to the next line when little room is left. In a file or a pipe every
/// device is one line, so that other programs can look for it.

#include <algorithm>

#include "libCommon/text/PrintableText.h"
#include "libReport/show/DeviceTree.h"
#include "libReport/show/ShowReport.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/Style.h"
#include "libReport/text/TextPieces.h"
#include "libReport/text/TextTable.h"
#include "libReport/text/UnreadText.h"
#include "libSystemState/capabilities/CapabilityImp.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/properties/PropertyCategoryImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

namespace {

constexpr unsigned GAP = 2;
constexpr unsigned LEAST_ROOM = 16;

/// The hardware locator; the operating-system locator where there is none.
const String& locatorOf(const IDeviceImp& device) {
    return device.hwLocator().isEmpty() ? device.osLocator() : device.hwLocator();
}

/// The four pieces that a tree is drawn with, each as wide as one level.
struct TreePieces {
    const char* child;
    const char* lastChild;
    const char* line;
    const char* blank;
    unsigned width;
};

constexpr TreePieces DRAWN{"├─ ", "└─ ", "│  ", "   ", 3};
constexpr TreePieces PLAIN{"  ", "  ", "  ", "  ", 2};

class TreeWriter {
public:
    TreeWriter(const DeviceTreeNode& top, const TextFormat& format)
        : m_format(format),
          m_width(format.isTerminal ? format.width : TextFormat::UNBROKEN),
          m_pieces(format.hasLines ? DRAWN : PLAIN) {
        measure(top, 0);
        m_typeWidth = std::min(m_typeWidth, format.width * 2 / 5);
        m_locatorWidth = std::min(m_locatorWidth, format.width * 3 / 10);
        for (const DeviceTreeNode& node : top.children) {
            write(node, "", "");
        }
    }

    std::string take() { return std::move(m_text); }

private:
    void measure(const DeviceTreeNode& node, unsigned depth) {
        for (const DeviceTreeNode& child : node.children) {
            const unsigned typeWidth = displayWidth(printable(child.device->type().toString()));
            m_typeWidth = std::max(m_typeWidth, depth * m_pieces.width + typeWidth);
            m_locatorWidth = std::max(m_locatorWidth, displayWidth(orDash(locatorOf(*child.device))));
            measure(child, depth + 1);
        }
    }

    /// `first` stands before the device's own line, `rest` before whatever belongs to it below.
    void write(const DeviceTreeNode& node, const std::string& first, const std::string& rest) {
        writeDevice(*node.device, first, rest + (node.children.empty() ? m_pieces.blank : m_pieces.line));
        for (const DeviceTreeNode& child : node.children) {
            const bool isLast = &child == &node.children.back();
            write(child, rest + (isLast ? m_pieces.lastChild : m_pieces.child),
                  rest + (isLast ? m_pieces.blank : m_pieces.line));
        }
    }

    void writeDevice(const IDeviceImp& device, const std::string& first, const std::string& rest) {
        m_text += styled(first, Style::Dim, m_format.colour);
        m_column = displayWidth(first);
        append(printable(device.type().toString()), Style::Bold);
        goTo(m_typeWidth + GAP, rest);
        append(orDash(locatorOf(device)), Style::Dim);
        writeDetails(printable(device.name()), deviceSummary(device), rest);
        m_text += '\n';
    }

    void append(const std::string& text, Style style) {
        m_text += styled(text, style, m_format.colour);
        m_column += displayWidth(text);
    }

    /// Goes to the column, or as far behind it as what stands there reaches.
    void goTo(unsigned column, const std::string& rest) {
        const unsigned next = std::max(column, m_column + GAP);
        if (next > column && next + LEAST_ROOM > m_width) {
            newLine(column, rest);
            return;
        }
        m_text.append(next - m_column, ' ');
        m_column = next;
    }

    void newLine(unsigned column, const std::string& rest) {
        const std::size_t used = rest.find_last_not_of(' ');
        const std::string lines = used == std::string::npos ? std::string() : rest.substr(0, used + 1);
        m_text += "\n" + styled(lines, Style::Dim, m_format.colour);
        m_text.append(column - std::min(column, displayWidth(lines)), ' ');
        m_column = column;
    }

    /// Name and summary side by side where they fit, else one below the other.
    void writeDetails(const std::string& name, const std::string& summary, const std::string& rest) {
        if (name.empty() && summary.empty()) {
            return;
        }
        goTo(m_typeWidth + m_locatorWidth + 2 * GAP, rest);
        const unsigned start = m_column;
        const unsigned room = std::max(LEAST_ROOM, m_width - std::min(m_width, start));
        const std::string both = name + (name.empty() || summary.empty() ? "" : "  ") + summary;
        std::vector<std::string> lines{both};
        if (displayWidth(both) > room) {
            lines = wrapped(name, room);
            for (std::string& line : wrapped(summary, room)) {
                lines.push_back(std::move(line));
            }
            std::erase(lines, "");
        }
        for (const std::string& line : lines) {
            if (&line != &lines.front()) {
                newLine(start, rest);
            }
            append(line, Style::Plain);
        }
    }

    const TextFormat& m_format;
    unsigned m_width;
    const TreePieces& m_pieces;
    unsigned m_typeWidth = 0;
    unsigned m_locatorWidth = 0;
    unsigned m_column = 0;
    std::string m_text;
};

void writeBlock(std::string& out, const IDeviceImp& device, const TextFormat& format) {
    const std::string type = printable(device.type().toString());
    const std::string title = device.name().isEmpty() ? type : type + "  " + printable(device.name());
    out += "\n" + styled(title, Style::Bold, format.colour) + "\n";
    TextTable table(2, {Style::Dim, Style::Plain});
    table.addRow({"guid", printable(device.guid().view())});
    table.addRow({"hardware locator", orDash(device.hwLocator())});
    table.addRow({"OS locator", orDash(device.osLocator())});
    for (const auto& property : device.properties(PropertyCategoryImp::ALL())) {
        table.addRow({printable(property->key().view()), printableValue(property->value().toString(true))});
    }
    table.write(out, format);
}

}  // namespace

std::string showText(const ShowReport& report, const TextFormat& format) {
    const std::size_t count = report.machine.deviceCount();
    const std::string shown = report.devices.size() == count ? "" : std::to_string(report.devices.size()) + " of ";
    std::string out = printable(std::string_view(report.machineName)) + ": " + shown + counted(count, "device") + "\n";
    for (const UnreadSource& unread : report.machine.unread()) {
        for (const std::string& line : wrapped("not read: " + unreadText(unread), lineWidth(format))) {
            out += styled(line, Style::Caution, format.colour) + "\n";
        }
    }
    if (report.hasProperties) {
        for (const IDeviceImp* const device : report.devices) {
            writeBlock(out, *device, format);
        }
    } else if (!report.devices.empty()) {
        out += "\n" + TreeWriter(deviceTree(report.machine, report.devices), format).take();
    }
    return out;
}

ReportWriters<ShowReport> showWriters() {
    static constexpr ReportWriter<ShowReport> WRITERS[] = {{"text", showText}, {"json", showJson}, {"xml", showXml}};
    return WRITERS;
}

}  // namespace vrx
