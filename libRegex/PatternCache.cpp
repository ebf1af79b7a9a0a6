#include "libRegex/PatternCache.h"

#include <memory>

#include "libRegex/TwoGenerationTable.h"

// A script tests the same patterns on many devices, so patterns are made ready once and kept, by their text and letter
// case. Each thread has a cache of its own: nothing is locked and a pattern's matcher is used by one thread only.
//
// The keys are views of the texts that the cached patterns hold, so that looking up neither allocates nor copies. The
// cache is bounded by the memory of its patterns, whether they are a few large ones or many small ones.

namespace vrx {

namespace {

constexpr std::size_t GENERATION_BYTES = 8U << 20U;

struct PatternKey {
    StringView text;
    LetterCase letterCase;

    friend bool operator==(const PatternKey&, const PatternKey&) noexcept = default;
};

struct PatternKeyHash {
    std::size_t operator()(const PatternKey& key) const noexcept { return hashOf(key.text); }
};

using PatternTable = TwoGenerationTable<PatternKey, std::unique_ptr<CompiledPattern>, PatternKeyHash>;

}  // namespace

CompiledPattern& cachedPattern(StringView pattern, LetterCase letterCase) {
    thread_local PatternTable table(GENERATION_BYTES);
    if (const auto* cached = table.find({pattern, letterCase})) {
        return **cached;
    }
    auto made = std::make_unique<CompiledPattern>(pattern, letterCase);
    const PatternKey key{made->pattern(), letterCase};
    const std::size_t bytes = made->byteSize();
    return *table.add(key, std::move(made), bytes);
}

}  // namespace vrx
