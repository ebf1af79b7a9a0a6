#pragma once

/// Everything is built with hidden visibility; what hosts may use carries VRX_EXPORT.
#define VRX_EXPORT __attribute__((visibility("default")))
