#pragma once

#include <vector>

#include "libCommon/Export.h"
#include "libCommon/xml/XmlElement.h"
#include "libInventory/script/ScriptVocabulary.h"

/// Walking over a script, a part or a parts list: every element in document order, an element before its content, with
/// what it lies in.
///
///     for (ScriptWalk walk(root); walk; ++walk) {
///         if (walk->kind == vocabulary::ElementKind::Device && !walk->isUnderNot()) {
///             wanted.push_back(walk->element);
///         }
///     }
///
/// A walk does not recurse, so no nesting is too deep for it. It looks at elements only when it comes to them or leaves
/// them: the loop's body may change the present element and its content, but not unlink the elements around it.
namespace vrx {

/// One element on a walk, and what it lies in. What a walk starts at lies in nothing.
struct ScriptPlace {
    const XmlElement* element = nullptr;
    vocabulary::ElementKind kind = vocabulary::ElementKind::Unknown;
    unsigned depth = 0;                       ///< 0 where the walk starts
    const XmlElement* part = nullptr;         ///< the nearest `part` around it
    const XmlElement* alternative = nullptr;  ///< the nearest element around it, or itself, that is a child of an `or`
    const XmlElement* holder = nullptr;       ///< the `device` or `fail-on-extra` that it describes
    const XmlElement* property = nullptr;     ///< the `property` whose value it describes
    unsigned nots = 0;                        ///< how many `not` it lies in
    unsigned notsInHolder = 0;                ///< how many of them lie in the holder too

    bool isUnderNot() const noexcept { return nots > 0; }
};

/// The place of an element that nothing is around.
VRX_EXPORT ScriptPlace topPlace(const XmlElement& element) noexcept;

class VRX_EXPORT ScriptWalk {
public:
    enum class Extent {
        Everything,
        /// What a check looks at: groups (`inventory-check`, `and`, `or`, `not`, `part`) with devices and rules in
        /// them, their properties and groups, and the entries of a property. Anything else is come to, but its content
        /// is not.
        WhereACheckLooks,
    };

    /// Starts at the element. Requires: it outlives the walk.
    explicit ScriptWalk(const XmlElement& top, Extent extent = Extent::Everything);

    /// Starts at an element that is taken for what the place says: a part under another name, or a piece of something
    /// bigger.
    explicit ScriptWalk(const ScriptPlace& top, Extent extent = Extent::Everything);

    /// Whether there is a present element; false at the end.
    explicit operator bool() const noexcept { return !m_path.empty(); }

    /// The present element. Requires: not at the end. Valid until the walk goes on.
    const ScriptPlace& operator*() const noexcept { return m_path.back(); }
    const ScriptPlace* operator->() const noexcept { return &m_path.back(); }

    /// Goes on to the next element. Requires: not at the end.
    ScriptWalk& operator++();

    /// Goes on behind the content of the present element the next time.
    void skipContent() noexcept { m_skipsContent = true; }

private:
    bool entersPresent() const noexcept;

    std::vector<ScriptPlace> m_path;  ///< from the start to the present element; empty at the end
    Extent m_extent;
    bool m_skipsContent = false;
};

}  // namespace vrx
