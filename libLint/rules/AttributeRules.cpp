#include "libLint/rules/AttributeRules.h"

#include <fmt/format.h>

#include <algorithm>

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"

namespace vrx {

namespace {

/// Attributes that belong to XML itself: names of namespaces and of schemas.
bool isXmlsOwn(StringView name) noexcept {
    return name == u"xmlns" || name.starts_with(u"xmlns:") || name.starts_with(u"xml:") || name.starts_with(u"xsi:");
}

void checkDeviceAttribute(const XmlElement& element, StringView name, LintFindings& findings) {
    const auto known = attributesOf(LintKind::Device);
    if (std::ranges::none_of(known, [name](StringView each) { return equalNoCase(each, name); })) {
        findings.add(LintRule::DeviceAttribute, element,
                     fmt::format("a device has no attribute \"{}\", and with it the device is never found{}",
                                 printable(name), suggestion(name, known)));
    }
}

void checkAttribute(const XmlElement& element, StringView name, LintKind kind, LintFindings& findings) {
    const auto known = attributesOf(kind);
    if (std::ranges::find(known, name) == known.end() && !isXmlsOwn(name)) {
        findings.add(LintRule::UnknownAttribute, element,
                     fmt::format("nothing reads the attribute \"{}\" of {}; remove it{}", printable(name),
                                 tagOf(element), suggestion(name, known)));
    }
}

void checkText(const XmlElement& element, LintFindings& findings) {
    if (const String text = element.NormalizedText(); !text.isEmpty()) {
        constexpr std::size_t SHOWN = 40;
        const std::string cut = printable(text.view().substr(0, SHOWN)) + (text.size() > SHOWN ? "..." : "");
        findings.add(LintRule::IgnoredText, element,
                     fmt::format("nothing reads the text \"{}\" in {}; remove it or write it as an attribute", cut,
                                 tagOf(element)));
    }
}

bool isFlag(StringView text) noexcept {
    constexpr StringView WORDS[] = {u"true", u"1", u"yes", u"on", u"false", u"0", u"no", u"off"};
    return std::ranges::any_of(WORDS, [text](StringView word) { return equalNoCase(word, trimmed(text)); });
}

}  // namespace

void checkAttributesAndText(const XmlElement& element, LintKind kind, LintFindings& findings) {
    for (const XmlAttribute& attribute : element.Attributes()) {
        if (kind == LintKind::Device) {
            checkDeviceAttribute(element, attribute.Name(), findings);
        } else {
            checkAttribute(element, attribute.Name(), kind, findings);
        }
    }
    checkText(element, findings);
}

void checkFlags(const XmlElement& root, LintFindings& findings) {
    for (const StringView name : attributesOf(LintKind::InventoryCheck)) {
        const XmlAttribute* const flag = root.FindAttribute(name);
        if (flag != nullptr && !isFlag(flag->Value())) {
            findings.add(
                LintRule::FlagValue, root,
                fmt::format("{}=\"{}\" means off; write true or false", printable(name), printable(flag->Value())));
        }
    }
}

}  // namespace vrx
