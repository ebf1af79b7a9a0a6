#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "libCommon/text/String.h"
#include "libInventory/Finding.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

/// What one error slot holds against one element, in order.
///
/// A failed property test leaves a finding for every candidate device, most of which nobody ever reads: with a thousand
/// equal devices there are millions. An entry therefore only refers to the device; the device's value is copied when
/// the finding is gathered. Entries count as the number of tips (texts in the script) that they become.
class FiledFindings {
public:
    struct Entry {
        /// By kind: the name of the attribute, the text of the exception, the value that was found. Null where the kind
        /// has none, and for a mismatch whose value has not been copied yet.
        std::unique_ptr<const String> text;
        boost::shared_ptr<IDeviceImp> device;
        FindingKind kind : 8;
        std::uint32_t expectedEntries : 24;  ///< for a property: how many children of the element counted as entries
        std::uint32_t candidate;             ///< for a property: the device's position among the candidates

        const String& textOrEmpty() const noexcept { return text ? *text : String::EMPTY; }
    };
    static_assert(sizeof(Entry) == 32, "there may be millions");

    static constexpr std::size_t tipsOf(FindingKind kind) noexcept {
        switch (kind) {
            case FindingKind::PropertyMismatch: return 3;
            case FindingKind::PropertyMatched: return 2;
            default: return 1;
        }
    }

    void append(Entry entry) {
        m_count += tipsOf(entry.kind);
        m_entries.push_back(std::move(entry));
    }
    void clear() noexcept {
        m_entries.clear();
        m_count = 0;
        m_firstOfRun = 0;
    }

    /// Entries from here on are those of the run that begins.
    void beginRun() noexcept { m_firstOfRun = m_entries.size(); }
    std::size_t firstOfRun() const noexcept { return m_firstOfRun; }

    /// Number of tips, not of entries.
    std::size_t count() const noexcept { return m_count; }
    std::vector<Entry>& entries() noexcept { return m_entries; }
    const std::vector<Entry>& entries() const noexcept { return m_entries; }

private:
    std::vector<Entry> m_entries;
    std::size_t m_count = 0;
    std::size_t m_firstOfRun = 0;
};

}  // namespace vrx
