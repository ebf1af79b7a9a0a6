#include "libDiagnosis/waivers/WriteWaivers.h"

#include "libCommon/xml/XmlDocument.h"
#include "libDiagnosis/waivers/WaiverFields.h"

namespace vrx {

String waiversXml(const std::vector<Waiver>& waivers) {
    XmlDocument document;
    XmlElement* const root = document.NewElement(WAIVERS);
    document.LinkEndChild(root);
    for (const Waiver& waiver : waivers) {
        XmlElement* const element = document.NewElement(WAIVER);
        root->LinkEndChild(element);
        if (waiver.kind) {
            element->SetAttribute(WAIVER_KIND, String::UTF8Decode(nameOf(*waiver.kind)));
        }
        for (const WaiverField& field : WAIVER_FIELDS) {
            if (const String& text = waiver.*field.member; !text.isEmpty()) {
                element->SetAttribute(field.attribute, text);
            }
        }
    }
    String text;
    document.GetFormattedStr(text, 0);
    return text;
}

}  // namespace vrx
