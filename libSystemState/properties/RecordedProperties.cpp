#include "libSystemState/properties/RecordedProperties.h"

#include <boost/make_shared.hpp>
#include <iterator>
#include <string_view>
#include <utility>

#include "libSystemState/properties/PropertyImp.h"

namespace vrx {

namespace {

// Over all units, without an early end, so that it runs in the registers for many units at once.
bool isNarrow(StringView text) noexcept {
    unsigned seen = 0;
    for (const char16_t unit : text) {
        seen |= unit;
    }
    return seen < 0x100;
}

std::string narrowed(StringView text) {
    std::string narrow(text.size(), '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        narrow[i] = static_cast<char>(text[i]);
    }
    return narrow;
}

String widened(std::string_view narrow) {
    std::u16string text(narrow.size(), u'\0');
    for (std::size_t i = 0; i < narrow.size(); ++i) {
        text[i] = static_cast<unsigned char>(narrow[i]);
    }
    return String(std::move(text));
}

}  // namespace

RecordedProperties::RecordedProperties(boost::shared_ptr<const Specs> specs, std::span<const Entry> entries,
                                       StringView texts, std::span<ValueImp> otherValues)
    : m_specs(std::move(specs)),
      m_entries(entries.begin(), entries.end()),
      m_otherValues(std::make_move_iterator(otherValues.begin()), std::make_move_iterator(otherValues.end())) {
    if (isNarrow(texts)) {
        m_narrowTexts = narrowed(texts);
    } else {
        m_texts = texts;
    }
}

Array<boost::shared_ptr<IPropertyImp>> RecordedProperties::make() const {
    const auto block = boost::make_shared<std::vector<PropertyImp>>();
    block->reserve(m_entries.size());
    Array<boost::shared_ptr<IPropertyImp>> properties;
    properties.reserve(m_entries.size());
    std::size_t textStart = 0;
    auto otherValue = m_otherValues.begin();
    for (const Entry& entry : m_entries) {
        const boost::shared_ptr<PropertySpecImp>& spec = (*m_specs)[entry.spec];
        if (entry.size == Entry::OTHER_VALUE) {
            block->emplace_back(spec, *otherValue++);
        } else {
            block->emplace_back(spec, ValueImp(text(textStart, entry.size)));
            textStart += entry.size;
        }
        properties.append(boost::shared_ptr<IPropertyImp>(block, &block->back()));
    }
    return properties;
}

String RecordedProperties::text(std::size_t start, std::size_t size) const {
    return m_texts.empty() ? widened(std::string_view(m_narrowTexts).substr(start, size))
                           : String(StringView(m_texts).substr(start, size));
}

}  // namespace vrx
