#pragma once

#include <cstdint>
#include <optional>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

namespace vrx {

/// A point in time with a resolution of one second.
///
///     const DateTime made = DateTime::fromIso8601(u"2026-11-21").value_or(DateTime());
///     made.toIso8601();                                  // "2026-11-21T00:00:00Z"
class VRX_EXPORT DateTime {
public:
    /// The epoch, 1970-01-01 00:00:00 UTC.
    DateTime() noexcept = default;

    /// Seconds since the epoch, UTC.
    explicit DateTime(std::int64_t secondsSinceEpoch) noexcept : m_seconds(secondsSinceEpoch) {}

    static DateTime getCurrentDateTime();

    /// Reads ISO 8601: "2026-11-21", "2026-11-21T10:33:20", with "Z" or a numeric offset ("+01:00"); without one UTC.
    static std::optional<DateTime> fromIso8601(StringView text);

    std::int64_t secondsSinceEpoch() const noexcept { return m_seconds; }

    /// "2026-11-21 10:33:20", local time.
    String dateTimeStampString() const;

    /// ISO 8601 in UTC: "2026-11-21T10:33:20Z".
    String toIso8601() const;

private:
    std::int64_t m_seconds = 0;
};

}  // namespace vrx
