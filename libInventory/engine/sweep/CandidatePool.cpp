#include "libInventory/engine/sweep/CandidatePool.h"

#include "libCommon/xml/XmlElement.h"

namespace vrx {

namespace {

/// No text of XML holds the separator.
String textOfAttributes(const XmlElement& element) {
    constexpr StringView SEPARATOR(u"\0", 1);
    String text;
    for (const XmlAttribute& attribute : element.Attributes()) {
        text.append(attribute.Name()).append(SEPARATOR).append(attribute.Value()).append(SEPARATOR);
    }
    return text;
}

}  // namespace

CandidateColumn* CandidatePool::column(StringView key) {
    const auto [at, isNew] = m_columns.try_emplace(String(key));
    if (isNew && m_devices->size() <= m_cellsLeft) {
        m_cellsLeft -= m_devices->size();
        at->second = std::make_unique<CandidateColumn>(*m_devices, key);
    }
    return at->second.get();
}

CandidatePool* CandidatePools::find(const XmlElement& element, std::size_t tellings) {
    if (m_tellings != tellings) {
        m_pools.clear();
        m_tellings = tellings;
    }
    if (m_pools.empty()) {
        return nullptr;
    }
    const auto at = m_pools.find(textOfAttributes(element));
    return at != m_pools.end() ? at->second.get() : nullptr;
}

CandidatePool* CandidatePools::add(const XmlElement& element, const SharedLists::DeviceArray& candidates,
                                   SharedLists& lists) {
    const auto [at, isNew] = m_pools.try_emplace(textOfAttributes(element));
    if (!isNew && at->second == nullptr) {
        at->second = std::make_unique<CandidatePool>(lists.share(candidates), m_cellsLeft);
    }
    return at->second.get();
}

}  // namespace vrx
