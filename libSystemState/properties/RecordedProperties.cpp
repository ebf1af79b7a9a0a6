#include "libSystemState/properties/RecordedProperties.h"

#include <boost/make_shared.hpp>
#include <cstring>
#include <iterator>
#include <utility>

#include "libSystemState/properties/PropertyImp.h"

namespace vrx {

namespace {

constexpr std::size_t BLOCK = 16;  // units that are narrowed at once

/// Writes the low byte of each unit; false when that loses something.
bool narrow(StringView text, char* out) noexcept {
    unsigned seen = 0;
    std::size_t at = 0;
    for (; at + BLOCK <= text.size(); at += BLOCK) {
        // Copies of a fixed size, so that the compiler makes vector code of the loop.
        char16_t from[BLOCK];
        char to[BLOCK];
        std::memcpy(from, text.data() + at, sizeof from);
        for (std::size_t i = 0; i < BLOCK; ++i) {
            seen |= from[i];
            to[i] = static_cast<char>(from[i]);
        }
        std::memcpy(out + at, to, sizeof to);
    }
    for (; at < text.size(); ++at) {
        seen |= text[at];
        out[at] = static_cast<char>(text[at]);
    }
    return seen < 0x100;
}

}  // namespace

RecordedProperties::RecordedProperties(boost::shared_ptr<const Specs> specs, std::span<const Entry> entries,
                                       StringView texts, std::span<ValueImp> otherValues)
    : m_specs(std::move(specs)),
      m_entries(entries.begin(), entries.end()),
      m_narrowTexts(texts.size(), '\0'),
      m_otherValues(std::make_move_iterator(otherValues.begin()), std::make_move_iterator(otherValues.end())) {
    if (!narrow(texts, m_narrowTexts.data())) {
        m_narrowTexts = std::string();
        m_texts = texts;
    }
}

Array<boost::shared_ptr<IPropertyImp>> RecordedProperties::make() const {
    const auto block = boost::make_shared<std::vector<PropertyImp>>();
    block->reserve(m_entries.size());
    Array<boost::shared_ptr<IPropertyImp>> properties;
    properties.reserve(m_entries.size());
    std::size_t textStart = 0;
    std::u16string room;
    auto otherValue = m_otherValues.begin();
    for (const Entry& entry : m_entries) {
        const boost::shared_ptr<PropertySpecImp>& spec = (*m_specs)[entry.spec];
        if (entry.size == Entry::OTHER_VALUE) {
            block->emplace_back(spec, *otherValue++);
        } else {
            block->emplace_back(spec, ValueImp(String(text(textStart, entry.size, room))));
            textStart += entry.size;
        }
        properties.append(boost::shared_ptr<IPropertyImp>(block, &block->back()));
    }
    return properties;
}

StringView RecordedProperties::text(std::size_t start, std::size_t size, std::u16string& room) const {
    if (!m_texts.empty()) {
        return StringView(m_texts).substr(start, size);
    }
    room.resize(size);
    for (std::size_t i = 0; i < size; ++i) {
        room[i] = static_cast<unsigned char>(m_narrowTexts[start + i]);
    }
    return room;
}

}  // namespace vrx
