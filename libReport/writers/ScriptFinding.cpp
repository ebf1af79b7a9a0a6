#include "libReport/writers/ScriptFinding.h"

#include "libInventory/script/ScriptElement.h"

namespace vrx {

namespace {

/// The engine appends its errors after the other children, so an element's finding is complete before its children's
/// are looked for.
void collectFindings(const XmlElement& element, std::vector<ScriptFinding>& findings) {
    Array<String> messages;
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (isNamed(*child, u"error")) {
            messages.append(child->GetText());
        }
    }
    if (!messages.isEmpty()) {
        findings.push_back({&element, std::move(messages)});
    }
    for (const XmlElement* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
        if (!isNamed(*child, u"error")) {
            collectFindings(*child, findings);
        }
    }
}

}  // namespace

std::vector<ScriptFinding> findingsOf(const XmlDocument& annotatedScript) {
    const XmlElement* const root = annotatedScript.RootElement();
    return root ? findingsIn(*root) : std::vector<ScriptFinding>();
}

std::vector<ScriptFinding> findingsIn(const XmlElement& element) {
    std::vector<ScriptFinding> findings;
    collectFindings(element, findings);
    return findings;
}

}  // namespace vrx
