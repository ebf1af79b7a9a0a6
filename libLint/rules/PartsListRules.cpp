/// The parts of a list are the first `part` below the root and everything behind it, whatever its name. A part is blank
/// when none of its direct children is a device or a group.

#include "libLint/rules/PartsListRules.h"

#include <fmt/format.h>

#include <unordered_map>

#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/PrintableText.h"
#include "libInventory/script/ScriptElement.h"
#include "libLint/LintWalk.h"
#include "libLint/rules/AttributeRules.h"

namespace vrx {

namespace {

bool isBlank(const XmlElement& part) {
    for (const XmlElement* child = part.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const LintKind kind = lintKindOf(*child);
        if (kind == LintKind::And || kind == LintKind::Or || kind == LintKind::Not || kind == LintKind::Device) {
            return false;
        }
    }
    return true;
}

/// Whether the part holds a device that has to be there.
bool asksForDevice(const XmlElement& element) {
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        const LintKind kind = lintKindOf(*child);
        const bool isGroup = kind == LintKind::And || kind == LintKind::Or || kind == LintKind::Part;
        if (kind == LintKind::Device || (isGroup && asksForDevice(*child))) {
            return true;
        }
    }
    return false;
}

class PartsListWalk {
public:
    explicit PartsListWalk(LintFindings& findings) : m_findings(findings) {}

    void walk(const XmlElement& root) {
        for (const XmlElement* child = root.FirstChildElement(); child; child = child->NextSiblingElement()) {
            const bool isPart = isNamed(*child, u"part");
            m_hasBegun = m_hasBegun || isPart;
            if (m_hasBegun) {
                checkPart(*child, isPart);
            } else {
                m_findings.add(LintRule::ElementBeforeParts, *child,
                               fmt::format("{} before the first <part> is passed over; remove it", tagOf(*child)));
            }
        }
    }

private:
    void checkPart(const XmlElement& part, bool isPart) {
        if (!isPart) {
            m_findings.add(
                LintRule::MisnamedPart, part,
                fmt::format("{} counts as a part, as everything behind the first part does, but nothing in it is "
                            "compared; write <part>, or move it before the first part",
                            tagOf(part)));
        }
        checkAttributesAndText(part, LintKind::Part, m_findings);
        checkName(part);
        if (isBlank(part)) {
            m_findings.add(LintRule::BlankPart, part,
                           "a blank part, from which no parts can be generated; add the devices that make it up");
        } else if (!asksForDevice(part)) {
            m_findings.add(LintRule::PartNeedsNoDevice, part,
                           "a part that needs no device fits every machine any number of times; add a <device> outside "
                           "<not>");
        }
        LintWalk(m_findings).walkPart(part);
    }

    void checkName(const XmlElement& part) {
        const StringView name = part.Attribute(u"name");
        if (name.empty()) {
            m_findings.add(LintRule::MissingName, part, "a part needs a name, which tells it from others; add one");
            return;
        }
        const auto [entry, isNew] = m_named.try_emplace(String(name), &part);
        if (!isNew) {
            m_findings.add(LintRule::DuplicateName, part,
                           fmt::format("\"{}\" is the name of the part at {} too, and parts of one name are the same "
                                       "part; give each its own",
                                       printable(name), placeOf(*entry->second)));
        }
    }

    LintFindings& m_findings;
    std::unordered_map<String, const XmlElement*, HashFunc<String>> m_named;
    bool m_hasBegun = false;
};

}  // namespace

void checkPartsList(const XmlElement& root, LintFindings& findings) { PartsListWalk(findings).walk(root); }

}  // namespace vrx
