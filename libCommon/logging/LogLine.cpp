#include <charconv>

#include "libCommon/logging/Logger.h"
#include "libCommon/text/NumberText.h"

namespace vrx {

LogLine::LogLine(int sourceLine) {
    m_text.reserve(96);
    *this << sourceLine << StringView(u" ");
}

LogLine& LogLine::operator<<(StringView text) {
    m_text.append(text);
    return *this;
}

LogLine& LogLine::operator<<(const char* asciiText) { return *this << String::UTF8Decode(asciiText); }

LogLine& LogLine::operator<<(bool value) { return *this << StringView(value ? u"1" : u"0"); }

LogLine& LogLine::operator<<(int value) { return *this << toText(value); }

LogLine& LogLine::operator<<(unsigned int value) { return *this << toText(value); }

LogLine& LogLine::operator<<(unsigned long value) { return *this << toText(std::uint64_t{value}); }

LogLine& LogLine::operator<<(long value) { return *this << toText(std::int64_t{value}); }

LogLine& LogLine::operator<<(double value) {
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6);
    return *this << String::UTF8Decode(std::string_view(digits, result.ptr));
}

LogLine& LogLine::operator<<(const void* value) {
    char digits[24];
    const auto address = reinterpret_cast<std::uintptr_t>(value);
    const auto result = std::to_chars(digits, digits + sizeof digits, address, 16);
    return *this << StringView(u"0x") << String::UTF8Decode(std::string_view(digits, result.ptr));
}

}  // namespace vrx
