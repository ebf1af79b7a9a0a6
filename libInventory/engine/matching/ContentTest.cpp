/// Decides the content of an element for one device after the other, as PropertyMatcher does within a run: every child
/// is tested also after one has failed, so that a pattern that must be given up is given up in both; an `or` ends at
/// the first alternative that holds; what is no test holds.

#include "libInventory/engine/matching/ContentTest.h"

#include <algorithm>

#include "libCommon/text/UuCode.h"
#include "libInventory/engine/findings/RunFindings.h"
#include "libInventory/engine/matching/PropertyExpectation.h"
#include "libInventory/engine/matching/PropertyTest.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/devices/IDeviceImp.h"
#include "libSystemState/properties/IPropertyImp.h"
#include "libSystemState/values/ValueImp.h"

namespace vrx {

using vocabulary::ElementKind;

// Contract: the text is encoded once more, as that of every script that is loaded.
ContentTest::ContentTest(const String& content) {
    const String text = concat(u"<device>", content, u"</device>");
    m_isReady = m_document.Parse(needsUuEncode(text) ? toXmlSafe(text) : text);
    if (m_isReady) {
        m_nodes = childrenOf(*m_document.RootElement());
    }
}

ContentTest::~ContentTest() = default;

std::vector<ContentTest::Node> ContentTest::childrenOf(const XmlElement& element) {
    std::vector<Node> nodes;
    for (const XmlElement* const child : childElements(element)) {
        Node node{child, vocabulary::kindOf(*child), nullptr, {}};
        if (node.kind == ElementKind::Property) {
            node.property = std::make_unique<const PropertyExpectation>(*child);
        } else {
            node.children = childrenOf(*child);
        }
        nodes.push_back(std::move(node));
    }
    return nodes;
}

bool ContentTest::holdsFor(const IDeviceImp& device) const { return holdAll(m_nodes, device); }

bool ContentTest::holdAll(const std::vector<Node>& nodes, const IDeviceImp& device) {
    bool all = true;
    for (const Node& node : nodes) {
        all = holds(node, device) && all;
    }
    return all;
}

bool ContentTest::holds(const Node& node, const IDeviceImp& device) {
    switch (node.kind) {
        case ElementKind::Property: {
            const IPropertyImp* const property = device.findProperty(node.property->key());
            return property != nullptr && meets(*property, *node.property);
        }
        case ElementKind::And: return holdAll(node.children, device);
        case ElementKind::Or:
            return std::any_of(node.children.begin(), node.children.end(),
                               [&device](const Node& child) { return holds(child, device); });
        case ElementKind::Not: return !holdAll(node.children, device);
        default: return true;
    }
}

Array<Finding> ContentTest::failuresOf(const IDeviceImp& device) const {
    Array<Finding> failures;
    tellAll(m_nodes, device, failures);
    return failures;
}

// Whether the device satisfies the node, as `holds` says it. What it fails of it is added, as DeviceOutcomes does.
bool ContentTest::tell(const Node& node, const IDeviceImp& device, Array<Finding>& failures) {
    switch (node.kind) {
        case ElementKind::Property: return tellProperty(node, device, failures);
        case ElementKind::And: return tellAll(node.children, device, failures);
        case ElementKind::Or: return tellAny(node, device, failures);
        case ElementKind::Not: return tellNot(node, device, failures);
        default: return true;
    }
}

bool ContentTest::tellAll(const std::vector<Node>& nodes, const IDeviceImp& device, Array<Finding>& failures) {
    bool all = true;
    for (const Node& node : nodes) {
        all = tell(node, device, failures) && all;
    }
    return all;
}

bool ContentTest::tellAny(const Node& node, const IDeviceImp& device, Array<Finding>& failures) {
    const std::size_t failuresBefore = failures.size();
    for (const Node& child : node.children) {
        if (tell(child, device, failures)) {
            failures.truncate(failuresBefore);
            return true;
        }
    }
    if (node.children.empty()) {
        failures.append(RunFindings::findingOn(*node.element, FindingKind::UnsatisfiedOr));
    }
    return false;
}

bool ContentTest::tellNot(const Node& node, const IDeviceImp& device, Array<Finding>& failures) {
    const std::size_t failuresBefore = failures.size();
    const bool holds = !tellAll(node.children, device, failures);
    failures.truncate(failuresBefore);
    if (!holds) {
        failures.append(RunFindings::findingOn(*node.element, FindingKind::UnsatisfiedNot));
    }
    return holds;
}

bool ContentTest::tellProperty(const Node& node, const IDeviceImp& device, Array<Finding>& failures) {
    const IPropertyImp* const property = device.findProperty(node.property->key());
    if (property != nullptr && meets(*property, *node.property)) {
        return true;
    }
    const bool isThere = property != nullptr;
    const FindingKind kind = isThere ? FindingKind::PropertyMismatch : FindingKind::PropertyMissing;
    Finding& failure = failures.append(RunFindings::findingOn(*node.element, kind));
    failure.key = node.property->key();
    failure.expected = node.property->patterns();
    failure.found = isThere ? property->value().toString(true) : String();
    return false;
}

}  // namespace vrx
