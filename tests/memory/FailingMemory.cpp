/// An allocator that fails once, linked into the program: the allocation of the number in VRX_FAIL_ALLOCATION, counted
/// from where the program's own code begins to run, gets nothing. With 0 none fails, and the number of all allocations
/// is written to standard error at the end.
///
/// The functions stand in the program itself, so that every library calls them. What they give out comes from the
/// system's own, or the sanitizer's, which also take it back.

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>

#ifdef __SANITIZE_ADDRESS__
#define SYSTEM(name) __interceptor_##name
#else
#define SYSTEM(name) __libc_##name
#endif

extern "C" {
void* SYSTEM(malloc)(std::size_t size);
void* SYSTEM(calloc)(std::size_t count, std::size_t size);
void* SYSTEM(realloc)(void* block, std::size_t size);
}

namespace {

constinit bool isCounting = false;
constinit unsigned long failing = 0;
constinit std::atomic<unsigned long> allocations = 0;

[[gnu::constructor(101)]] void startCounting() {
    const char* const number = std::getenv("VRX_FAIL_ALLOCATION");
    failing = number != nullptr ? std::strtoul(number, nullptr, 10) : 0;
    isCounting = number != nullptr;
}

[[gnu::destructor(101)]] void sayCount() {
    if (isCounting && failing == 0) {
        std::fprintf(stderr, "allocations: %lu\n", allocations.load());
    }
}

bool fails() noexcept {
    if (!isCounting || ++allocations != failing) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) noexcept { return fails() ? nullptr : SYSTEM(malloc)(size); }
void* calloc(std::size_t count, std::size_t size) noexcept { return fails() ? nullptr : SYSTEM(calloc)(count, size); }
void* realloc(void* block, std::size_t size) noexcept { return fails() ? nullptr : SYSTEM(realloc)(block, size); }
}

void* operator new(std::size_t size) {
    while (true) {
        if (void* const block = malloc(size)) {
            return block;
        }
        const std::new_handler handler = std::get_new_handler();
        if (handler == nullptr) {
            throw std::bad_alloc();
        }
        handler();
    }
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return malloc(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return malloc(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
