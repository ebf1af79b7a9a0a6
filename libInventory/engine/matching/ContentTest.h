#pragma once

#include <memory>
#include <vector>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/script/ScriptVocabulary.h"
#include "libSystemState/Forward.h"

namespace vrx {

class PropertyExpectation;

/// The content of a `device` element made ready for many devices: the same answers as a run for each of them, without
/// its findings, tips and log lines.
class ContentTest {
public:
    /// `content` is the XML text of all children, as a script holds it.
    explicit ContentTest(const String& content);
    ~ContentTest();

    /// Whether the text parsed. Without that there are no answers.
    bool isReady() const noexcept { return m_isReady; }

    /// Whether the device satisfies every child. Requires: it is ready.
    bool holdsFor(const IDeviceImp& device) const;

private:
    struct Node {
        vocabulary::ElementKind kind;
        std::unique_ptr<const PropertyExpectation> property;  ///< of a `property`
        std::vector<Node> children;                           ///< of everything else
    };

    static std::vector<Node> childrenOf(const XmlElement& element);
    static bool holds(const Node& node, const IDeviceImp& device);
    static bool holdAll(const std::vector<Node>& nodes, const IDeviceImp& device);

    XmlDocument m_document;  ///< the expectations borrow from it
    bool m_isReady;
    std::vector<Node> m_nodes;
};

}  // namespace vrx
