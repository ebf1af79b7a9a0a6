#pragma once

#include <string>
#include <string_view>

/// Names that stand for what identifies one piece of hardware. The same text gives the same pseudonym, in every
/// recording and on every machine; from a pseudonym alone the text cannot be computed, but who can guess the text can
/// test the guess. Texts are UTF-8.
namespace vrx {

/// For a text of any form: each digit becomes a digit, each small and each capital letter another, all else stays, so
/// length and look are kept. In a text of hexadecimal digits letters stay such digits. A word in front that says what
/// kind of number it is ("naa.", "eui.", "0x") stays. Two short texts may get one pseudonym.
std::string pseudonym(std::string_view text);

/// For a hardware address of two or more pairs of hexadecimal digits with ":" or "-" between them, or without: marked
/// as locally administered, for one receiver, so that it is nobody's. Letters stay small or capital.
std::string addressPseudonym(std::string_view address);

/// For a UUID: one made from a name.
std::string uuidPseudonym(std::string_view uuid);

/// Whether a text is a UUID in its usual form, or a hardware address of six pairs with ":" or "-" between them.
bool isUuid(std::string_view text) noexcept;
bool isHardwareAddress(std::string_view text) noexcept;

/// The pseudonym that a text's form asks for.
std::string pseudonymByForm(std::string_view text);

}  // namespace vrx
