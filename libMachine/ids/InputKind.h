#pragma once

#include <string_view>

#include "libCommon/text/String.h"

namespace vrx {

/// What an input device can send, as the files in its folder `capabilities` have it, and what it says of itself in
/// `properties`: bit masks in hexadecimal words.
struct InputMasks {
    std::string_view keys;
    std::string_view relative;
    std::string_view absolute;
    std::string_view properties;
};

/// The device type of an input device: Keyboard, PointingDevice, TouchPad, TouchScreen or Joystick; empty for what is
/// none of these (buttons, switches, jacks, beepers).
StringView inputKind(const InputMasks& masks) noexcept;

}  // namespace vrx
