/// One traversal in document order, over what a check visits: what it passes over is reported where it begins, and its
/// content is not looked at. Only the number of combinations and of repeated devices are known at the end.

#include "libLint/LintWalk.h"

#include <fmt/format.h>

#include <limits>

#include "libInventory/script/OrInsidePart.h"
#include "libInventory/script/ScriptContent.h"
#include "libLint/rules/AttributeRules.h"
#include "libLint/rules/DeviceContentRules.h"
#include "libLint/rules/DeviceRules.h"
#include "libLint/rules/ElementRules.h"

namespace vrx {

namespace {

/// More than this take a while, and are seldom meant.
constexpr std::uint64_t MANY_COMBINATIONS = 10'000;

std::uint64_t product(std::uint64_t a, std::uint64_t b) noexcept {
    constexpr std::uint64_t MOST = std::numeric_limits<std::uint64_t>::max();
    return a > MOST / b ? MOST : a * b;
}

std::uint64_t childCount(const XmlElement& element) noexcept {
    std::uint64_t count = 0;
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        ++count;
    }
    return count;
}

}  // namespace

void LintWalk::walkScript(const XmlElement& root) {
    checkAttributesAndText(root, LintKind::InventoryCheck, m_findings);
    checkFlags(root, m_findings);
    if (!contentOf(root).asksForAnything()) {
        m_findings.add(LintRule::NothingToCheck, root,
                       "the script asks for nothing, and a check of it is undetermined; add a <device> or a "
                       "<fail-on-extra>");
    }
    walkChildren(root, {});
    reportCombinations(root);
    m_repeated.report(m_findings);
}

void LintWalk::walkPart(const XmlElement& part) {
    Place place;
    place.isInsidePart = true;
    walkChildren(part, place);
    m_repeated.report(m_findings);
}

void LintWalk::walkChildren(const XmlElement& element, const Place& place) {
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        walk(*child, place);
    }
}

void LintWalk::walk(const XmlElement& element, const Place& place) {
    const LintKind kind = lintKindOf(element);
    switch (kind) {
        case LintKind::InventoryCheck:
            m_findings.add(LintRule::MisplacedElement, element,
                           "<inventory-check> is the root and counts as an <and> here; write <and>");
            [[fallthrough]];
        case LintKind::And:
        case LintKind::Or:
        case LintKind::Not:
        case LintKind::Part: walkGroup(element, kind, place); return;
        case LintKind::Device: walkDevice(element, place); return;
        case LintKind::FailOnExtra: walkExtraDeviceRule(element, place); return;
        case LintKind::TestSet:
            m_findings.add(LintRule::IgnoredTestset, element,
                           "a <testset> is passed over with everything in it; it may be left out");
            return;
        default: reportPassedOver(element, kind, "between devices", m_findings);
    }
}

void LintWalk::walkGroup(const XmlElement& group, LintKind kind, Place place) {
    checkAttributesAndText(group, kind, m_findings);
    checkEmpty(group, kind);
    if (kind == LintKind::Part && place.isInsidePart) {
        m_findings.add(LintRule::NestedPart, group,
                       "a <part> inside a <part> cannot be told apart from it; write one after the other, or an <and>");
    } else if (kind == LintKind::Not) {
        checkNot(group, place.isUnderNot, m_findings);
    } else if (kind == LintKind::Or) {
        checkOr(group, place);
    }
    place.isInsidePart = place.isInsidePart || kind == LintKind::Part;
    place.isUnderNot = place.isUnderNot || kind == LintKind::Not;
    place.isAlternative = place.isAlternative || kind == LintKind::Or;
    walkChildren(group, place);
}

void LintWalk::checkOr(const XmlElement& element, const Place& place) {
    if (place.isInsidePart && element.FirstChildElement() != nullptr) {
        m_findings.add(LintRule::OrInsidePart, element, OR_INSIDE_PART_REASON);
    }
    checkAlternatives(element, m_findings);
    if (const std::uint64_t alternatives = childCount(element); alternatives > 0) {
        m_combinations = product(m_combinations, alternatives);
    }
}

void LintWalk::checkEmpty(const XmlElement& group, LintKind kind) {
    if (group.FirstChildElement() != nullptr) {
        return;
    }
    if (kind == LintKind::Or) {
        m_findings.add(LintRule::EmptyOr, group,
                       "an <or> without alternatives is satisfied in the first combination only; give it some, or "
                       "remove it");
    } else {
        m_findings.add(LintRule::EmptyGroup, group,
                       fmt::format("an empty {} asks for nothing; remove it", tagOf(group)));
    }
}

void LintWalk::walkDevice(const XmlElement& device, const Place& place) {
    checkAttributesAndText(device, LintKind::Device, m_findings);
    checkDeviceAttributes(device, m_findings);
    checkDeviceContent(device, place.isUnderNot, m_findings);
    if (!place.isAlternative && !place.isUnderNot) {
        m_repeated.add(device, m_findings);
    }
}

/// A rule is in force wherever it stands; what it holds is tested by itself, so a `not` around it does not count there.
void LintWalk::walkExtraDeviceRule(const XmlElement& rule, const Place& place) {
    checkAttributesAndText(rule, LintKind::FailOnExtra, m_findings);
    checkExtraDeviceRule(rule, m_findings);
    checkDeviceContent(rule, false, m_findings);
    if (place.isAlternative || place.isUnderNot) {
        m_findings.add(LintRule::FailOnExtraInGroup, rule,
                       "this rule is in force whichever alternative is chosen, and also under a <not>; move it to the "
                       "end of the script");
    }
}

void LintWalk::reportCombinations(const XmlElement& root) {
    if (m_combinations > MANY_COMBINATIONS) {
        const bool isMost = m_combinations == std::numeric_limits<std::uint64_t>::max();
        m_findings.add(LintRule::ManyCombinations, root,
                       fmt::format("{} {} combinations of alternatives are tried; where only properties differ, "
                                   "write the <or> inside the <device>, which costs nothing",
                                   isMost ? "more than" : "up to", m_combinations));
    } else if (m_combinations > 1) {
        m_findings.add(LintRule::Combinations, root,
                       fmt::format("up to {} combinations of alternatives are tried", m_combinations));
    }
}

}  // namespace vrx
