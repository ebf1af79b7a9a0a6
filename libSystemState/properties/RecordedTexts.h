#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libSystemState/properties/RecordedProperties.h"

namespace vrx {

/// Looks for the texts of recorded properties by their keys, without making properties of them. Questions in the order
/// of the recording are answered at once.
class VRX_EXPORT RecordedTexts {
public:
    /// Nobody knows anything of null; the others are borrowed.
    explicit RecordedTexts(const RecordedProperties* properties) noexcept;

    /// The text of the first property of that key, valid until the next question. Nothing where there is none, its
    /// value is more than a text, or an index would tell faster: then the properties have to be made to know. Requires:
    /// they have not been made yet.
    std::optional<StringView> find(StringView key);

private:
    const String& keyAt(std::size_t position) const noexcept;
    bool isFirstOfKey(std::size_t position) const noexcept;
    void goOn() noexcept;

    const RecordedProperties* m_properties;
    std::size_t m_next = 0;       // position that is probably asked for next
    std::size_t m_textStart = 0;  // of its text
    std::uint32_t m_above = 0;    // more than Entry::spec of every one before it
    std::u16string m_text;
};

}  // namespace vrx
