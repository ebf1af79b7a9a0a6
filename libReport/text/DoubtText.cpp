#include "libReport/text/DoubtText.h"

#include "libCommon/text/PrintableText.h"
#include "libReport/patterns/ReadablePattern.h"

namespace vrx {

namespace {

/// What a script calls the device.
std::string askedTitle(const Inventory::DeviceSpec& asked) {
    std::string title = asked.type.isEmpty() ? "device" : printable(asked.type);
    if (!asked.name.isEmpty()) {
        title += " " + readablePattern(asked.name);
    }
    const String& locator = asked.hwLocator.isEmpty() ? asked.osLocator : asked.hwLocator;
    return locator.isEmpty() ? title : title + " (" + printable(locator) + ")";
}

std::string askedText(const Doubt& doubt) {
    switch (doubt.asked) {
        case Doubt::Asked::Device: return askedTitle(doubt.spec) + " may be there";
        case Doubt::Asked::Forbidden: return askedTitle(doubt.spec) + " must not be there and may be";
        case Doubt::Asked::Extra: return askedTitle(doubt.spec) + " that is too many may be there";
        case Doubt::Asked::Property: break;
    }
    return printable(doubt.key) + " of " + askedTitle(doubt.spec) + " is not known";
}

std::string causeText(const Doubt& doubt) {
    const std::string text = printable(doubt.text);
    switch (doubt.cause) {
        case Doubt::Cause::Unread: return text + " could not be read (" + printable(doubt.reason) + ")";
        case Doubt::Cause::PassedOver: return "<" + text + "> in the recording is no device where it stands";
        case Doubt::Cause::UnknownType: return "a device of the recording is a \"" + text + "\", which is no type";
        case Doubt::Cause::NoNumber: break;
    }
    return "the recording measures it as \"" + text + "\"";
}

}  // namespace

std::string doubtText(const Doubt& doubt) { return askedText(doubt) + ": " + causeText(doubt); }

std::string_view nameOf(Doubt::Asked asked) noexcept {
    static constexpr std::string_view NAMES[] = {"device", "forbidden", "extra", "property"};
    return NAMES[static_cast<std::size_t>(asked)];
}

std::string_view nameOf(Doubt::Cause cause) noexcept {
    static constexpr std::string_view NAMES[] = {"unread", "passedOver", "unknownType", "noNumber"};
    return NAMES[static_cast<std::size_t>(cause)];
}

}  // namespace vrx
