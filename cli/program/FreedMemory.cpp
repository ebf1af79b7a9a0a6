#include "cli/program/FreedMemory.h"

#include <malloc.h>

namespace vrx::cli {

namespace {

constexpr int KEPT_BYTES = 64 << 20;
constexpr int STEP = 8 << 20;
constexpr int LARGEST_BLOCK = 16 << 20;  // beyond it a block is the system's from the start

}  // namespace

void keepFreedMemory() noexcept {
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, KEPT_BYTES);
    mallopt(M_MMAP_THRESHOLD, LARGEST_BLOCK);
#endif
}

void takeMemoryInLargeSteps() noexcept {
#ifdef __GLIBC__
    mallopt(M_TOP_PAD, STEP);
#endif
}

}  // namespace vrx::cli
