#include "libLint/rules/AssignmentRules.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "libInventory/Finding.h"
#include "libInventory/Inventory.h"
#include "libInventory/script/OrInsidePart.h"
#include "libInventory/script/ScriptWalk.h"
#include "libLint/LintMachine.h"
#include "libLint/LintSubject.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

constexpr std::uint64_t MOST_COMBINATIONS_TRIED = 1000;

std::vector<const XmlElement*> elementsOf(const XmlElement& root) {
    std::vector<const XmlElement*> elements;
    for (ScriptWalk walk(root); walk; ++walk) {
        elements.push_back(walk->element);
    }
    return elements;
}

/// Runs a copy of the script, since a run leaves its findings in it. None when it does not pass, or passes greedily;
/// else the elements that hang on exact assignment.
std::optional<std::vector<const XmlElement*>> exactlyAssigned(const LintSubject& subject) {
    const XmlElement& root = subject.element();
    if (subject.machine == nullptr || subject.isInPartsList || findOrInsidePart(root) != nullptr) {
        return std::nullopt;
    }
    Inventory inventory;
    subject.machine->giveTo(inventory);
    inventory.setAssignment(Inventory::Assignment::Auto);
    inventory.setSearch(Inventory::Search::Deduced);
    inventory.setProgress([](const RunProgress& state) { return state.combination <= MOST_COMBINATIONS_TRIED; });
    if (!inventory.loadInventoryScript(root.toString()) || !inventory.run() || !inventory.summary().isAssignedExactly) {
        return std::nullopt;
    }
    const std::vector<const XmlElement*> originals = elementsOf(root);
    const std::vector<const XmlElement*> copies = elementsOf(*inventory.script().RootElement());
    std::map<const XmlElement*, const XmlElement*> originalOf;
    for (std::size_t i = 0; i < std::min(originals.size(), copies.size()); ++i) {
        originalOf.emplace(copies[i], originals[i]);
    }
    std::vector<const XmlElement*> assigned;
    for (const XmlElement* const element : inventory.summary().exactlyAssigned) {
        assigned.push_back(originalOf.at(element));
    }
    return assigned;
}

}  // namespace

void assignedExactly(const LintSubject& subject, const LintReporter& report) {
    const auto assigned = exactlyAssigned(subject);
    if (!assigned) {
        return;
    }
    for (const XmlElement* const element : *assigned) {
        report.at(*element, std::string("this gets a device of that machine"));
    }
    if (assigned->empty()) {
        report.at(subject.element(), std::string("no device of that machine is too many"));
    }
}

}  // namespace vrx::rules
