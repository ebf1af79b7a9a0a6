#include "libCommon/xml/XmlDocument.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "libCommon/io/FileLoader.h"
#include "libCommon/xml/XmlContent.h"
#include "libCommon/xml/XmlWriter.h"
#include "libCommon/xml/parsing/XmlFileSource.h"
#include "libCommon/xml/parsing/XmlParser.h"
#include "libCommon/xml/parsing/XmlPieceParser.h"
#include "libCommon/xml/parsing/XmlSource.h"
#include "libCommon/xml/parsing/XmlTreeBuilder.h"

namespace vrx {

namespace {

/// What a document without content shows.
XmlContent& emptyContent() {
    static XmlContent content(nullptr);
    return content;
}

}  // namespace

XmlDocument::XmlDocument() noexcept = default;
XmlDocument::~XmlDocument() = default;

XmlDocument::XmlDocument(XmlDocument&& other) noexcept : m_content(std::move(other.m_content)) {
    if (m_content) {
        m_content->setOwner(this);
    }
}

XmlDocument& XmlDocument::operator=(XmlDocument&& other) noexcept {
    if (this != &other) {
        m_content = std::move(other.m_content);
        if (m_content) {
            m_content->setOwner(this);
        }
    }
    return *this;
}

bool XmlDocument::Parse(StringView text, XmlElementReader* reader) {
    XmlUtf16Source source(text);
    return replaceBy(source, reader);
}

bool XmlDocument::ParseUtf8(std::string_view bytes) {
    XmlUtf8Source source(bytes);
    return replaceBy(source, nullptr);
}

bool XmlDocument::LoadFile(const String& path, XmlElementReader* reader, unsigned threads) {
    if (loadPieces(path, reader, threads)) {
        return true;
    }
    std::string bytes;
    String error;
    if (const auto file = XmlFileSource::open(path.toUtf8())) {
        const bool isParsed = replaceBy(*file, reader);
        if (file->error() == 0) {
            return isParsed;
        }
        error = systemErrorText(file->error());
    } else if (loadFile(path, bytes, error)) {
        XmlUtf8Source source(bytes);
        return replaceBy(source, reader);
    }
    Clear();
    content().error = XmlError{std::move(error), XmlPlace(), true};
    return false;
}

/// When that does not come off, nothing has happened.
bool XmlDocument::loadPieces(const String& path, XmlElementReader* reader, unsigned threads) {
    const auto file = XmlFileSource::open(path.toUtf8());
    const bool isLoaded = file != nullptr && replaceByPieces(*file, threads, reader) && file->error() == 0;
    if (!isLoaded && reader != nullptr) {
        reader->startOver();
    }
    return isLoaded;
}

bool XmlDocument::LoadFileWithout(const String& path, std::string_view text, unsigned threads) {
    bool isFound = false;
    const auto isReadBy = [&](const auto& replace) {
        const auto file = isFound ? nullptr : XmlFileSource::open(path.toUtf8());
        if (file == nullptr) {
            return false;
        }
        XmlSearchedSource source(*file, text);
        const bool isParsed = replace(source);
        isFound = source.isFound();
        return isParsed && !isFound && file->error() == 0;
    };
    const bool isRead = isReadBy([&](XmlSource& source) { return replaceByPieces(source, threads, nullptr); }) ||
                        isReadBy([&](XmlSource& source) { return replaceBy(source, nullptr); });
    if (!isRead) {
        Clear();
    }
    return isRead;
}

// The old content goes last: the text may have been borrowed from it.
bool XmlDocument::replaceBy(XmlSource& source, XmlElementReader* reader) {
    auto parsed = std::make_unique<XmlContent>(this);
    XmlTreeBuilder builder(*parsed, parsed->top(), reader);
    std::optional<XmlError> error = XmlParser(source, builder).run();
    if (error) {
        parsed = std::make_unique<XmlContent>(this);
        parsed->error = std::move(error);
    }
    m_content = std::move(parsed);
    return !m_content->error;
}

void XmlDocument::CopyAll(const XmlDocument& other) {
    auto copy = std::make_unique<XmlContent>(this);
    copy->copyAll(other.Top());
    m_content = std::move(copy);
}

bool XmlDocument::replaceByPieces(XmlSource& source, unsigned threads, XmlElementReader* reader) {
    auto parsed = std::make_unique<XmlContent>(this);
    const bool isParsed = XmlPieceParser(source, *parsed, reader).run(threads);
    if (isParsed) {
        m_content = std::move(parsed);
    }
    return isParsed;
}

void XmlDocument::Clear() { m_content.reset(); }

bool XmlDocument::Error() const noexcept { return m_content && m_content->error; }

bool XmlDocument::IsFileError() const noexcept { return Error() && m_content->error->isOfFile; }

const String& XmlDocument::ErrorDesc() const noexcept {
    return Error() ? m_content->error->description : String::EMPTY;
}

std::uint32_t XmlDocument::ErrorRow() const noexcept { return Error() ? m_content->error->place.row : 0; }

std::uint32_t XmlDocument::ErrorColumn() const noexcept { return Error() ? m_content->error->place.column : 0; }

XmlContainer& XmlDocument::Top() noexcept { return content().top(); }

const XmlContainer& XmlDocument::Top() const noexcept { return m_content ? m_content->top() : emptyContent().top(); }

bool XmlDocument::MayHaveName(StringView name) const { return m_content && m_content->names().holdsNoCase(name); }

XmlElement* XmlDocument::NewElement(StringView name) { return content().newElement(content().names().intern(name)); }

XmlText* XmlDocument::NewText(StringView text) { return content().newText(content().arena().copy(text)); }

XmlComment* XmlDocument::NewComment(StringView text) { return content().newComment(content().arena().copy(text)); }

XmlElement* XmlDocument::CopyOf(const XmlElement& element) { return content().copyOf(element); }

String XmlDocument::toString() const { return compactText(Top()); }

void XmlDocument::GetFormattedStr(String& out, int depth) const { out = formattedText(Top(), depth); }

XmlContent& XmlDocument::content() {
    if (!m_content) {
        m_content = std::make_unique<XmlContent>(this);
    }
    return *m_content;
}

}  // namespace vrx
