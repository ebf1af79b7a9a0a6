#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlElement.h"
#include "libCommon/xml/XmlNode.h"

namespace vrx {

class XmlElementReader;
class XmlSource;

/// An XML document: owner of all of its nodes.
///
/// Parsing accepts XML 1.0 in UTF-8 (declaration and byte-order mark optional), is namespace-unaware, rejects
/// everything ill-formed, never loads anything external, does not accept a DOCTYPE, and rejects elements nested deeper
/// than level 256 (the root is level 1). After a failed parse the document is empty and `Error()` is true.
///
/// Documents are moved, not copied; a moved document keeps its nodes where they are, and the one that it was moved from
/// is empty.
///
///     XmlDocument document;
///     if (!document.LoadFile(u"script.xml")) {
///         std::cerr << document.ErrorRow() + 1 << ": " << document.ErrorDesc().toUtf8() << '\n';
///     }
///     const XmlElement* child = document.RootElement()->FirstChildElement();
///     for (; child != nullptr; child = child->NextSiblingElement()) {
///         std::cout << String(child->Name()).toUtf8() << '\n';
///     }
class VRX_EXPORT XmlDocument {
public:
    /// Deepest level of nesting that is accepted; walks over a document may therefore be recursive.
    static constexpr unsigned MAXIMUM_DEPTH = 256;

    XmlDocument() noexcept;
    ~XmlDocument();
    XmlDocument(XmlDocument&& other) noexcept;
    XmlDocument& operator=(XmlDocument&& other) noexcept;

    /// Parses text held in memory, replacing what the document held. Rows and columns count in this text (a leading
    /// byte-order mark takes no column). With a reader few elements tell places (XmlElementReader).
    bool Parse(StringView text, XmlElementReader* reader = nullptr);

    /// The same for UTF-8 bytes; invalid UTF-8 is a parse error.
    bool ParseUtf8(std::string_view bytes);

    /// Reads and parses a file; a file that cannot be read is an error at row 0, column 0 with the reason.
    /// So many threads may parse it at once.
    bool LoadFile(const String& path, XmlElementReader* reader = nullptr, unsigned threads = 1);

    /// Parses a regular file as it is read, without holding its bytes. False, with an empty document, when it does not
    /// parse, is no regular file, cannot be read, or its bytes hold that text somewhere. So many threads may parse it
    /// at once. Requires: the text has 2 to 8 bytes and no blank.
    bool LoadFileWithout(const String& path, std::string_view text, unsigned threads = 1);

    /// Replaces what the document held by copies of all nodes of another one, places included, which takes a fraction
    /// of the time that parsing does. The other is only read: several threads may copy one document at once.
    void CopyAll(const XmlDocument& other);

    /// Removes all nodes and the error.
    void Clear();

    /// Whether the last parse failed.
    bool Error() const noexcept;

    /// Whether it failed because the file could not be read; then there is no place.
    bool IsFileError() const noexcept;

    /// What the last parse failed on ("mismatched tag"), and its 0-based place in the parsed text.
    const String& ErrorDesc() const noexcept;
    std::uint32_t ErrorRow() const noexcept;
    std::uint32_t ErrorColumn() const noexcept;

    /// The document as a node, parent of the root element and of comments beside it.
    XmlContainer& Top() noexcept;
    const XmlContainer& Top() const noexcept;

    /// The root element; null when there is none.
    XmlElement* RootElement() noexcept { return Top().FirstChildElement(); }
    const XmlElement* RootElement() const noexcept { return Top().FirstChildElement(); }

    /// Whether an element or attribute may have that name, in any letter case; false is certain, without a walk over
    /// the document.
    bool MayHaveName(StringView name) const;

    /// New nodes without a parent, owned by the document. Their texts are copied.
    XmlElement* NewElement(StringView name);
    XmlText* NewText(StringView text);
    XmlComment* NewComment(StringView text);

    /// A copy of an element of any document with everything in it, places included; without a parent.
    XmlElement* CopyOf(const XmlElement& element);

    /// Adds a node as the last child of the document.
    void LinkEndChild(XmlNode* node) { Top().LinkEndChild(node); }

    /// The document as compact XML on one line, without declaration (see xml/XmlWriter.h).
    String toString() const;

    /// Replaces `out` by the document as indented XML, one node a line, four blanks a level; `depth` is the level of
    /// indent that it starts at.
    void GetFormattedStr(String& out, int depth) const;

private:
    bool loadPieces(const String& path, XmlElementReader* reader, unsigned threads);
    bool replaceBy(XmlSource& source, XmlElementReader* reader);
    bool replaceByPieces(XmlSource& source, unsigned threads, XmlElementReader* reader);
    XmlContent& content();

    std::unique_ptr<XmlContent> m_content;  // made when it is first needed
};

}  // namespace vrx
