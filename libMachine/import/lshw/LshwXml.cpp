/// An element `node` is a node, wherever it stands: alone, in a `list`, or in another node. Its attributes and the
/// children with text are its fields; settings and capabilities are one level deeper. Resources and hints say nothing
/// of the hardware.

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/script/XmlChildren.h"
#include "libMachine/import/Converters.h"
#include "libMachine/import/lshw/LshwTree.h"
#include "libMachine/import/mending/XmlMending.h"

namespace vrx {

namespace {

/// Whether a text starts with an element as lshw writes them.
bool isNode(std::string_view text) {
    return elementName(text) == "node" && text.substr(0, text.find('>')).find("class=") != std::string_view::npos;
}

class NodeReader {
public:
    explicit NodeReader(LshwTree& tree) : m_tree(tree) {}

    /// The nodes in an element that is a list or a node.
    void readNodesIn(const XmlContainer& outer, std::size_t parent) {
        for (const XmlElement* const child : childElements(outer)) {
            if (child->Name() == u"node") {
                readNode(*child, parent);
            } else if (child->Name() == u"list") {
                readNodesIn(*child, parent);
            } else if (isCutOff(*child)) {
                m_tree.cutOff(parent);
            }
        }
    }

private:
    void readNode(const XmlElement& element, std::size_t parent) {
        const std::size_t place = m_tree.add(parent);
        readFields(element, m_tree.nodes[place]);
        readNodesIn(element, place);
    }

    /// Whether the recording ends there, or deeper inside a field.
    static bool isCutOff(const XmlElement& element) {
        const XmlElement* last = &element;
        while (last != nullptr && last->Name() != CUT_OFF_ELEMENT) {
            last = lastElementOf(*last);
        }
        return last != nullptr;
    }

    static const XmlElement* lastElementOf(const XmlElement& element) {
        const XmlElement* last = element.FirstChildElement();
        while (last != nullptr && last->NextSiblingElement() != nullptr) {
            last = last->NextSiblingElement();
        }
        return last;
    }

    static void readFields(const XmlElement& element, LshwNode& node) {
        for (const XmlAttribute& attribute : element.Attributes()) {
            node.set(toUtf8(attribute.Name()), toUtf8(attribute.Value()));
        }
        for (const XmlElement* const child : childElements(element)) {
            if (child->Name() == u"configuration") {
                readSettings(*child, node);
            } else if (child->Name() == u"capabilities") {
                readCapabilities(*child, node);
            } else if (child->Name() != u"node") {
                node.set(toUtf8(child->Name()), child->NormalizedText().toUtf8());
            }
        }
    }

    static void readSettings(const XmlElement& list, LshwNode& node) {
        for (const XmlElement* item = list.FirstChildElement(); item != nullptr; item = item->NextSiblingElement()) {
            node.settings.emplace_back(toUtf8(item->Attribute(u"id")), toUtf8(item->Attribute(u"value")));
        }
    }

    static void readCapabilities(const XmlElement& list, LshwNode& node) {
        for (const XmlElement* item = list.FirstChildElement(); item != nullptr; item = item->NextSiblingElement()) {
            node.capabilities.push_back(toUtf8(item->Attribute(u"id")));
        }
    }

    LshwTree& m_tree;
};

}  // namespace

bool isLshwXml(const RecordingStart& start) {
    return isNode(start.root()) || (elementName(start.root()) == "list" && isNode(start.firstInRoot()));
}

void readLshwXml(std::string_view text, LshwTree& tree, DamageList& damage) {
    XmlDocument document;
    if (parseMended(text, document, damage)) {
        NodeReader(tree).readNodesIn(document.Top(), LshwNode::NONE);
    }
}

}  // namespace vrx
