/// A device file directly below /dev is named by its driver: a stem and a letter or number that counts. Folders below
/// /dev hold names that stay (/dev/disk/by-id). Network interfaces have no path; those called after a slot or a bus
/// (enp3s0) change with every card that is added, so they are no better than eth0.

#include "libSystemState/devices/KernelNames.h"

#include <algorithm>
#include <iterator>

namespace vrx {

namespace {

constexpr StringView LETTERED_DISKS[] = {u"sd", u"hd", u"vd", u"xvd"};
constexpr StringView INTERFACES[] = {u"eth", u"en", u"wl", u"ww", u"ib", u"sl", u"usb"};
constexpr StringView NUMBERED_FOLDERS[] = {u"/sys/class/hwmon/hwmon", u"/sys/class/drm/card"};
constexpr StringView MADE_UP[] = {u"gen-hw-loc", u"gen-os-loc", u"gen-name"};

constexpr bool isDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }
constexpr bool isLowerLetter(char16_t unit) noexcept { return unit >= u'a' && unit <= u'z'; }

template <std::size_t N>
bool startsWithOneOf(StringView text, const StringView (&starts)[N]) noexcept {
    return std::any_of(std::begin(starts), std::end(starts),
                       [text](StringView start) { return text.size() > start.size() && text.starts_with(start); });
}

bool isDeviceFile(StringView name) noexcept {
    return !name.empty() && name.find(u'/') == StringView::npos &&
           (isDigit(name.back()) || startsWithOneOf(name, LETTERED_DISKS));
}

bool isInterface(StringView name) noexcept {
    return startsWithOneOf(name, INTERFACES) && std::any_of(name.begin(), name.end(), isDigit) &&
           std::all_of(name.begin(), name.end(), [](char16_t unit) { return isDigit(unit) || isLowerLetter(unit); });
}

}  // namespace

bool isKernelName(StringView osLocator) noexcept {
    constexpr StringView DEVICES = u"/dev/";
    return osLocator.starts_with(DEVICES) ? isDeviceFile(osLocator.substr(DEVICES.size()))
                                          : isInterface(osLocator) || startsWithOneOf(osLocator, NUMBERED_FOLDERS);
}

bool isPlace(StringView locator) noexcept { return !locator.empty() && !startsWithOneOf(locator, MADE_UP); }

}  // namespace vrx
