#include "libLint/rules/AttributeRules.h"

#include <algorithm>

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"
#include "libLint/LintSubject.h"
#include "libLint/LintVocabulary.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

/// Attributes that belong to XML itself: names of namespaces and of schemas.
bool isXmlsOwn(StringView name) noexcept {
    return name == u"xmlns" || name.starts_with(u"xmlns:") || name.starts_with(u"xml:") || name.starts_with(u"xsi:");
}

bool isFlag(StringView text) noexcept {
    constexpr StringView WORDS[] = {u"true", u"1", u"yes", u"on", u"false", u"0", u"no", u"off"};
    return std::ranges::any_of(WORDS, [text](StringView word) { return equalNoCase(word, trimmed(text)); });
}

}  // namespace

void unknownAttribute(const LintSubject& subject, const LintReporter& report) {
    const StringView name = subject.attribute->Name();
    const auto known = attributesOf(subject.kind);
    if (subject.kind != ElementKind::Device && std::ranges::find(known, name) == known.end() && !isXmlsOwn(name)) {
        report.at(subject.element(), printable(name), tagOf(subject.element())).suggestion =
            printable(nearestName(name, known));
    }
}

void deviceAttribute(const LintSubject& subject, const LintReporter& report) {
    const StringView name = subject.attribute->Name();
    const auto known = attributesOf(subject.kind);
    if (subject.kind == ElementKind::Device &&
        std::ranges::none_of(known, [name](StringView each) { return equalNoCase(each, name); })) {
        report.at(subject.element(), printable(name)).suggestion = printable(nearestName(name, known));
    }
}

void ignoredText(const LintSubject& subject, const LintReporter& report) {
    if (const String text = subject.element().NormalizedText(); !text.isEmpty()) {
        constexpr std::size_t SHOWN = 40;
        const std::string cut = printable(text.view().substr(0, SHOWN)) + (text.size() > SHOWN ? "..." : "");
        report.at(subject.element(), cut, tagOf(subject.element()));
    }
}

void flagValue(const LintSubject& subject, const LintReporter& report) {
    if (subject.role != LintRole::Root) {
        return;
    }
    for (const StringView name : attributesOf(ElementKind::InventoryCheck)) {
        const XmlAttribute* const flag = subject.element().FindAttribute(name);
        if (flag != nullptr && !isFlag(flag->Value())) {
            report.at(subject.element(), printable(name), printable(flag->Value()));
        }
    }
}

}  // namespace vrx::rules
