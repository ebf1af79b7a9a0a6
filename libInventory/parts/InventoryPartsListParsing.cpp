/// Reading a parts list.
///
/// The parts are the first `part` child of the root, whatever its own name, and every sibling element after it,
/// whatever that one's name. A part needs a device description: a direct child `device`, `and`, `or` or `not`. Parts
/// without one are blank; they are named in the error text and left out, the others are read all the same.

#include "libCommon/text/NumberText.h"
#include "libInventory/Inventory.h"
#include "libInventory/script/PartsList.h"
#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

namespace {

/// Where the parser stopped, "row,column" counted from 1, and why.
String placedError(const XmlDocument& document) {
    return concat(toText(std::uint64_t{document.ErrorRow()} + 1), u",",
                  toText(std::uint64_t{document.ErrorColumn()} + 1), u"): ", document.ErrorDesc());
}

String blankPartsError(const Array<String>& names) {
    String list;
    const char16_t* separator = u"";
    for (const String& name : names) {
        list.append(separator).append(name);
        separator = u", ";
    }
    return concat(u"Blank parts: ", list,
                  u" found.  Blank parts are not allowed for part generation.  Please correct these parts at the "
                  u"Kestrel server Monitoring Console.");
}

Inventory::ParsePartsResult readParts(XmlDocument& document, Array<Inventory::PartSpec>& parts, String& error,
                                      Array<String>* blankParts = nullptr) {
    const XmlElement* const root = document.Error() ? nullptr : document.RootElement();
    if (!root) {
        return Inventory::PartsNoRoot;
    }
    Array<String> blankNames;
    for (const XmlElement* part = firstPart(*root); part; part = part->NextSiblingElement()) {
        const StringView name = part->Attribute(vocabulary::NAME);
        if (describesDevices(*part)) {
            parts.emplace(name, part->Attribute(vocabulary::ID), part->Attribute(vocabulary::DESCRIPTION),
                          String::EMPTY, part->toString());
        } else {
            blankNames.append(String(name));
        }
    }
    if (blankNames.isEmpty()) {
        return Inventory::PartsParsed;
    }
    error = blankPartsError(blankNames);
    if (blankParts != nullptr) {
        for (String& name : blankNames) {
            blankParts->append(std::move(name));
        }
    }
    return Inventory::PartsBlank;
}

Inventory::ParsePartsResult fileFailure(const String& name, const XmlDocument& document, String& error) {
    error = concat(u"Failed to Parse xml file ", name, u" (", placedError(document));
    return Inventory::PartsXmlError;
}

}  // namespace

Inventory::ParsePartsResult Inventory::parsePartsList(const String& xml, Array<PartSpec>& parts, String& error) {
    const StringView text = trimmed(xml);
    if (text.empty()) {
        return PartsEmptyInput;
    }
    XmlDocument document;
    if (!document.Parse(text)) {
        error = concat(u"Failed to Parse xml (", placedError(document));
        return PartsXmlError;
    }
    return readParts(document, parts, error);
}

Inventory::ParsePartsResult Inventory::parsePartsListFile(const String& path, Array<PartSpec>& parts, String& error) {
    XmlDocument document;
    return document.LoadFile(path) ? readParts(document, parts, error) : fileFailure(path, document, error);
}

Inventory::ParsePartsResult Inventory::parsePartsListBytes(std::string_view bytes, const String& name,
                                                           Array<PartSpec>& parts, String& error,
                                                           Array<String>* blankParts) {
    XmlDocument document;
    return document.ParseUtf8(bytes) ? readParts(document, parts, error, blankParts)
                                     : fileFailure(name, document, error);
}

}  // namespace vrx
