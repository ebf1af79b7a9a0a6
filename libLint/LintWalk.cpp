/// One walk in document order, over what a check looks at, calls every rule. An element that a check passes over is
/// asked about as such only, and its content is not looked at. A parts list is one walk for each part, since nothing
/// reaches from one part into another but its name.

#include "libLint/LintWalk.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <limits>
#include <system_error>
#include <utility>
#include <vector>

#include "libCommon/text/UuCode.h"
#include "libInventory/script/PartsList.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/XmlChildren.h"
#include "libLint/LintMemory.h"
#include "libLint/LintRules.h"
#include "libLint/LintSubject.h"
#include "libLint/rules/patterns/RangeText.h"
#include "libRegex/Regex.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

bool isPassedOver(const LintSubject& subject) noexcept {
    switch (subject.role) {
        case LintRole::Root:
        case LintRole::ListedPart: return false;
        case LintRole::BeforeParts: return true;
        case LintRole::Entry: return subject.kind != ElementKind::Value;
        case LintRole::InDevice:
            return subject.kind != ElementKind::Property && subject.kind != ElementKind::And &&
                   subject.kind != ElementKind::Or && subject.kind != ElementKind::Not;
        case LintRole::InScript: break;
    }
    switch (subject.kind) {
        case ElementKind::Property:
        case ElementKind::TestSet:
        case ElementKind::Error:
        case ElementKind::Value:
        case ElementKind::Unknown: return true;
        default: return false;
    }
}

std::uint64_t product(std::uint64_t a, std::uint64_t b) noexcept {
    constexpr std::uint64_t MOST = std::numeric_limits<std::uint64_t>::max();
    return a > MOST / b ? MOST : a * b;
}

std::uint64_t childCount(const XmlElement& element) noexcept {
    std::uint64_t count = 0;
    for ([[maybe_unused]] const XmlElement* const child : childElements(element)) {
        ++count;
    }
    return count;
}

class LintWalk {
public:
    LintWalk(LintMemory& memory, const LintTask& task, bool isInPartsList)
        : m_memory(memory),
          m_task(task),
          m_isInPartsList(isInPartsList),
          m_findsAll(task.extent == Lint::Extent::Everything),
          m_rules(LintRuleIndex::get(m_findsAll)) {}

    /// Everything below and including the top: a script, or a part of a list.
    void walk(const XmlElement& top, LintRole role) {
        ScriptPlace place = topPlace(top);
        if (role == LintRole::ListedPart) {
            place.kind = ElementKind::Part;
        }
        lookInto(place, role);
        lookBack(place, role);
    }

    /// Everything in and including the place, which has that role.
    void lookInto(const ScriptPlace& top, LintRole role) {
        for (ScriptWalk walk(top, ScriptWalk::Extent::WhereACheckLooks); walk; ++walk) {
            look(*walk, walk->element == top.element ? role : roleIn(*walk));
        }
    }

    void lookBack(const ScriptPlace& top, LintRole role) {
        LintSubject subject{top, role, top.kind, m_memory};
        subject.machine = m_task.machine;
        subject.isInPartsList = m_isInPartsList;
        ask(LintStage::End, subject);
    }

    void lookAtFile(const XmlElement& root, const Utf8Damage* damage) {
        const ScriptPlace place = topPlace(root);
        LintSubject subject{place, LintRole::Root, place.kind, m_memory};
        subject.damage = damage;
        ask(LintStage::File, subject);
    }

    void look(const ScriptPlace& place, LintRole role) {
        const bool isEntry = role == LintRole::Entry && place.kind == ElementKind::Unknown;
        LintSubject subject{place, role, isEntry ? ElementKind::Value : place.kind, m_memory};
        subject.machine = m_task.machine;
        subject.isInPartsList = m_isInPartsList;
        ask(LintStage::Element, subject);
        if (isPassedOver(subject)) {
            return;
        }
        remember(subject);
        for (const XmlAttribute& attribute : place.element->Attributes()) {
            subject.attribute = &attribute;
            ask(LintStage::Attribute, subject);
        }
        ask(LintStage::Content, subject);
        lookAtComparisons(subject);
        ask(LintStage::Whole, subject);
    }

private:
    static LintRole roleIn(const ScriptPlace& place) noexcept {
        if (place.property != nullptr) {
            return LintRole::Entry;
        }
        return place.holder != nullptr ? LintRole::InDevice : LintRole::InScript;
    }

    void remember(const LintSubject& subject) noexcept {
        if (subject.role != LintRole::InScript) {
            return;
        }
        if (subject.kind == ElementKind::Device || subject.kind == ElementKind::FailOnExtra) {
            ++m_memory.askedFor;
        } else if (const std::uint64_t alternatives = childCount(subject.element());
                   subject.kind == ElementKind::Or && alternatives > 0) {
            m_memory.combinations = product(m_memory.combinations, alternatives);
        }
    }

