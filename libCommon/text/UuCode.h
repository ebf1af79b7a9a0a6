#pragma once

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

/// The escaping that carries any 16-bit text through the XML layer and back unchanged:
///
/// - a code unit that XML 1.0 cannot hold (below U+0020 except tab, line feed and carriage return; an unpaired
///   surrogate; U+FFFE; U+FFFF) becomes `%u` and four upper-case hexadecimal digits;
/// - a `%` that is followed by `u` and four hexadecimal digits becomes `%u0025`, so that a literal "%u0041" survives;
/// - everything else stands as it is, so the encoding is the identity on nearly every text.
///
/// Decoding turns every `%u` and four hexadecimal digits (either case) back into its code unit, left to right, without
/// re-reading what it produced. Decoding an encoded text gives the original text.
///
///     const String safe = toXmlSafe(serialNumber);       // "A%u0000B" for an A, a NUL and a B
///     fromXmlSafe(safe) == serialNumber;                 // true for every text
namespace vrx {

/// Encodes. `escapeUnrepresentable` handles what XML cannot hold, `protectLiterals` handles literal escapes.
VRX_EXPORT String uuEncode(StringView text, bool escapeUnrepresentable, bool protectLiterals);

/// Decodes. With `protectLiterals` alone, only `%u0025` is turned back; with `escapeUnrepresentable` every escape is.
VRX_EXPORT String uuDecode(StringView text, bool escapeUnrepresentable, bool protectLiterals);

/// Any text as one that XML can hold, and back: both kinds of escapes.
inline String toXmlSafe(StringView text) { return uuEncode(text, true, true); }
inline String fromXmlSafe(StringView text) { return uuDecode(text, true, true); }

/// Whether `toXmlSafe` would change the text; a fast scan that allocates nothing.
VRX_EXPORT bool needsUuEncode(StringView text) noexcept;

/// Whether `fromXmlSafe` would change the text.
VRX_EXPORT bool needsUuDecode(StringView text) noexcept;

/// Whether XML 1.0 can hold the unit at `index` of `text` (looks at its neighbours for surrogate pairs).
VRX_EXPORT bool isXmlRepresentable(StringView text, std::size_t index) noexcept;

}  // namespace vrx
