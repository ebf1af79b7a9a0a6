#include <map>
#include <utility>

#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libReport/faults/DifferenceText.h"
#include "libReport/html/CheckSections.h"
#include "libReport/html/HtmlPage.h"
#include "libReport/patterns/ReadablePattern.h"
#include "libReport/text/DeviceSummary.h"
#include "libReport/text/TextPieces.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;
using Outcome = CheckedElement::Outcome;
using Place = std::pair<std::uint64_t, std::uint64_t>;

struct Badge {
    std::string_view cssClass;
    std::string_view text;
};

Badge badgeOf(Outcome outcome) noexcept {
    switch (outcome) {
        case Outcome::Passed: return {"badge good", "passed"};
        case Outcome::Failed: return {"badge bad", "failed"};
        case Outcome::Undetermined: return {"badge doubt", "undetermined"};
        case Outcome::Waived: return {"badge", "waived"};
        case Outcome::NotChosen: break;
    }
    return {"badge", "not needed"};
}

void writeDifferences(HtmlWriter& html, const NearDevice& near) {
    html.begin("li").text("Nearest candidate: " + deviceTitle(near.device)).begin("ul");
    for (const Difference& difference : near.differences) {
        html.element(
            "li", "",
            subjectText(difference) + ": expected " + expectedText(difference) + ", found " + foundText(difference));
    }
    html.end().end();
}

void writeCandidates(HtmlWriter& html, const DeviceProblem& problem) {
    const CandidateSummary& candidates = problem.candidates;
    const std::size_t tried = candidates.failed + candidates.takenCount;
    html.element("li", "", tried == 0 ? "No device could be tried" : counted(tried, "candidate") + " tried");
    if (candidates.nearest) {
        writeDifferences(html, *candidates.nearest);
    }
    for (const TakenDevice& taken : candidates.taken) {
        html.element("li", "",
                     deviceTitle(taken.device) + " would do, but serves the element at " +
                         std::to_string(taken.holder.row) + ":" + std::to_string(taken.holder.column));
    }
}

std::string propertyText(const XmlElement& property) {
    std::string text;
    for (const String& value : askedValues(property)) {
        text += (text.empty() ? "" : " | ") + readablePattern(value);
    }
    const std::string key = toUtf8(attributeOf(property, vocabulary::KEY));
    return text.empty() ? key + " is there" : key + ": " + text;
}

class Tree {
public:
    Tree(HtmlWriter& html, const CheckReport& report) : m_html(html), m_report(report) {
        for (const CheckedElement& each : report.checked) {
            m_checked.emplace(Place(each.place.row, each.place.column), &each);
        }
        for (const DeviceProblem& problem : report.devices) {
            m_problems.emplace(Place(problem.place.row, problem.place.column), &problem);
        }
    }

    void write() {
        m_html.begin("ul");
        for (ScriptWalk walk(*m_report.annotatedScript->RootElement(), ScriptWalk::Extent::WhereACheckLooks); walk;
             ++walk) {
            closeTo(walk->depth);
            writeElement(*walk->element, walk->kind);
            if (walk->kind == ElementKind::Property) {
                walk.skipContent();
            }
        }
        closeTo(0);
        m_html.end();
    }

private:
    /// Ends the lists and entries that are not around an element of that depth.
    void closeTo(unsigned depth) {
        for (; m_depth > depth; --m_depth) {
            m_html.end().end().end().raw("\n");
        }
    }

    void writeElement(const XmlElement& element, ElementKind kind) {
        if (kind == ElementKind::Property) {
            m_html.element("li", "", propertyText(element));
        } else if (kind != ElementKind::Error && kind != ElementKind::TestSet && kind != ElementKind::Unknown) {
            openElement(element, kind);
        }
    }

    void openElement(const XmlElement& element, ElementKind kind) {
        const ElementPlace place = placeIn(element);
        const auto at = m_checked.find({place.row, place.column});
        const CheckedElement* const checked = at == m_checked.end() ? nullptr : at->second;
        const bool isDevice = kind == ElementKind::Device;
        m_html.begin("li");
        if (isDevice) {
            m_html.attribute(HTML_ENTRY, "");
        }
        m_html.begin("details");
        if (!isDevice || (checked != nullptr && checked->outcome == Outcome::Failed)) {
            m_html.attribute("open", "");
        }
        writeSummary(element, place, checked, isDevice);
        m_html.begin("ul");
        ++m_depth;
        writeFaultLinks(checked);
        if (const auto problem = m_problems.find({place.row, place.column}); problem != m_problems.end()) {
            writeCandidates(m_html, *problem->second);
        }
    }

    void writeSummary(const XmlElement& element, const ElementPlace& place, const CheckedElement* checked,
                      bool isDevice) {
        m_html.begin("summary");
        if (checked != nullptr) {
            const Badge badge = badgeOf(checked->outcome);
            m_html.element("span", badge.cssClass, badge.text).text(" ");
        }
        m_html.text(isDevice ? deviceTitle(askedBy(element)) : titleOf(element)).text(" ");
        m_html.element("code", "", std::to_string(place.row) + ":" + std::to_string(place.column));
        if (checked != nullptr && checked->device) {
            m_html.text(" is " + deviceTitle(*checked->device));
        }
        m_html.end();
    }

    static std::string titleOf(const XmlElement& element) {
        std::string title = toUtf8(element.Name());
        for (const StringView attribute : {vocabulary::NAME, vocabulary::TYPE, vocabulary::CAPABILITY}) {
            if (const StringView value = attributeOf(element, attribute); !value.empty()) {
                title += " " + toUtf8(value);
            }
        }
        return title;
    }

    void writeFaultLinks(const CheckedElement* checked) {
        for (const std::size_t fault : checked != nullptr ? checked->faults : std::vector<std::size_t>()) {
            m_html.begin("li").begin("a").attribute("href", "#fault-" + std::to_string(fault)).text("see fault");
            m_html.end().end();
        }
    }

    HtmlWriter& m_html;
    const CheckReport& m_report;
    std::map<Place, const CheckedElement*> m_checked;
    std::map<Place, const DeviceProblem*> m_problems;
    unsigned m_depth = 0;
};

}  // namespace

void writeScript(HtmlWriter& html, const CheckReport& report) {
    if (report.annotatedScript == nullptr) {
        return;
    }
    html.begin("section", "tree").attribute("id", "script").attribute("aria-labelledby", "script-title");
    html.begin("h2").attribute("id", "script-title").text("Script").end();
    Tree(html, report).write();
    html.end();
}

}  // namespace vrx
