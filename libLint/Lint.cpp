/// Which of the two a file is, decides its root, so it is read as a script first: a check reads scripts leniently (what
/// is no UTF-8 and what XML cannot hold still gets in). A parts list must parse strictly too; but parts become scripts
/// before they are compared, so it is looked at as a script all the same.

#include "libLint/Lint.h"

#include <fmt/format.h>

#include <utility>

#include "libCommon/text/UuCode.h"
#include "libInventory/script/ScriptElement.h"
#include "libLint/LintWalk.h"
#include "libLint/rules/PartsListRules.h"

namespace vrx {

namespace {

bool hasPart(const XmlElement& root) {
    for (const XmlElement* child = root.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (isNamed(*child, u"part")) {
            return true;
        }
    }
    return false;
}

}  // namespace

/// True when the bytes, read as a check reads a script, are one.
bool Lint::parseScript(std::string_view bytes) {
    Utf8Damage damage;
    const String text = String::UTF8Decode(bytes, &damage);
    m_document.Parse(needsUuEncode(text) ? toXmlSafe(text) : text);
    const XmlElement* const root = m_document.RootElement();
    if (root == nullptr || !isNamed(*root, u"inventory-check")) {
        return false;
    }
    if (damage.count > 0) {
        m_findings.add(LintRule::InvalidUtf8, damage.row, damage.column,
                       fmt::format("{} invalid UTF-8 sequence(s), the first one here, each read as U+FFFD; save the "
                                   "file as UTF-8",
                                   damage.count));
    }
    return true;
}

Lint::Result Lint::judgePartsList(std::string_view bytes) {
    if (m_document.Error()) {
        return Result::NotXml;
    }
    if (XmlDocument strict; !strict.ParseUtf8(bytes)) {
        m_document = std::move(strict);
        return Result::NotXml;
    }
    const XmlElement* const root = m_document.RootElement();
    return root != nullptr && hasPart(*root) ? Result::Done : Result::Neither;
}

Lint::Result Lint::run(std::string_view bytes) {
    if (parseScript(bytes)) {
        LintWalk(m_findings).walkScript(*m_document.RootElement());
    } else if (const Result result = judgePartsList(bytes); result == Result::Done) {
        checkPartsList(*m_document.RootElement(), m_findings);
    } else {
        return result;
    }
    m_findings.sort();
    return Result::Done;
}

}  // namespace vrx
