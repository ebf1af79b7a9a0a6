#include "libCommon/text/NumberText.h"
#include "libSystemState/values/ValueImp.h"

/// The text forms of a value. Each type has one overload of `textOf`, which is the whole value as one text, and arrays
/// are their entries' texts joined. As a list of texts a scalar is one entry, with one exception: a percent gives its
/// number alone there, because patterns and tolerances are made from the list and compare numbers.

namespace vrx {

namespace {

String textOf(std::uint32_t number) { return toText(number); }
String textOf(std::int32_t number) { return toText(number); }
String textOf(std::uint64_t number) { return toText(number); }
String textOf(double number) { return toText(number); }
String textOf(bool truth) { return truth ? u"true" : u"false"; }
String textOf(const String& text) { return text; }
String textOf(const LocalizedString& localized) { return localized.text; }
String textOf(const DateTime& time) { return time.toIso8601(); }
String textOf(const Percent& percent) { return toText(percent.value).append(u'%'); }
String textOf(const Measurement& measurement) { return measurement.toString(); }

template <typename T>
String textOf(const Array<T>& entries) {
    String joined;
    bool isFirst = true;
    for (const T& entry : entries) {
        if (!isFirst) {
            joined.append(u", ");
        }
        isFirst = false;
        if constexpr (std::is_same_v<T, String>) {
            joined.append(entry);
        } else {
            joined.append(textOf(entry));
        }
    }
    return joined;
}

String textOf(const LocalizedStringArray& localized) { return textOf(localized.texts); }

template <typename T>
Array<String> textsOf(const T& scalar) {
    return {textOf(scalar)};
}

Array<String> textsOf(const Percent& percent) { return {toText(percent.value)}; }

Array<String> textsOf(const Array<String>& entries) { return entries; }

Array<String> textsOf(const LocalizedStringArray& localized) { return localized.texts; }

template <typename T>
Array<String> textsOf(const Array<T>& entries) {
    Array<String> texts(entries.size());
    for (const T& entry : entries) {
        texts.append(textOf(entry));
    }
    return texts;
}

}  // namespace

String ValueImp::toString(bool) const {
    return std::visit([](const auto& content) { return textOf(content); }, m_value);
}

Array<String> ValueImp::toStringArray(bool) const {
    return std::visit([](const auto& content) { return textsOf(content); }, m_value);
}

}  // namespace vrx
