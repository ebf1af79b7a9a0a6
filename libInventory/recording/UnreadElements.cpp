#include "libInventory/recording/UnreadElements.h"

#include <utility>

#include "libCommon/xml/XmlDocument.h"
#include "libInventory/recording/SysInfoVocabulary.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/StateManager.h"
#include "libSystemState/UnreadSource.h"

namespace vrx {

namespace {

UnreadSource unreadOf(const XmlElement& element) {
    UnreadSource unread{element.Attribute(sysInfo::SOURCE), CapabilityImp(), element.Attribute(sysInfo::REASON),
                        Array<String>()};
    bool isEveryTypeKnown = true;
    for (const XmlElement* const child : childElements(element)) {
        if (child->Name() == sysInfo::TYPE_ITEM) {
            const CapabilityImp type(child->NormalizedText());
            isEveryTypeKnown = isEveryTypeKnown && !type.isInvalid();
            unread.types = unread.types | type;
        } else if (child->Name() == sysInfo::KEY_ITEM) {
            unread.properties.append(child->GetText());
        }
    }
    if (!isEveryTypeKnown || unread.types.isEmpty()) {
        unread.types = CapabilityImp::ALL();
    }
    return unread;
}

void readList(const XmlElement& list, StateManager& store) {
    for (const XmlElement* const child : childElements(list)) {
        if (child->Name() == sysInfo::UNREAD_SOURCE) {
            store.addUnread(unreadOf(*child));
        }
    }
}

void addTexts(XmlDocument& document, XmlElement& parent, StringView name, const Array<String>& texts) {
    for (const String& text : texts) {
        XmlElement* const child = document.NewElement(name);
        child->LinkEndChild(document.NewText(text));
        parent.LinkEndChild(child);
    }
}

}  // namespace

void readUnread(const XmlElement& root, StateManager& store) {
    readList(root, store);
    for (const XmlElement* const child : childElements(root)) {
        if (child->Name() == sysInfo::SYS_INFO) {
            readList(*child, store);
        }
    }
}

void writeUnread(const StateManager& store, XmlDocument& document, XmlElement& list) {
    for (const UnreadSource& unread : store.unread()) {
        XmlElement* const element = document.NewElement(sysInfo::UNREAD_SOURCE);
        element->SetAttribute(sysInfo::SOURCE, unread.source);
        element->SetAttribute(sysInfo::REASON, unread.reason);
        if (!unread.types.isAll()) {
            addTexts(document, *element, sysInfo::TYPE_ITEM, unread.types.names());
        }
        addTexts(document, *element, sysInfo::KEY_ITEM, unread.properties);
        list.LinkEndChild(element);
    }
}

}  // namespace vrx
