#include "libSystemState/properties/RecordedTexts.h"

#include <algorithm>

#include "libSystemState/properties/PropertySpecImp.h"

namespace vrx {

namespace {

constexpr std::size_t MANY = 64;  // from here on an index is faster than looking through them

}  // namespace

RecordedTexts::RecordedTexts(const RecordedProperties* properties) noexcept
    : m_properties(properties != nullptr && properties->entries().size() < MANY ? properties : nullptr) {}

std::optional<StringView> RecordedTexts::find(StringView key) {
    if (m_properties == nullptr) {
        return std::nullopt;
    }
    const std::size_t size = m_properties->entries().size();
    if (m_next == size || keyAt(m_next) != key || !isFirstOfKey(m_next)) {
        m_next = m_textStart = 0;
        m_above = 0;
        while (m_next < size && keyAt(m_next) != key) {
            goOn();
        }
    }
    if (m_next == size) {
        return std::nullopt;
    }
    const std::size_t start = m_textStart;
    const std::uint32_t textSize = m_properties->entries()[m_next].size;
    goOn();
    if (textSize == RecordedProperties::Entry::OTHER_VALUE) {
        return std::nullopt;
    }
    return m_properties->text(start, textSize, m_text);
}

const String& RecordedTexts::keyAt(std::size_t position) const noexcept {
    return (*m_properties->m_specs)[m_properties->entries()[position].spec]->key();
}

bool RecordedTexts::isFirstOfKey(std::size_t position) const noexcept {
    const std::uint32_t spec = m_properties->entries()[position].spec;
    if (position == m_next && spec >= m_above) {
        return true;
    }
    const auto before = m_properties->entries().first(position);
    return std::ranges::find(before, spec, &RecordedProperties::Entry::spec) == before.end();
}

void RecordedTexts::goOn() noexcept {
    const RecordedProperties::Entry& entry = m_properties->entries()[m_next++];
    m_textStart += entry.size == RecordedProperties::Entry::OTHER_VALUE ? 0 : entry.size;
    m_above = std::max(m_above, entry.spec + 1);
}

}  // namespace vrx
