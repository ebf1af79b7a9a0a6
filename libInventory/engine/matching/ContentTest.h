#pragma once

#include <memory>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/xml/XmlDocument.h"
#include "libInventory/Finding.h"
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

    /// What the device fails, as a run has it (Candidate::failures), without words. Requires: it is ready.
    Array<Finding> failuresOf(const IDeviceImp& device) const;

    /// The element around the content as it was parsed; null when it does not parse.
    const XmlElement* element() const noexcept { return m_document.RootElement(); }

private:
    struct Node {
        const XmlElement* element;
        vocabulary::ElementKind kind;
        std::unique_ptr<const PropertyExpectation> property;  ///< of a `property`
        std::vector<Node> children;                           ///< of everything else
    };

    static std::vector<Node> childrenOf(const XmlElement& element);
    static bool holds(const Node& node, const IDeviceImp& device);
    static bool holdAll(const std::vector<Node>& nodes, const IDeviceImp& device);
    static bool tell(const Node& node, const IDeviceImp& device, Array<Finding>& failures);
    static bool tellAll(const std::vector<Node>& nodes, const IDeviceImp& device, Array<Finding>& failures);
    static bool tellAny(const Node& node, const IDeviceImp& device, Array<Finding>& failures);
    static bool tellNot(const Node& node, const IDeviceImp& device, Array<Finding>& failures);
    static bool tellProperty(const Node& node, const IDeviceImp& device, Array<Finding>& failures);

    XmlDocument m_document;  ///< the expectations borrow from it
    bool m_isReady;
    std::vector<Node> m_nodes;
};

}  // namespace vrx
