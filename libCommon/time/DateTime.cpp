#include "libCommon/time/DateTime.h"

#include <chrono>
#include <cstdio>
#include <ctime>

namespace vrx {

namespace {

/// Reads ISO 8601 from left to right. A step that does not find what it asks for fails the whole reading.
class Reader {
public:
    explicit Reader(StringView text) noexcept : m_left(text) {}

    bool isAtEnd() const noexcept { return m_left.empty(); }
    bool hasFailed() const noexcept { return m_hasFailed; }

    bool skipIf(char16_t unit) noexcept {
        const bool isThere = m_left.starts_with(unit);
        m_left.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    void skip(char16_t unit) noexcept { m_hasFailed = !skipIf(unit) || m_hasFailed; }

    /// A number of exactly `count` digits up to `maximum`.
    int number(std::size_t count, int maximum) noexcept {
        int value = 0;
        for (std::size_t k = 0; k < count; ++k) {
            if (k >= m_left.size() || m_left[k] < u'0' || m_left[k] > u'9') {
                m_hasFailed = true;
                return 0;
            }
            value = value * 10 + (m_left[k] - u'0');
        }
        m_left.remove_prefix(count);
        m_hasFailed = m_hasFailed || value > maximum;
        return value;
    }

private:
    StringView m_left;
    bool m_hasFailed = false;
};

std::optional<std::int64_t> readDate(Reader& reader) {
    const int year = reader.number(4, 9999);
    reader.skip(u'-');
    const int month = reader.number(2, 12);
    reader.skip(u'-');
    const int day = reader.number(2, 31);
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (reader.hasFailed() || !date.ok()) {
        return std::nullopt;
    }
    return std::int64_t{std::chrono::sys_days(date).time_since_epoch().count()} * 86400;
}

int readTime(Reader& reader) {
    const int hour = reader.number(2, 23);
    reader.skip(u':');
    const int minute = reader.number(2, 59);
    reader.skip(u':');
    return (hour * 60 + minute) * 60 + reader.number(2, 59);
}

/// Seconds east of UTC.
int readZone(Reader& reader) {
    if (reader.isAtEnd() || reader.skipIf(u'Z')) {
        return 0;
    }
    const bool isEast = reader.skipIf(u'+');
    if (!isEast) {
        reader.skip(u'-');
    }
    const int hours = reader.number(2, 23);
    reader.skip(u':');
    const int seconds = (hours * 60 + reader.number(2, 59)) * 60;
    return isEast ? seconds : -seconds;
}

/// Empty when the year is out of the system's range.
String format(const std::tm* time, const char* pattern) {
    if (time == nullptr) {
        return String();
    }
    char text[80];
    const int length = std::snprintf(text, sizeof text, pattern, std::int64_t{time->tm_year} + 1900, time->tm_mon + 1,
                                     time->tm_mday, time->tm_hour, time->tm_min, time->tm_sec);
    return String::UTF8Decode(std::string_view(text, static_cast<std::size_t>(length)));
}

}  // namespace

DateTime DateTime::getCurrentDateTime() { return DateTime(std::int64_t{std::time(nullptr)}); }

std::optional<DateTime> DateTime::fromIso8601(StringView text) {
    Reader reader(text);
    const std::optional<std::int64_t> date = readDate(reader);
    if (!date || reader.isAtEnd()) {
        return date ? std::optional<DateTime>(DateTime(*date)) : std::nullopt;
    }
    reader.skip(u'T');
    const int time = readTime(reader);
    const int zone = readZone(reader);
    if (reader.hasFailed() || !reader.isAtEnd()) {
        return std::nullopt;
    }
    return DateTime(*date + time - zone);
}

String DateTime::dateTimeStampString() const {
    const std::time_t seconds = m_seconds;
    std::tm time{};
    return format(localtime_r(&seconds, &time), "%04ld-%02d-%02d %02d:%02d:%02d");
}

String DateTime::toIso8601() const {
    const std::time_t seconds = m_seconds;
    std::tm time{};
    return format(gmtime_r(&seconds, &time), "%04ld-%02d-%02dT%02d:%02d:%02dZ");
}

}  // namespace vrx
