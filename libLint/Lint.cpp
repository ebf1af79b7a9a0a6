/// Which of the two a file is, decides its root, so it is read as a script first: a check reads scripts leniently (what
/// is no UTF-8 and what XML cannot hold still gets in). A parts list must parse strictly too; but parts become scripts
/// before they are compared, so it is looked at as a script all the same.

#include "libLint/Lint.h"

#include <optional>
#include <string>
#include <utility>

#include "libCommon/io/FileLoader.h"
#include "libCommon/text/UuCode.h"
#include "libInventory/script/PartsList.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libLint/LintMachine.h"
#include "libLint/LintWalk.h"

namespace vrx {

namespace {

bool isScript(const XmlDocument& document) noexcept {
    const XmlElement* const root = document.RootElement();
    return root != nullptr && isNamed(*root, vocabulary::INVENTORY_CHECK);
}

}  // namespace

void Lint::parse(const String& text) { m_document.Parse(needsUuEncode(text) ? toXmlSafe(text) : text); }

Lint::Result Lint::judge(const XmlDocument& document, const Utf8Damage* damage) {
    m_findings = LintFindings();
    std::optional<LintMachine> machine;
    if (m_machine != nullptr) {
        machine.emplace(*m_machine);
    }
    const LintTask task{m_extent, machine ? &*machine : nullptr, m_findings, m_threads};
    const XmlElement* const root = document.RootElement();
    if (isScript(document)) {
        lintScript(*root, damage, task);
    } else if (document.Error()) {
        return Result::NotXml;
    } else if (root != nullptr && firstPart(*root) != nullptr) {
        lintPartsList(*root, task);
    } else {
        return Result::Neither;
    }
    m_findings.sort();
    return Result::Done;
}

Lint::Result Lint::run(std::string_view bytes) {
    Utf8Damage damage;
    parse(String::UTF8Decode(bytes, &damage));
    if (!isScript(m_document) && !m_document.Error()) {
        if (XmlDocument strict; !strict.ParseUtf8(bytes)) {
            m_document = std::move(strict);
        }
    }
    return judge(m_document, &damage);
}

Lint::Result Lint::runText(const String& text) {
    parse(text);
    return judge(m_document, nullptr);
}

Lint::Result Lint::runFile(const String& path, String& reason) {
    std::string bytes;
    if (!loadFile(path, bytes, reason)) {
        m_findings = LintFindings();
        return Result::NotReadable;
    }
    return run(bytes);
}

Lint::Result Lint::runDocument(const XmlDocument& document) { return judge(document, nullptr); }

}  // namespace vrx
