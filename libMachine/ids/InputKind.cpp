/// A keyboard has all the keys of the first row and of the letters. What moves a pointer has two axes: relative ones
/// (a mouse), or absolute ones, which are a touch screen when the finger is on the picture itself (the property
/// "direct"), a touch pad when it tells fingers from pens, a tablet, or a joystick when it has its buttons.
///
/// A mask's words are printed from the highest down, in the width of the machine, zeros in front left out. Words of a
/// 32-bit machine cannot be told from those of a 64-bit one in every case; 64 bit is taken.

#include "libMachine/ids/InputKind.h"

#include <charconv>
#include <cstdint>

namespace vrx {

namespace {

enum Key : unsigned {
    LAST_OF_FIRST_KEYS = 31,
    MOUSE_BUTTON = 0x110,
    JOYSTICK_BUTTON = 0x120,
    GAMEPAD_BUTTON = 0x130,
    TOOL_PEN = 0x140,
    TOOL_FINGER = 0x145,
    TOUCH = 0x14A,
    STYLUS = 0x14B,
};
enum Axis : unsigned { X = 0, Y = 1, MULTI_TOUCH_X = 0x35, MULTI_TOUCH_Y = 0x36 };
enum Property : unsigned { DIRECT = 1, ACCELEROMETER = 6 };

/// The word of a mask that holds the bits from 64 * `index` on.
std::uint64_t wordOf(std::string_view mask, unsigned index) noexcept {
    for (; index > 0; --index) {
        const std::size_t blank = mask.rfind(' ');
        if (blank == std::string_view::npos) {
            return 0;
        }
        mask = mask.substr(0, blank);
    }
    mask = mask.substr(mask.rfind(' ') + 1);
    std::uint64_t word = 0;
    std::from_chars(mask.data(), mask.data() + mask.size(), word, 16);
    return word;
}

bool has(std::string_view mask, unsigned bit) noexcept { return (wordOf(mask, bit / 64) >> bit % 64 & 1) != 0; }

bool isKeyboard(std::string_view keys) noexcept {
    static constexpr std::uint64_t FIRST_KEYS = (std::uint64_t{1} << (LAST_OF_FIRST_KEYS + 1)) - 2;  // 0 is no key
    return (wordOf(keys, 0) & FIRST_KEYS) == FIRST_KEYS;
}

StringView kindOfAbsolute(const InputMasks& masks) noexcept {
    const bool isDirect = has(masks.properties, DIRECT);
    const bool hasPen = has(masks.keys, TOOL_PEN) || has(masks.keys, STYLUS);
    if (has(masks.keys, TOOL_FINGER) && !hasPen && !isDirect) {
        return u"TouchPad";
    }
    if (hasPen || has(masks.keys, MOUSE_BUTTON)) {
        return u"PointingDevice";
    }
    if (has(masks.keys, TOUCH) || isDirect) {
        return u"TouchScreen";
    }
    return has(masks.keys, JOYSTICK_BUTTON) || has(masks.keys, GAMEPAD_BUTTON) ? StringView(u"Joystick") : StringView();
}

}  // namespace

StringView inputKind(const InputMasks& masks) noexcept {
    const bool hasAbsolute = (has(masks.absolute, X) && has(masks.absolute, Y)) ||
                             (has(masks.absolute, MULTI_TOUCH_X) && has(masks.absolute, MULTI_TOUCH_Y));
    if (hasAbsolute && !has(masks.properties, ACCELEROMETER)) {
        if (const StringView kind = kindOfAbsolute(masks); !kind.empty()) {
            return kind;
        }
    }
    if (has(masks.relative, X) && has(masks.relative, Y) && has(masks.keys, MOUSE_BUTTON)) {
        return u"PointingDevice";
    }
    return isKeyboard(masks.keys) ? StringView(u"Keyboard") : StringView();
}

}  // namespace vrx
