#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "libSystemState/Forward.h"
#include "libSystemState/results/InventoryTip.h"

namespace vrx {

/// The tips that one error slot holds for one element, in order.
///
/// A failed property test leaves up to three tips for every candidate device, most of which nobody ever reads: with a
/// thousand equal devices there are millions. Such a failure is kept as a reference to the device and put into words
/// only when it is gathered; it counts as the number of tips that it will become.
class FiledTips {
public:
    enum class Kind : std::uint8_t {
        Text,        ///< one finished tip
        MissingKey,  ///< the device lacks the element's property: one tip
        Mismatch     ///< the device's value does not match: three tips
    };

    struct Entry {
        std::unique_ptr<InventoryTip> tip;     ///< for Text
        boost::shared_ptr<IDeviceImp> device;  ///< for the others
        Kind kind = Kind::Text;
    };

    static constexpr std::size_t TIPS_OF_MISMATCH = 3;

    void append(const InventoryTip& tip) {
        m_entries.push_back({std::make_unique<InventoryTip>(tip), {}, Kind::Text});
        ++m_count;
    }
    void prepend(const InventoryTip& tip) {
        m_entries.insert(m_entries.begin(), Entry{std::make_unique<InventoryTip>(tip), {}, Kind::Text});
        ++m_count;
    }
    void appendFailure(Kind kind, const boost::shared_ptr<IDeviceImp>& device) {
        m_entries.push_back({nullptr, device, kind});
        m_count += kind == Kind::Mismatch ? TIPS_OF_MISMATCH : 1;
    }
    void replaceEntries(std::vector<Entry> entries) { m_entries = std::move(entries); }
    void clear() noexcept {
        m_entries.clear();
        m_count = 0;
    }

    /// Number of tips, not of entries.
    std::size_t count() const noexcept { return m_count; }
    const std::vector<Entry>& entries() const noexcept { return m_entries; }

private:
    std::vector<Entry> m_entries;
    std::size_t m_count = 0;
};

}  // namespace vrx
