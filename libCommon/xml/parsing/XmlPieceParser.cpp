#include "libCommon/xml/parsing/XmlPieceParser.h"

#include <algorithm>
#include <future>
#include <memory>
#include <system_error>

#include "libCommon/xml/XmlElement.h"
#include "libCommon/xml/parsing/XmlParser.h"
#include "libCommon/xml/parsing/XmlTreeBuilder.h"

namespace vrx {

bool XmlPieceParser::run(unsigned threads) {
    if (!m_pieces.canCut()) {
        return false;
    }
    const std::size_t workers = std::min<std::size_t>(threads, m_pieces.mostPieces());
    std::vector<std::future<void>> others;
    try {
        while (others.size() + 1 < workers && startAnother(others)) {
        }
    } catch (const std::system_error&) {  // fewer threads are to be had
    }
    work(m_content, m_reader);
    for (std::future<void>& other : others) {
        other.get();
    }
    if (!m_hasFailed && !m_pieces.hasGivenUp()) {
        join();
        return true;
    }
    return false;
}

/// False when the reader has none for another thread.
bool XmlPieceParser::startAnother(std::vector<std::future<void>>& others) {
    XmlElementReader* const reader = m_reader == nullptr ? nullptr : m_reader->forAnotherThread();
    if (m_reader != nullptr && reader == nullptr) {
        return false;
    }
    auto part = std::make_unique<XmlContent>(m_content);
    XmlContent& memory = *part;
    m_content.keepPart(std::move(part));
    others.push_back(std::async(std::launch::async, [this, &memory, reader] { work(memory, reader); }));
    return true;
}

void XmlPieceParser::work(XmlContent& memory, XmlElementReader* reader) {
    XmlPiece piece;
    while (!m_hasFailed && m_pieces.take(piece)) {
        if (!parse(piece, memory, reader)) {
            m_hasFailed = true;
        }
    }
}

bool XmlPieceParser::parse(const XmlPiece& piece, XmlContent& memory, XmlElementReader* reader) {
    XmlContainer* const holder = memory.newHolder();
    XmlTreeBuilder builder(memory, *holder, reader);
    builder.withholdRoot();
    XmlUtf8Source source(piece.text);
    XmlParser parser(source, builder);
    if (piece.number > 0) {
        parser.startAt(piece.start, piece.addedSize);
    }
    const bool isParsed = !parser.run();
    if (isParsed) {
        keep(piece, holder);
    }
    return isParsed;
}

void XmlPieceParser::keep(const XmlPiece& piece, XmlContainer* parsed) {
    const std::lock_guard lock(m_mutex);
    if (m_parsed.size() <= piece.number) {
        m_parsed.resize(piece.number + 1);
    }
    m_parsed[piece.number] = parsed;
}

/// Puts everything where it belongs: below the root of the first piece or, comments that follow the root, beside it.
void XmlPieceParser::join() {
    XmlContainer& top = m_content.top();
    top.takeChildren(*m_parsed.front());
    XmlElement* const root = top.FirstChildElement();
    for (auto piece = m_parsed.begin() + 1; piece != m_parsed.end(); ++piece) {
        root->takeChildren(*(*piece)->FirstChildElement());
        (*piece)->removeFirstChild();
        top.takeChildren(**piece);
    }
    if (m_reader != nullptr && m_reader->readElement(*root)) {
        root->clear();
    }
}

}  // namespace vrx
