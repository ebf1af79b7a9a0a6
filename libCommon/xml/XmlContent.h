#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlArena.h"
#include "libCommon/xml/XmlElement.h"
#include "libCommon/xml/XmlNames.h"
#include "libCommon/xml/XmlNode.h"
#include "libCommon/xml/parsing/XmlPosition.h"

namespace vrx {

/// Why a parse failed, and where.
struct XmlError {
    String description;
    XmlPlace place;
    bool isOfFile = false;  ///< the file could not be read
};

/// What a document consists of. It stays where it is when the document is moved, so nodes can point to it.
class XmlContent {
public:
    explicit XmlContent(XmlDocument* owner) noexcept : m_owner(owner), m_names(m_nameArena), m_top(this) {}

    /// Further memory of another content, for one more thread to make nodes of that content in. Requires: the other one
    /// keeps this one.
    explicit XmlContent(XmlContent& home) noexcept : m_home(&home), m_names(m_nameArena), m_top(&home) {}

    void keepPart(std::unique_ptr<XmlContent> part) { m_parts.push_back(std::move(part)); }

    XmlContainer& top() noexcept { return m_top; }
    XmlArena& arena() noexcept { return m_arena; }
    XmlNames& names() noexcept { return m_home->m_names; }

    /// The document that holds this; null when none does.
    XmlDocument* owner() const noexcept { return m_owner; }
    void setOwner(XmlDocument* owner) noexcept { m_owner = owner; }

    /// Why the last parse failed; nothing when it did not.
    std::optional<XmlError> error;

    /// New nodes without a parent. Their texts must lie in the arena already.
    XmlElement* newElement(const XmlName* name) { return make<XmlElement>(name); }
    XmlText* newText(StringView keptText) { return make<XmlText>(keptText); }
    XmlComment* newComment(StringView keptText) { return make<XmlComment>(keptText); }

    /// A node to put others under for a while.
    XmlContainer* newHolder() { return new (m_nodeArena.allocate(sizeof(Top), alignof(Top))) Top(m_home); }

    /// Copies valid UTF-8 into the arena.
    StringView keepUtf8(std::string_view bytes);

    /// Deep copies of nodes of any content. Requires: not a document.
    XmlElement* copyOf(const XmlElement& element);
    XmlElement* copyOf(const XmlElement& element, XmlNameCopies& names);
    XmlNode* copyOf(const XmlNode& node, XmlNameCopies& names);

    /// Adds copies of all children of another document to this one.
    void copyAll(const XmlContainer& document);

    /// How far nodes, attributes and texts went at some time.
    struct Mark {
        XmlArena::Mark nodes;
        XmlArena::Mark contents;
    };
    Mark mark() const noexcept { return {m_nodeArena.mark(), m_arena.mark()}; }

    /// Drops all nodes, attributes and texts that were made since (XmlArena.h).
    void rewind(const Mark& mark) noexcept {
        m_nodeArena.rewind(mark.nodes);
        m_arena.rewind(mark.contents);
    }

private:
    class Top final : public XmlContainer {
    public:
        explicit Top(XmlContent* content) noexcept : XmlContainer(Kind::Document, content) {}
    };

    template <typename Node, typename Data>
    Node* make(Data data) {
        static_assert(std::is_trivially_destructible_v<Node>, "nodes are dropped with the arena, never destroyed");
        return new (m_nodeArena.allocate(sizeof(Node), alignof(Node))) Node(m_home, data);
    }

    XmlContent* m_home = this;  // whose nodes are made here
    XmlDocument* m_owner = nullptr;
    XmlArena m_nodeArena;  // apart from attributes and texts, so that a walk over the elements reads little else
    XmlArena m_arena;
    XmlArena m_nameArena;  // names stay when the contents of elements go
    XmlNames m_names;
    Top m_top;
    std::vector<std::unique_ptr<XmlContent>> m_parts;
};

}  // namespace vrx
