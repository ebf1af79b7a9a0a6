/// A file of waivers is a list. Each says what it covers, why, who decided so, and until when:
///
///     <waivers>
///         <waiver id="W1" kind="wrong" type="MemoryModule" hwlocator="dimm:B3" property="Speed"
///                 reason="slower modules until the delivery of March" decided-by="J. Doe" expires="2027-03-31"/>
///     </waivers>
///
/// One that covers everything, or that nobody answers for, is a mistake, and so is whatever nothing reads: a waiver
/// that is misspelt would cover more than was meant.

#include <algorithm>
#include <iterator>
#include <utility>

#include "libCommon/text/NearestName.h"
#include "libCommon/text/PrintableText.h"
#include "libDiagnosis/FaultKindNames.h"
#include "libDiagnosis/waivers/Waiver.h"
#include "libDiagnosis/waivers/WaiverFields.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/capabilities/CapabilityImp.h"

namespace vrx {

namespace {

constexpr std::int64_t SECONDS_OF_A_DAY = 24 * 60 * 60;

std::vector<StringView> attributeNames() {
    std::vector<StringView> names{WAIVER_KIND};
    for (const WaiverField& field : WAIVER_FIELDS) {
        names.push_back(field.attribute);
    }
    return names;
}

std::string kindNames() {
    std::string names;
    for (const FaultKind kind : allFaultKinds()) {
        names += (names.empty() ? "" : ", ") + std::string(nameOf(kind));
    }
    return names;
}

class Reading {
public:
    Reading(const XmlElement& element, std::vector<WaiverMistake>& mistakes)
        : m_element(element), m_mistakes(mistakes) {}

    Waiver waiver() {
        m_waiver.place = placeIn(m_element);
        for (const XmlAttribute& attribute : m_element.Attributes()) {
            readAttribute(attribute);
        }
        for (const WaiverField& field : WAIVER_FIELDS) {
            if (field.isRequired && (m_waiver.*field.member).isEmpty()) {
                mistake("a waiver says " + toUtf8(field.attribute) + "; add " + toUtf8(field.attribute) + "=\"...\"");
            }
        }
        readDate();
        checkExtent();
        return std::move(m_waiver);
    }

private:
    void mistake(const std::string& text) { m_mistakes.push_back({m_waiver.place, text}); }

    void readAttribute(const XmlAttribute& attribute) {
        const auto field = std::ranges::find(WAIVER_FIELDS, attribute.Name(), &WaiverField::attribute);
        if (field != std::end(WAIVER_FIELDS)) {
            m_waiver.*field->member = trimmed(attribute.Value());
        } else if (attribute.Name() == WAIVER_KIND) {
            readKind(attribute.Value());
        } else {
            mistake("nothing reads the attribute \"" + printable(attribute.Name()) + "\" of <waiver>" +
                    suggestion(attribute.Name(), attributeNames()));
        }
    }

    void readKind(StringView text) {
        m_waiver.kind = faultKindNamed(toUtf8(text));
        if (!m_waiver.kind) {
            mistake("there is no fault kind \"" + printable(text) + "\"; write one of " + kindNames());
        }
    }

    void readDate() {
        constexpr std::size_t LENGTH_OF_A_DATE = 10;
        const std::optional<DateTime> day =
            m_waiver.expires.size() == LENGTH_OF_A_DATE ? DateTime::fromIso8601(m_waiver.expires) : std::nullopt;
        if (day) {
            m_waiver.end = DateTime(day->secondsSinceEpoch() + SECONDS_OF_A_DAY);
        } else if (!m_waiver.expires.isEmpty()) {
            mistake("expires=\"" + printable(m_waiver.expires) + "\" is no date; write one as 2027-03-31");
        }
    }

    void checkExtent() {
        if (!m_waiver.type.isEmpty() && CapabilityImp(m_waiver.type).isInvalid()) {
            mistake("there is no device type \"" + printable(m_waiver.type) + "\"");
        }
        const bool isBound = !m_waiver.type.isEmpty() || !m_waiver.hwLocator.isEmpty() ||
                             !m_waiver.osLocator.isEmpty() || !m_waiver.serialNumber.isEmpty();
        if (!isBound) {
            mistake("this waiver covers every device; name a type, a locator or a serial number");
        }
    }

    const XmlElement& m_element;
    std::vector<WaiverMistake>& m_mistakes;
    Waiver m_waiver;
};

}  // namespace

std::vector<Waiver> readWaivers(const XmlElement& root, std::vector<WaiverMistake>& mistakes) {
    std::vector<Waiver> waivers;
    if (root.Name() != WAIVERS) {
        mistakes.push_back({placeIn(root), "the root is <" + printable(root.Name()) + ">; expected <waivers>"});
        return waivers;
    }
    for (const XmlElement* const child : childElements(root)) {
        if (child->Name() == WAIVER) {
            waivers.push_back(Reading(*child, mistakes).waiver());
        } else {
            mistakes.push_back({placeIn(*child), "<" + printable(child->Name()) + "> is no waiver; write <waiver>"});
        }
    }
    return waivers;
}

}  // namespace vrx
