#pragma once

#include "libLint/LintRules.h"

/// What is wrong with the bytes of a file.
namespace vrx::rules {

LintCheck invalidUtf8;

}  // namespace vrx::rules
