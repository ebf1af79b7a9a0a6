#include "libReport/formats/CheckCases.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "libCommon/text/PrintableText.h"
#include "libReport/faults/FaultText.h"
#include "libReport/faults/FoldedText.h"
#include "libReport/patterns/ReadablePattern.h"
#include "libReport/text/TextPieces.h"
#include "libReport/waivers/ReportWaivers.h"

namespace vrx {

namespace {

/// What the script asks for, in words that stay the same from machine to machine.
std::string askedText(const Inventory::DeviceSpec& asked) {
    std::string text = asked.type.isEmpty() ? "device" : printable(asked.type);
    if (!asked.name.isEmpty()) {
        text += " " + readablePattern(asked.name);
    }
    const String& locator = asked.hwLocator.isEmpty() ? asked.osLocator : asked.hwLocator;
    return locator.isEmpty() ? text : text + " (" + printable(locator) + ")";
}

std::string titleOf(const CheckedElement& element) {
    switch (element.kind) {
        case CheckedElement::Kind::Device: break;
        case CheckedElement::Kind::Forbidden: return "no " + askedText(element.asked);
        case CheckedElement::Kind::Extra: return "no extra " + askedText(element.asked);
    }
    return askedText(element.asked);
}

CheckCase::Outcome outcomeOf(CheckedElement::Outcome outcome) noexcept {
    switch (outcome) {
        case CheckedElement::Outcome::Passed: return CheckCase::Outcome::Passed;
        case CheckedElement::Outcome::Failed: return CheckCase::Outcome::Failed;
        case CheckedElement::Outcome::Waived:
        case CheckedElement::Outcome::NotChosen: return CheckCase::Outcome::Skipped;
        case CheckedElement::Outcome::Undetermined: break;
    }
    return CheckCase::Outcome::Undetermined;
}

class MakingCases {
public:
    explicit MakingCases(const CheckReport& report) : m_report(report), m_isTold(report.faults.size()) {
        for (const Fault& fault : report.faults) {
            for (const FoldedFault& folded : fault.withIt) {
                m_folded.emplace(std::pair(folded.place.row, folded.place.column), &folded);
            }
        }
    }

    std::vector<CheckCase> cases() {
        addElements();
        addUntoldFaults();
        addMistakes();
        for (const String& error : m_report.fileErrors) {
            addProblem("load", "error", printable(error));
        }
        addVerdict();
        return std::move(m_cases);
    }

private:
    void addElements() {
        for (const CheckedElement& element : m_report.checked) {
            CheckCase& added = add(titleOf(element), outcomeOf(element.outcome));
            added.element = &element;
            added.place = element.place;
            if (element.outcome == CheckedElement::Outcome::NotChosen) {
                added.messages.emplace_back("another alternative was chosen");
            } else if (element.outcome == CheckedElement::Outcome::Waived) {
                added.messages.push_back(waivedReason(element));
            } else if (element.outcome != CheckedElement::Outcome::Passed) {
                describe(element, added);
            }
        }
    }

    std::string waivedReason(const CheckedElement& element) const {
        if (element.waived.empty()) {
            return "it follows from a fault that is waived";
        }
        const WaivedFault& waived = m_report.waived[element.waived.front()];
        return faultText(waived.fault) + "; waived: " + waiverText(waived.waivers.front());
    }

    void describe(const CheckedElement& element, CheckCase& added) {
        for (const std::size_t index : element.faults) {
            addFault(index, added);
        }
        if (element.faults.empty()) {
            const bool isKnown = element.outcome == CheckedElement::Outcome::Failed;
            added.kind = isKnown ? "missing" : "undetermined";
            added.messages.push_back(added.name + (isKnown ? " is not met" : " is not known"));
        }
    }

    void addFault(std::size_t index, CheckCase& added) {
        const Fault& fault = m_report.faults[index];
        added.faults.push_back(&fault);
        added.kind = added.kind.empty() ? nameOf(fault.kind) : added.kind;
        added.messages.push_back(messageAt(fault, added.place));
        m_isTold[index] = true;
    }

    std::string messageAt(const Fault& fault, const ElementPlace& place) const {
        const auto folded = fault.place == place ? m_folded.end() : m_folded.find({place.row, place.column});
        return folded == m_folded.end() ? faultText(fault) : foldedText(fault, *folded->second);
    }

    void addUntoldFaults() {
        for (std::size_t i = 0; i < m_report.faults.size(); ++i) {
            if (!m_isTold[i]) {
                const Fault& fault = m_report.faults[i];
                const bool isKnown = fault.kind != FaultKind::Undetermined && m_report.verdict != Verdict::Undecided;
                CheckCase& added =
                    add(faultTitle(fault), isKnown ? CheckCase::Outcome::Failed : CheckCase::Outcome::Undetermined);
                added.place = fault.place;
                addFault(i, added);
            }
        }
    }

    void addMistakes() {
        for (const ScriptMistake& mistake : m_report.mistakes) {
            addProblem("lint " + std::string(mistake.finding.rule), "mistake",
                       printable(std::string_view(mistake.finding.message())));
            m_cases.back().place = {std::uint64_t{mistake.finding.row} + 1, std::uint64_t{mistake.finding.column} + 1};
        }
    }

    void addVerdict() {
        const bool isTold = std::ranges::any_of(m_cases, [](const CheckCase& one) {
            return one.outcome == CheckCase::Outcome::Failed || one.outcome == CheckCase::Outcome::Undetermined;
        });
        if (m_report.verdict != Verdict::Passed && !isTold) {
            addProblem("verdict", std::string(nameOf(m_report.verdict)),
                       printable(std::string_view(m_report.headline)));
            if (m_report.verdict == Verdict::Failed) {
                m_cases.back().outcome = CheckCase::Outcome::Failed;
            }
        }
    }

    void addProblem(const std::string& name, std::string kind, std::string message) {
        CheckCase& added = add(name, CheckCase::Outcome::Undetermined);
        added.kind = std::move(kind);
        added.messages.push_back(std::move(message));
    }

    CheckCase& add(const std::string& name, CheckCase::Outcome outcome) {
        CheckCase& added = m_cases.emplace_back();
        added.name = name;
        while (!m_names.insert(added.name).second) {
            added.name = fmt::format("{} #{}", name, ++m_repeated[name] + 1);
        }
        added.outcome = outcome;
        return added;
    }

    const CheckReport& m_report;
    std::vector<bool> m_isTold;
    std::map<std::pair<std::uint64_t, std::uint64_t>, const FoldedFault*> m_folded;  ///< by place
    std::unordered_set<std::string> m_names;
    std::unordered_map<std::string, unsigned> m_repeated;
    std::vector<CheckCase> m_cases;
};

}  // namespace

std::vector<CheckCase> checkCases(const CheckReport& report) { return MakingCases(report).cases(); }

std::string_view nameOf(CheckCase::Outcome outcome) noexcept {
    static constexpr std::string_view NAMES[] = {"passed", "failed", "undetermined", "skipped"};
    return NAMES[static_cast<std::size_t>(outcome)];
}

std::string placeInScript(const CheckReport& report, const ElementPlace& place) {
    const std::string file = printable(std::string_view(inputName(report.script)));
    return place.row == 0 ? file : fmt::format("{}:{}:{}", file, place.row, place.column);
}

}  // namespace vrx
