#include "libInventory/engine/matching/PropertyExpectation.h"

#include "libCommon/text/UuCode.h"
#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

PropertyExpectation::PropertyExpectation(const XmlElement& element, std::size_t children) {
    for (const XmlAttribute& attribute : element.Attributes()) {
        const StringView name = attribute.Name();
        if (name == vocabulary::KEY) {
            m_key = attribute.Value();
        } else if (name == vocabulary::VALUE) {
            m_value = attribute.Value();
            m_hasValue = true;
        } else if (name == vocabulary::UNITS) {
            m_units = attribute.Value();
        }
    }
    std::size_t encodedTexts = needsUuDecode(m_value) ? 1 : 0;
    for (const XmlElement* child = element.FirstChildElement(); child != nullptr && m_entries.size() < children;
         child = child->NextSiblingElement()) {
        m_entries.push_back(child->Attribute(vocabulary::VALUE));
        encodedTexts += needsUuDecode(m_entries.back()) ? 1U : 0U;
    }
    if (encodedTexts == 0) {
        return;
    }
    m_decodedTexts.reserve(encodedTexts);
    m_value = decoded(m_value);
    for (StringView& entry : m_entries) {
        entry = decoded(entry);
    }
}

StringView PropertyExpectation::decoded(StringView text) {
    return needsUuDecode(text) ? m_decodedTexts.append(fromXmlSafe(text)).view() : text;
}

Array<String> PropertyExpectation::patterns() const {
    Array<String> patterns;
    for (const StringView entry : m_entries) {
        patterns.append(entry);
    }
    if (m_entries.empty() && m_hasValue) {
        patterns.append(m_value);
    }
    return patterns;
}

String PropertyExpectation::quoted() const {
    String text(m_value);
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        text.append(i == 0 ? StringView() : StringView(u", ")).append(m_entries[i]);
    }
    return text;
}

}  // namespace vrx
