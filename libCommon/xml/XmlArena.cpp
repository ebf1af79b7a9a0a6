#include "libCommon/xml/XmlArena.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>
#include <utility>

namespace vrx {

namespace {

constexpr std::size_t FIRST_BLOCK = std::size_t{4} << 10;
constexpr std::size_t FIRST_MAPPED_BLOCK = std::size_t{4} << 20;
constexpr std::size_t LARGEST_BLOCK = std::size_t{32} << 20;
constexpr std::size_t HEADER = alignof(std::max_align_t);

/// Memory straight from the system, on huge pages where there are such: the faults on small ones would cost as much as
/// building the tree in them. Only what is touched counts.
void* mapMemory(std::size_t size) {
    void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    ::madvise(memory, size, MADV_HUGEPAGE);
    return memory;
}

}  // namespace

XmlArena::~XmlArena() {
    dropBlocksBehind(nullptr);
    release(m_spare);
}

void XmlArena::release(Block* block) noexcept {
    if (block != nullptr && block->size >= FIRST_MAPPED_BLOCK) {
        ::munmap(block, block->size);
    } else {
        ::operator delete(block);
    }
}

void XmlArena::dropBlocksBehind(Block* last) noexcept {
    while (m_last != last) {
        Block* const dropped = m_last;
        m_last = dropped->previous;
        release(std::exchange(m_spare, dropped));
    }
    m_end = m_last == nullptr ? nullptr : reinterpret_cast<std::byte*>(m_last) + m_last->size;
}

StringView XmlArena::copy(StringView text) {
    char16_t* const room = roomForText(text.size());
    return keepText(room, std::copy(text.begin(), text.end(), room));
}

// What is left of the block before is given up: little, since texts are short.
void XmlArena::addBlock(std::size_t size) {
    static_assert(sizeof(Block) <= HEADER);
    if (m_spare != nullptr && m_spare->size >= size + HEADER) {
        Block* const spare = std::exchange(m_spare, nullptr);
        spare->previous = m_last;
        m_last = spare;
    } else {
        m_blockSize = std::clamp(m_blockSize * 2, FIRST_BLOCK, LARGEST_BLOCK);
        const std::size_t bytes = std::max(m_blockSize, size + HEADER);
        m_last = new (bytes >= FIRST_MAPPED_BLOCK ? mapMemory(bytes) : ::operator new(bytes)) Block{m_last, bytes};
    }
    m_next = reinterpret_cast<std::byte*>(m_last) + HEADER;
    m_end = reinterpret_cast<std::byte*>(m_last) + m_last->size;
}

}  // namespace vrx
