#pragma once

#include <atomic>
#include <future>
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
    /// then, and the content is to be dropped. Fewer threads than asked for where the reader has none for more.
    bool run(unsigned threads);

private:
    bool startAnother(std::vector<std::future<void>>& others);
    void work(XmlContent& memory, XmlElementReader* reader);
    bool parse(const XmlPiece& piece, XmlContent& memory, XmlElementReader* reader);
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
