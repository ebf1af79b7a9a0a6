#pragma once

/// Assertions guard contracts between pieces of the system; they stay on in every build. This header is a leaf: it
/// includes nothing, so that every other header can use it. What happens on a failure lives in
/// logging/AssertionLog.cpp.
///
///     VRX_ASSERT(element);                  // Requires: element is not null

namespace vrx {

/// Logs "Assertion failed: " + expression + " at " + file + ":" + line at priority 4 through the logger "libCommon"
/// and raises a StructuredException with code 7. Nothing below a program's `main` catches that.
[[noreturn]] __attribute__((visibility("default"))) void assertionFailed(const char* expression, const char* file,
                                                                         int line);

}  // namespace vrx

/// Raises when `condition` is false; the expression text is the condition as written.
#define VRX_ASSERT(condition) VRX_ASSERT_TEXT(condition, #condition)

/// As VRX_ASSERT, with an expression text of its own (for messages that must not depend on how the check is written).
#define VRX_ASSERT_TEXT(condition, text)                      \
    do {                                                      \
        if (!(condition)) [[unlikely]] {                      \
            ::vrx::assertionFailed(text, __FILE__, __LINE__); \
        }                                                     \
    } while (false)
