#include "libInventory/script/ScriptWalk.h"

#include "libCommon/Assertion.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

/// What lies in the place inherits from it, and from its own kind.
ScriptPlace placeIn(const ScriptPlace& around, const XmlElement& element) noexcept {
    ScriptPlace place = around;
    place.element = &element;
    place.kind = vocabulary::kindOf(element);
    ++place.depth;
    switch (around.kind) {
        case ElementKind::Part: place.part = around.element; break;
        case ElementKind::Or: place.alternative = &element; break;
        case ElementKind::Property: place.property = around.element; break;
        case ElementKind::Device:
        case ElementKind::FailOnExtra:
            place.holder = around.element;
            place.notsInHolder = 0;
            break;
        case ElementKind::Not:
            ++place.nots;
            place.notsInHolder += place.holder != nullptr ? 1 : 0;
            break;
        default: break;
    }
    return place;
}

bool isEntered(const ScriptPlace& place) noexcept {
    if (place.property != nullptr) {
        return false;
    }
    switch (place.kind) {
        case ElementKind::And:
        case ElementKind::Or:
        case ElementKind::Not: return true;
        case ElementKind::InventoryCheck:
        case ElementKind::Part:
        case ElementKind::Device:
        case ElementKind::FailOnExtra: return place.holder == nullptr;
        case ElementKind::Property: return place.holder != nullptr;
        default: return false;
    }
}

}  // namespace

ScriptPlace topPlace(const XmlElement& element) noexcept {
    ScriptPlace place;
    place.element = &element;
    place.kind = vocabulary::kindOf(element);
    return place;
}

ScriptWalk::ScriptWalk(const XmlElement& top, Extent extent) : ScriptWalk(topPlace(top), extent) {}

ScriptWalk::ScriptWalk(const ScriptPlace& top, Extent extent) : m_path{top}, m_extent(extent) {}

ScriptWalk& ScriptWalk::operator++() {
    VRX_ASSERT(!m_path.empty());
    const XmlElement* next = entersPresent() ? m_path.back().element->FirstChildElement() : nullptr;
    m_skipsContent = false;
    if (next != nullptr) {
        m_path.push_back(placeIn(m_path.back(), *next));
        return *this;
    }
    for (; m_path.size() > 1; m_path.pop_back()) {
        next = m_path.back().element->NextSiblingElement();
        if (next != nullptr) {
            m_path.back() = placeIn(m_path[m_path.size() - 2], *next);
            return *this;
        }
    }
    m_path.clear();
    return *this;
}

bool ScriptWalk::entersPresent() const noexcept {
    return !m_skipsContent && (m_extent == Extent::Everything || isEntered(m_path.back()));
}

}  // namespace vrx
