#pragma once

#include <atomic>
#include <mutex>
#include <vector>

#include "libCommon/xml/XmlContent.h"
#include "libCommon/xml/parsing/XmlElementReader.h"
#include "libCommon/xml/parsing/XmlPieces.h"

namespace vrx {

/// Parses one text piece by piece, which several threads do at once. The pieces also stay in the processor's cache.
class XmlPieceParser {
public:
    /// All are borrowed; without a reader the whole document is kept.
    XmlPieceParser(XmlSource& source, XmlContent& content, XmlElementReader* reader)
        : m_pieces(source), m_content(content), m_reader(reader) {}

    /// Parses the whole text, once, into the content. False when that did not come off: nothing is known of the text
    /// then, and the content is to be dropped. Requires: a reader is for one thread.
    bool run(unsigned threads);

private:
    void work(XmlContent& memory);
    bool parse(const XmlPiece& piece, XmlContent& memory);
    void keep(const XmlPiece& piece, XmlContainer* parsed);
    void join();

    XmlPieces m_pieces;
    XmlContent& m_content;
    XmlElementReader* m_reader;
    std::mutex m_mutex;
    std::vector<XmlContainer*> m_parsed;  // what each piece holds, by number
    std::atomic<bool> m_hasFailed = false;
};

}  // namespace vrx