    /// A device is compared by its name and locators, in any letter case; a property by its value, or by that of its
    /// children when it has some.
    void lookAtComparisons(LintSubject& subject) {
        if (subject.kind == ElementKind::Device) {
            for (const XmlAttribute& attribute : subject.element().Attributes()) {
                subject.attribute = &attribute;
                if (equalNoCase(attribute.Name(), vocabulary::NAME)) {
                    lookAtPattern(subject);
                } else if (equalNoCase(attribute.Name(), vocabulary::HW_LOCATOR) ||
                           equalNoCase(attribute.Name(), vocabulary::OS_LOCATOR)) {
                    ask(LintStage::Locator, subject);
                }
            }
        } else if (subject.kind == ElementKind::Value ||
                   (subject.kind == ElementKind::Property && !hasEntries(subject.element()))) {
            subject.attribute = subject.element().FindAttribute(vocabulary::VALUE);
            if (subject.attribute != nullptr) {
                lookAtPattern(subject);
            }
        }
    }

    void lookAtPattern(LintSubject& subject) {
        const StringView written = subject.attribute->Value();
        const String decoded = needsUuDecode(written) ? fromXmlSafe(written) : String();
        LintPattern pattern{decoded.isEmpty() ? written : decoded.view(), {}, 0};
        if (m_findsAll && !pattern.text.empty()) {
            pattern.problem = Regex::compileError(pattern.text, &pattern.problemOffset);
        }
        subject.pattern = &pattern;
        ask(LintStage::Pattern, subject);
        lookAtRanges(subject);
        subject.pattern = nullptr;
    }

    void lookAtRanges(LintSubject& subject) {
        const StringView text = subject.pattern->text;
        for (std::size_t at = findRangeMarker(text); at != StringView::npos; at = findRangeMarker(text, at + 1)) {
            subject.marker = at;
            ask(LintStage::Range, subject);
        }
    }

    void ask(LintStage stage, const LintSubject& subject) {
        for (const LintRule* const rule : m_rules.rules(stage, subject.kind, subject.role)) {
            rule->check(subject, LintReporter(*rule, m_task.findings));
        }
    }

    LintMemory& m_memory;
    const LintTask& m_task;
    bool m_isInPartsList;
    bool m_findsAll;
    const LintRuleIndex& m_rules;
};

/// The content of a script's root, looked through by several threads. No rule for mistakes compares an element with
/// others, so each child of the root can be looked at by itself; threads take so many at a time.
class SharedLintWalk {
public:
    SharedLintWalk(const XmlElement& root, const LintTask& task) : m_task(task) {
        for (const XmlElement* const child : childElements(root)) {
            m_children.push_back(child);
        }
        m_findings.resize((m_children.size() + AT_ONCE - 1) / AT_ONCE);
    }

    void run() {
        runWith(std::min<std::size_t>(m_task.threads, m_findings.size()));
        for (LintFindings& findings : m_findings) {
            m_task.findings.add(std::move(findings));
        }
    }

private:
    static constexpr std::size_t AT_ONCE = 64;

    void runWith(std::size_t threads) {
        std::vector<std::future<void>> others;
        try {
            while (others.size() + 1 < threads) {
                others.push_back(std::async(std::launch::async, [this] { takeUntilNoneIsLeft(); }));
            }
        } catch (const std::system_error&) {  // fewer threads are to be had
        }
        takeUntilNoneIsLeft();
        std::ranges::for_each(others, [](std::future<void>& other) { other.get(); });
    }

    void takeUntilNoneIsLeft() {
        for (std::size_t batch = m_next++; batch < m_findings.size(); batch = m_next++) {
            LintMemory memory;
            const LintTask task{m_task.extent, m_task.machine, m_findings[batch]};
            LintWalk walk(memory, task, false);
            const std::size_t end = std::min((batch + 1) * AT_ONCE, m_children.size());
            for (std::size_t child = batch * AT_ONCE; child < end; ++child) {
                walk.lookInto(placeInRoot(*m_children[child]), LintRole::InScript);
            }
        }
    }

    static ScriptPlace placeInRoot(const XmlElement& child) noexcept {
        ScriptPlace place = topPlace(child);
        place.depth = 1;
        return place;
    }

    const LintTask& m_task;
    std::vector<const XmlElement*> m_children;
    std::vector<LintFindings> m_findings;  // of so many children each
    std::atomic<std::size_t> m_next = 0;
};

}  // namespace

void lintScript(const XmlElement& root, const Utf8Damage* damage, const LintTask& task) {
    LintMemory memory;
    LintWalk walk(memory, task, false);
    walk.lookAtFile(root, damage);
    if (task.extent == Lint::Extent::Mistakes && task.threads > 1) {
        walk.look(topPlace(root), LintRole::Root);
        SharedLintWalk(root, task).run();
        walk.lookBack(topPlace(root), LintRole::Root);
    } else {
        walk.walk(root, LintRole::Root);
    }
}

void lintPartsList(const XmlElement& root, const LintTask& task) {
    LintMemory::PartsByName parts;
    const XmlElement* const first = firstPart(root);
    bool hasBegun = false;
    for (const XmlElement* const child : childElements(root)) {
        hasBegun = hasBegun || child == first;
        LintMemory memory;
        memory.parts.swap(parts);
        LintWalk walk(memory, task, true);
        if (hasBegun) {
            walk.walk(*child, LintRole::ListedPart);
        } else {
            walk.look(topPlace(*child), LintRole::BeforeParts);
        }
        parts.swap(memory.parts);
    }
}

}  // namespace vrx
