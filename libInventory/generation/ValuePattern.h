#pragma once

#include "libCommon/text/String.h"

/// How a value of a machine becomes a pattern of a script.
namespace vrx {

/// Puts a backslash before every character that means something in a pattern: \ ^ $ . ? * + { } ( ) [ ]. The pipe and
/// the hyphen stay as they are: a pattern that begins with its own value matches it whatever follows the pipe.
void escapeRegex(String& text);

/// "^" + the escaped text, encoded for XML + "$": matches exactly this text.
String exactValuePattern(const String& text);

/// "^" + range marker + "[" low "-" high "]" + a blank and the units, where there are any + "$". The bounds stand in
/// the order given, also when the first is the larger.
String rangePattern(double low, double high, const String& units);

}  // namespace vrx
