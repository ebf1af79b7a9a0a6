/// One page: what the summary says, and a table of all machines. The machines are data in the page, a line for each,
/// and the page's script shows a hundred of them at a time, so ten thousand are no burden for a browser.

#include <fmt/format.h>

#include <algorithm>

#include "libFleet/formats/Formats.h"
#include "libFleet/html/FleetAssets.h"
#include "libReport/html/HtmlPage.h"
#include "libReport/html/HtmlWriter.h"
#include "libReport/json/JsonWriter.h"

namespace vrx {

namespace {

constexpr std::size_t MOST_IN_PAGE = 20;

const HtmlPageAssets FLEET_PAGE{FLEET_STYLE, FLEET_STYLE_HASH, FLEET_SCRIPT, FLEET_SCRIPT_HASH};

/// JSON inside of a script element: nothing in it may look like the element's end.
std::string inScript(std::string json) {
    std::string out;
    for (const char character : json) {
        character == '<' ? out += "\\u003c" : out += character;
    }
    return out;
}

std::string row(const FleetResult& result, std::optional<std::uint32_t> group) {
    JsonWriter json(JsonWriter::Layout::OneLine);
    json.beginArray();
    for (const std::string* const text : {&result.file, &result.manufacturer, &result.model, &result.serialNumber,
                                          &result.hostName, &result.script, &result.headline}) {
        json.value(std::string_view(*text));
    }
    json.value(nameOf(result.verdict));
    group ? json.value(static_cast<std::int64_t>(*group)) : json.null();
    json.beginArray();
    for (const FleetFault& fault : result.faults) {
        json.value(std::string_view(fault.key.kind));
        json.value(std::string_view(fault.text));
        json.value(std::string_view(fault.key.title()));
    }
    json.endArray();
    json.endArray();
    std::string text = json.take();
    text.pop_back();
    return inScript(std::move(text));
}

class FleetPage final : public FleetWriter {
public:
    void begin(std::string& out) override {
        beginPage(m_html, "Fleet", FLEET_PAGE);
        m_html.begin("a", "skip").attribute("href", "#machines").text("Skip to the machines").end();
        m_html.begin("main")
            .begin("section")
            .attribute("id", "machines")
            .attribute("aria-labelledby", "machines-title");
        m_html.begin("h2").attribute("id", "machines-title").text("Machines").end();
        m_html.begin("div").attribute("id", "table").end().end();
        m_html.begin("script").attribute("type", "application/json").attribute("id", "rows").raw("[");
        out += m_html.takePart();
    }

    void add(const FleetResult& result, std::optional<std::uint32_t> group, std::string& out) override {
        out += m_isFirst ? "\n" : ",\n";
        m_isFirst = false;
        out += row(result, group);
    }

    void end(const FleetSummary& summary, std::string& out) override {
        m_html.raw("\n]").end();
        writeSummary(summary);
        m_html.end();
        endPage(m_html, FLEET_PAGE);
        out += m_html.take();
    }

private:
    void writeSummary(const FleetSummary& summary) {
        m_html.begin("section").attribute("id", "summary").attribute("aria-label", "Summary");
        m_html.element("h1", "", countsText(summary));
        m_html.begin("p", "counts");
        for (const FleetVerdict verdict :
             {FleetVerdict::Failed, FleetVerdict::Undetermined, FleetVerdict::Unreadable, FleetVerdict::Passed}) {
            writeCount(verdict, summary.count(verdict));
        }
        m_html.end();
        for (const std::string& limit : limitLines(summary)) {
            m_html.element("p", "note", limit);
        }
        if (const std::string suspicion = suspicionText(summary); !suspicion.empty()) {
            m_html.element("p", "note", suspicion);
        }
        writeFaults(summary);
        writeGroups(summary);
        m_html.end().raw("\n");
    }

    void writeCount(FleetVerdict verdict, std::size_t count) {
        const std::string_view name = nameOf(verdict);
        m_html.begin("button", "count").attribute("type", "button").attribute("data-verdict", name);
        m_html.element("b", "", std::to_string(count)).text(" ").text(name).end();
    }

    void beginList(std::string_view title, std::string_view first, std::string_view second) {
        m_html.begin("details").begin("summary").text(title).end();
        m_html.begin("div", "wide").begin("table").begin("thead").begin("tr");
        for (const std::string_view heading : {first, second}) {
            m_html.begin("th").attribute("scope", "col").text(heading).end();
        }
        m_html.end().end().begin("tbody");
    }

    void endList() { m_html.end().end().end().end().raw("\n"); }

    void writeButton(std::string_view attribute, std::string_view value, std::size_t machines) {
        m_html.begin("td").begin("button", "pick").attribute("type", "button").attribute(attribute, value);
        m_html.text(std::to_string(machines)).end().end();
    }

    void writeFaults(const FleetSummary& summary) {
        const auto faults = summary.frequentFaults(MOST_IN_PAGE);
        if (faults.empty()) {
            return;
        }
        beginList("Most frequent faults", "Machines", "Fault");
        for (const FleetSummary::FaultCount* const fault : faults) {
            m_html.begin("tr");
            writeButton("data-fault", fault->key.title(), fault->machines);
            m_html.begin("td")
                .text(fault->key.title())
                .element("span", "example", "as in " + fault->examples.front() + ": " + fault->text);
            m_html.end().end();
        }
        endList();
    }

    void writeGroups(const FleetSummary& summary) {
        const auto groups = summary.largestGroups(MOST_IN_PAGE);
        if (groups.empty()) {
            return;
        }
        beginList("Machines with the same faults", "Machines", "Faults");
        for (const FleetSummary::Group* const group : groups) {
            m_html.begin("tr");
            writeButton("data-group", std::to_string(group - summary.groups().data()), group->machines);
            m_html.begin("td").begin("ul");
            for (const std::uint32_t fault : group->faults) {
                m_html.element("li", "", summary.faults()[fault].key.title());
            }
            m_html.end().end().end();
        }
        endList();
    }

    HtmlWriter m_html;
    bool m_isFirst = true;
};

}  // namespace

std::unique_ptr<FleetWriter> fleetHtml(const TextFormat&) { return std::make_unique<FleetPage>(); }

}  // namespace vrx
