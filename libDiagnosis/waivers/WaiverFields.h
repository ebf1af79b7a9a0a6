#pragma once

#include "libDiagnosis/waivers/Waiver.h"

namespace vrx {

/// An attribute of a waiver in its file.
struct WaiverField {
    StringView attribute;
    String Waiver::*member;
    bool isRequired = false;
};

inline constexpr StringView WAIVERS = u"waivers";
inline constexpr StringView WAIVER = u"waiver";
inline constexpr StringView WAIVER_KIND = u"kind";

inline constexpr WaiverField WAIVER_FIELDS[] = {
    {u"id", &Waiver::id},
    {u"type", &Waiver::type},
    {u"hwlocator", &Waiver::hwLocator},
    {u"oslocator", &Waiver::osLocator},
    {u"serial-number", &Waiver::serialNumber},
    {u"property", &Waiver::property},
    {u"reason", &Waiver::reason, true},
    {u"decided-by", &Waiver::decidedBy, true},
    {u"expires", &Waiver::expires, true},
};

}  // namespace vrx
