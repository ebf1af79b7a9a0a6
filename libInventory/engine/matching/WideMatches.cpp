#include "libInventory/engine/matching/WideMatches.h"

#include <algorithm>
#include <utility>

#include "libCommon/text/TextHash.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

namespace {

/// Attributes often differ in one locator alone, so all of their texts count.
std::size_t hashOfAttributes(const XmlElement& element) {
    std::size_t hash = 0;
    for (const XmlAttribute& attribute : element.Attributes()) {
        hash = hash * 31 + hashOf(attribute.Value());
    }
    return hash;
}

bool haveSameAttributes(const XmlElement& a, const XmlElement& b) {
    return std::ranges::equal(a.Attributes(), b.Attributes(), [](const XmlAttribute& x, const XmlAttribute& y) {
        return x.Name() == y.Name() && x.Value() == y.Value();
    });
}

bool askForTheSame(const XmlElement& a, const XmlElement& b) {
    if (a.Name() != b.Name() || !haveSameAttributes(a, b)) {
        return false;
    }
    const XmlElement* inA = a.FirstChildElement();
    const XmlElement* inB = b.FirstChildElement();
    while (inA != nullptr && inB != nullptr && askForTheSame(*inA, *inB)) {
        inA = inA->NextSiblingElement();
        inB = inB->NextSiblingElement();
    }
    return inA == nullptr && inB == nullptr;
}

bool asksForPropertiesOnly(const XmlElement& element) {
    for (const XmlElement* const child : childElements(element)) {
        if (vocabulary::kindOf(*child) != vocabulary::ElementKind::Property) {
            return false;
        }
    }
    return true;
}

}  // namespace

SharedLists::Pointer WideMatches::find(const XmlElement& element, std::size_t tellings) const {
    if (m_matches.empty()) {
        return nullptr;
    }
    const auto likely = m_matches.find(hashOfAttributes(element));
    if (likely != m_matches.end()) {
        for (const Match& match : likely->second) {
            if (match.tellings == tellings && askForTheSame(*match.element, element)) {
                return match.devices;
            }
        }
    }
    return nullptr;
}

void WideMatches::keep(const XmlElement& element, std::size_t tellings, SharedLists::Pointer devices) {
    if (asksForPropertiesOnly(element)) {
        m_matches[hashOfAttributes(element)].push_back({&element, tellings, std::move(devices)});
    }
}

}  // namespace vrx
