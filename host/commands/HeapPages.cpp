#include "host/commands/HeapPages.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace vrx::host {

namespace {

// A recording of a million properties takes a hundred thousand page faults otherwise, a tenth of the time of a check.
constexpr std::uintptr_t HUGE_PAGE = std::uintptr_t{2} << 20;
constexpr off_t SMALLEST_FILE = off_t{1} << 20;
constexpr off_t LARGEST_HEAP = off_t{1} << 30;
constexpr off_t HEAP_PER_BYTE = 5;           // the text itself, and devices and properties for each byte of it
constexpr std::size_t BELOW_MMAP = 100'000;  // a block that malloc takes from the heap
constexpr std::size_t MOST_BLOCKS = 100;

/// 0 for what is no regular file.
off_t sizeOfFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

}  // namespace

void expectFiles(std::initializer_list<std::string_view> paths) {
    off_t bytes = 0;
    for (const std::string_view path : paths) {
        bytes += sizeOfFile(std::string(path));
    }
    if (bytes < SMALLEST_FILE) {
        return;
    }
    const off_t heap = std::min(bytes * HEAP_PER_BYTE, LARGEST_HEAP);
    const bool isExpectedAlready = mallinfo2().keepcost >= static_cast<std::size_t>(heap) / 2;
    if (isExpectedAlready || mallopt(M_TOP_PAD, static_cast<int>(heap)) == 0) {
        return;
    }
    mallopt(M_TRIM_THRESHOLD, static_cast<int>(LARGEST_HEAP));
    // The heap only grows when it has no room left, so its room is used up first.
    const auto before = reinterpret_cast<std::uintptr_t>(sbrk(0));
    std::vector<void*> blocks;
    while (blocks.size() < MOST_BLOCKS && reinterpret_cast<std::uintptr_t>(sbrk(0)) == before) {
        blocks.push_back(std::malloc(BELOW_MMAP));
    }
    const auto after = reinterpret_cast<std::uintptr_t>(sbrk(0));
    for (void* const block : blocks) {
        std::free(block);
    }
    mallopt(M_TOP_PAD, static_cast<int>(HUGE_PAGE));
    const std::uintptr_t first = (before + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE;
    if (after > first) {
        // Advice only: where it is not taken, everything works as before.
        madvise(reinterpret_cast<void*>(first), after - first, MADV_HUGEPAGE);
    }
}

}  // namespace vrx::host
