#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

#include "libCommon/xml/parsing/XmlPosition.h"
#include "libCommon/xml/parsing/XmlSource.h"

namespace vrx {

/// A part of a text that is a document in itself: the text's root with some of what is in it.
struct XmlPiece {
    std::string text;
    std::size_t number = 0;     ///< 0 for the first one
    std::size_t addedSize = 0;  ///< bytes of a start tag that the text did not have there
    XmlPlace start;             ///< of what follows these
};

/// Cuts a text into pieces that can be parsed apart.
class XmlPieces {
public:
    /// The source is borrowed. Reads its start.
    explicit XmlPieces(XmlSource& source);

    /// Whether the text looks as if it could be cut.
    bool canCut() const noexcept { return !m_seam.empty(); }

    /// The most pieces that it can give, before any was taken.
    std::size_t mostPieces() const noexcept { return 1 + m_source.mostBytesLeft() / m_pieceSize; }

    /// The next piece. False when there is none. Several threads may ask at once. Requires: it can be cut.
    bool take(XmlPiece& piece);

    /// Whether there was nowhere to cut for so long that the text had better be parsed as a whole.
    bool hasGivenUp() const noexcept { return m_hasGivenUp; }

private:
    void readMore(std::string& text, std::size_t size);
    void findSeam();
    std::size_t lastCut(std::string_view text, std::size_t first) const noexcept;
    void cutOff(XmlPiece& piece, std::size_t cut);

    XmlSource& m_source;
    const std::size_t m_pieceSize;
    std::mutex m_mutex;  // guards all that follows
    std::string m_seam;  // what stands before the start tags of the root's children, with their <
    std::string m_opening;
    std::string m_closing;
    std::string m_unused;  // what was read and not handed out
    XmlPosition m_position;
    std::size_t m_count = 0;
    bool m_isAtEnd = false;
    bool m_hasGivenUp = false;
};

}  // namespace vrx
