#pragma once

#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libSystemState/Forward.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

/// The properties of one device as a recording lists them: which key, which text. They take a fraction of the memory of
/// the properties that are made of them once somebody asks.
class VRX_EXPORT RecordedProperties {
public:
    /// What the properties of one recording are of. It may grow while there are properties that refer to it.
    using Specs = std::vector<boost::shared_ptr<PropertySpecImp>>;

    struct Entry {
        static constexpr std::uint32_t OTHER_VALUE = 0xFFFFFFFF;

        std::uint32_t spec;  ///< position in the Specs
        std::uint32_t size;  ///< of the text in UTF-16 code units; OTHER_VALUE when the value is more than a text
    };

    /// `texts` are the texts of the entries that have one, `otherValues` the values of the others, both in the order of
    /// the entries. Copies the first two and moves the values.
    RecordedProperties(boost::shared_ptr<const Specs> specs, std::span<const Entry> entries, StringView texts,
                       std::span<ValueImp> otherValues);

    std::span<const Entry> entries() const noexcept { return m_entries; }

    /// The properties, all in one piece of memory: whoever keeps one of them keeps the others.
    Array<boost::shared_ptr<IPropertyImp>> make() const;

private:
    friend class RecordedTexts;

    /// A part of the texts; `room` holds it where it is not there as it is.
    StringView text(std::size_t start, std::size_t size, std::u16string& room) const;

    boost::shared_ptr<const Specs> m_specs;
    std::vector<Entry> m_entries;
    std::string m_narrowTexts;  ///< the texts when all of their units are below 256, as those of most machines are
    std::u16string m_texts;     ///< the texts otherwise
    std::vector<ValueImp> m_otherValues;
};

}  // namespace vrx
