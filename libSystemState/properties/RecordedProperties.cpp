#include "libSystemState/properties/RecordedProperties.h"

#include <boost/make_shared.hpp>
#include <iterator>
#include <utility>

#include "libSystemState/properties/PropertyImp.h"

namespace vrx {

RecordedProperties::RecordedProperties(boost::shared_ptr<const Specs> specs, std::span<const Entry> entries,
                                       StringView texts, std::span<ValueImp> otherValues)
    : m_specs(std::move(specs)),
      m_entries(entries.begin(), entries.end()),
      m_texts(texts),
      m_otherValues(std::make_move_iterator(otherValues.begin()), std::make_move_iterator(otherValues.end())) {}

Array<boost::shared_ptr<IPropertyImp>> RecordedProperties::make() const {
    const auto block = boost::make_shared<std::vector<PropertyImp>>();
    block->reserve(m_entries.size());
    Array<boost::shared_ptr<IPropertyImp>> properties;
    properties.reserve(m_entries.size());
    StringView texts = m_texts;
    auto otherValue = m_otherValues.begin();
    for (const Entry& entry : m_entries) {
        const boost::shared_ptr<PropertySpecImp>& spec = (*m_specs)[entry.spec];
        if (entry.size == Entry::OTHER_VALUE) {
            block->emplace_back(spec, *otherValue++);
        } else {
            block->emplace_back(spec, ValueImp(String(texts.substr(0, entry.size))));
            texts.remove_prefix(entry.size);
        }
        properties.append(boost::shared_ptr<IPropertyImp>(block, &block->back()));
    }
    return properties;
}

}  // namespace vrx
