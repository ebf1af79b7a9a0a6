#include "libLint/rules/AttributeRules.h"

#include <algorithm>

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"
#include "libCommon/text/ShortText.h"
#include "libLint/LintSubject.h"
#include "libLint/LintVocabulary.h"

namespace vrx::rules {

using vocabulary::ElementKind;

namespace {

/// Attributes that belong to XML itself: names of namespaces and of schemas.
bool isXmlsOwn(StringView name) noexcept {
    return name == u"xmlns" || name.starts_with(u"xmlns:") || name.starts_with(u"xml:") || name.starts_with(u"xsi:");
}

bool isAmong(std::span<const StringView> names, StringView name) noexcept {
    return std::ranges::any_of(names, [name](StringView each) { return isSameText(each, name); });
}

bool isFlag(StringView text) noexcept {
    constexpr StringView WORDS[] = {u"true", u"1", u"yes", u"on", u"false", u"0", u"no", u"off"};
    return std::ranges::any_of(WORDS, [text](StringView word) { return equalNoCase(word, trimmed(text)); });
}

/// The beginning of the element's text.
std::string shortText(const XmlElement& element) {
    constexpr std::size_t SHOWN = 40;
    const String text = element.NormalizedText();
    return printable(text.view().substr(0, SHOWN)) + (text.size() > SHOWN ? "..." : "");
}

bool hasText(const XmlElement& element) {
    for (const XmlNode* child = element.FirstChild(); child != nullptr; child = child->NextSibling()) {
        if (child->NodeKind() == XmlNode::Kind::Text && !trimmed(child->Value()).empty()) {
            return true;
        }
    }
    return false;
}

/// Whether a text stands where a value was meant.
bool isGivenAsText(const LintSubject& subject) {
    return (subject.kind == ElementKind::Property || subject.kind == ElementKind::Value) &&
           hasText(subject.element()) && subject.element().FindAttribute(vocabulary::VALUE) == nullptr;
}

}  // namespace

void unknownAttribute(const LintSubject& subject, const LintReporter& report) {
    const StringView name = subject.attribute->Name();
    const bool isNestedRoot = subject.kind == ElementKind::InventoryCheck && subject.role != LintRole::Root;
    const auto known = isNestedRoot ? std::span<const StringView>() : attributesOf(subject.kind);
    if (!isAmong(known, name) && !isXmlsOwn(name)) {
        report.at(subject.element(), printable(name), tagOf(subject.element())).suggestion =
            printable(nearestName(name, known));
    }
}

void deviceAttribute(const LintSubject& subject, const LintReporter& report) {
    const StringView name = subject.attribute->Name();
    const auto known = attributesOf(subject.kind);
    if (std::ranges::none_of(known, [name](StringView each) { return equalNoCase(each, name); })) {
        report.at(subject.element(), printable(name)).suggestion = printable(nearestName(name, known));
    }
}

// That of exactly this name counts, else the first.
void repeatedType(const LintSubject& subject, const LintReporter& report) {
    const XmlAttribute& attribute = *subject.attribute;
    if (!equalNoCase(attribute.Name(), vocabulary::TYPE)) {
        return;
    }
    const XmlAttribute* counting = subject.element().FindAttribute(vocabulary::TYPE);
    for (const XmlAttribute& each : subject.element().Attributes()) {
        counting = counting == nullptr && equalNoCase(each.Name(), vocabulary::TYPE) ? &each : counting;
    }
    if (counting != &attribute) {
        report.at(subject.element(), printable(attribute.Name()), printable(attribute.Value()),
                  printable(counting->Name()), printable(counting->Value()));
    }
}

void textAsValue(const LintSubject& subject, const LintReporter& report) {
    if (isGivenAsText(subject)) {
        report.at(subject.element(), shortText(subject.element()), tagOf(subject.element()));
    }
}

void ignoredText(const LintSubject& subject, const LintReporter& report) {
    if (hasText(subject.element()) && !isGivenAsText(subject)) {
        report.at(subject.element(), shortText(subject.element()), tagOf(subject.element()));
    }
}

void flagValue(const LintSubject& subject, const LintReporter& report) {
    for (const StringView name : attributesOf(ElementKind::InventoryCheck)) {
        const XmlAttribute* const flag = subject.element().FindAttribute(name);
        if (flag != nullptr && !isFlag(flag->Value())) {
            report.at(subject.element(), printable(name), printable(flag->Value()));
        }
    }
}

}  // namespace vrx::rules
