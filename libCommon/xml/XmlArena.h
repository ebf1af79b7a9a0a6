#pragma once

#include <cstddef>
#include <cstdint>

#include "libCommon/text/String.h"

namespace vrx {

/// Memory that is handed out by moving a pointer and given back all at once.
///
/// Blocks grow geometrically from a few KiB to 32 MiB: a document of one element costs one small allocation, a document
/// of a million elements some twenty large ones. What lies in an arena is never destroyed, so it must not need to be.
class XmlArena {
public:
    XmlArena() noexcept = default;
    ~XmlArena();
    XmlArena(const XmlArena&) = delete;
    XmlArena& operator=(const XmlArena&) = delete;

    /// Uninitialised memory. Requires: `alignment` is a power of two, at most that of std::max_align_t.
    void* allocate(std::size_t size, std::size_t alignment) {
        std::byte* const start = roomFor(size, alignment);
        m_next = start + size;
        return start;
    }

    /// Room for up to `units` units of text. What was written becomes the arena's with `keepText`; until then the next
    /// allocation may reuse it.
    char16_t* roomForText(std::size_t units) {
        return reinterpret_cast<char16_t*>(roomFor(units * sizeof(char16_t), alignof(char16_t)));
    }

    /// Keeps the text from `begin` to `end`. Requires: `begin` is what the last call, a `roomForText`, returned.
    StringView keepText(char16_t* begin, char16_t* end) noexcept {
        m_next = reinterpret_cast<std::byte*>(end);
        return StringView(begin, static_cast<std::size_t>(end - begin));
    }

    /// A copy of the text.
    StringView copy(StringView text);

private:
    struct Block;

public:
    /// How far the arena was used at some time.
    struct Mark {
        Block* block;
        std::byte* next;
    };
    Mark mark() const noexcept { return {m_last, m_next}; }

    /// Takes back all that was handed out since. Requires: the mark is this arena's, and none before it was gone back
    /// to meanwhile.
    void rewind(Mark mark) noexcept {
        if (mark.block != m_last) [[unlikely]] {
            dropBlocksBehind(mark.block);
        }
        m_next = mark.next;
    }

private:
    struct Block {
        Block* previous;
        std::size_t size;
    };

    std::byte* roomFor(std::size_t size, std::size_t alignment) {
        const std::size_t padding = (0 - reinterpret_cast<std::uintptr_t>(m_next)) & (alignment - 1);
        if (size + padding > static_cast<std::size_t>(m_end - m_next)) [[unlikely]] {
            addBlock(size);
            return m_next;
        }
        return m_next + padding;
    }

    void addBlock(std::size_t size);
    void dropBlocksBehind(Block* last) noexcept;
    static void release(Block* block) noexcept;

    std::byte* m_next = nullptr;
    std::byte* m_end = nullptr;
    std::size_t m_blockSize = 0;  // of the last block, had it not been made larger for one piece
    Block* m_last = nullptr;
    Block* m_spare = nullptr;  // dropped last; a new block is this one again, or the two would alternate for ever
};

}  // namespace vrx
