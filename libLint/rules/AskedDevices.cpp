/// One element covers another when its type is satisfied by the other's, and its conditions are among the other's, word
/// for word. Elements are found by one of their conditions, so a script of many devices that differ in something costs
/// little more than reading it.

#include "libLint/rules/AskedDevices.h"

#include <algorithm>
#include <utility>

#include "libCommon/containers/HashFunctions.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libInventory/script/XmlChildren.h"

namespace vrx {

namespace {

std::uint64_t hashOfText(const String& text) { return HashFunc<String>()(text); }

}  // namespace

DeviceConditions::DeviceConditions(const XmlElement& device)
    : m_element(&device), m_type(attributeOf(device, vocabulary::TYPE)) {
    for (const XmlElement* const test : childElements(device)) {
        if (vocabulary::kindOf(*test) != vocabulary::ElementKind::Error) {
            m_conditions.push_back(m_telling = hashOfText(test->toString()));
        }
    }
    for (const StringView name : {vocabulary::NAME, vocabulary::OS_LOCATOR, vocabulary::HW_LOCATOR}) {
        if (const StringView value = attributeOf(device, name); !value.empty()) {
            m_conditions.push_back(hashOfText(concat(name, u"=", value)));
            m_telling = name != vocabulary::NAME || m_conditions.size() == 1 ? m_conditions.back() : m_telling;
        }
    }
    std::ranges::sort(m_conditions);
}

std::uint64_t DeviceConditions::identity() const {
    std::uint64_t identity = hashOfText(m_type.toString());
    for (const std::uint64_t condition : m_conditions) {
        identity = (identity ^ condition) * 0x9E3779B97F4A7C15;
    }
    return identity;
}

bool DeviceConditions::covers(const DeviceConditions& other) const {
    return m_type.isCapable(other.m_type) && std::ranges::includes(other.m_conditions, m_conditions);
}

void CoveringElements::add(DeviceConditions element) {
    if (!m_identities.insert(element.identity()).second) {
        return;
    }
    (element.conditions().empty() ? m_typesAlone : m_byTelling[element.telling()]).push_back(m_elements.size());
    m_elements.push_back(std::move(element));
    m_isPaired.push_back(false);
}

void CoveringElements::pairWith(const DeviceConditions& narrow, bool isStrict) {
    for (const std::size_t index : m_typesAlone) {
        pairIfCovering(index, narrow, isStrict);
    }
    for (const std::uint64_t condition : narrow.conditions()) {
        if (const auto found = m_byTelling.find(condition); found != m_byTelling.end()) {
            for (const std::size_t index : found->second) {
                pairIfCovering(index, narrow, isStrict);
            }
        }
    }
}

void CoveringElements::pairIfCovering(std::size_t index, const DeviceConditions& narrow, bool isStrict) {
    const DeviceConditions& wide = m_elements[index];
    if (!m_isPaired[index] && wide.covers(narrow) && !(isStrict && narrow.covers(wide))) {
        m_isPaired[index] = true;
        m_pairs.emplace_back(&wide.element(), &narrow.element());
    }
}

void AskedDevices::addRequired(const XmlElement& device) {
    const DeviceConditions& added = m_required.emplace_back(device);
    m_wide.pairWith(added, true);
    m_wide.add(added);
}

const std::vector<CoveringElements::Pair>& AskedDevices::forbiddenAndRequired() {
    for (const DeviceConditions& required : m_required) {
        m_forbidden.pairWith(required, false);
    }
    return m_forbidden.pairs();
}

}  // namespace vrx
