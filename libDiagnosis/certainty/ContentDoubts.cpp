#include "libDiagnosis/certainty/ContentDoubts.h"

#include <functional>
#include <unordered_set>

#include "libCommon/text/UuCode.h"
#include "libInventory/script/ScriptElement.h"
#include "libInventory/script/ScriptWalk.h"
#include "libInventory/script/XmlChildren.h"
#include "libSystemState/devices/IDeviceImp.h"

namespace vrx {

namespace {

using vocabulary::ElementKind;

/// What a device failed, looked at once more: an element that failed may hold if it hangs on what is not known.
class Retrial {
public:
    Retrial(const Candidate& candidate, const std::function<bool(const XmlElement&)>& hangsOnUnknown)
        : m_hangsOnUnknown(hangsOnUnknown) {
        for (const Finding& failure : candidate.failures) {
            m_failed.insert(failure.element);
        }
    }

    bool mayHold(const XmlElement& element) const {
        switch (vocabulary::kindOf(element)) {
            case ElementKind::Property:
            case ElementKind::Not: return !m_failed.contains(&element) || m_hangsOnUnknown(element);
            case ElementKind::And:
            case ElementKind::Device: return mayHoldAll(element);
            case ElementKind::Or: return mayHoldAny(element);
            default: return true;
        }
    }

private:
    bool mayHoldAll(const XmlElement& element) const {
        bool all = true;
        for (const XmlElement* const child : childElements(element)) {
            all = all && mayHold(*child);
        }
        return all;
    }

    bool mayHoldAny(const XmlElement& element) const {
        bool any = false;
        for (const XmlElement* const child : childElements(element)) {
            any = any || (vocabulary::kindOf(*child) != ElementKind::Error && mayHold(*child));
        }
        return any;
    }

    const std::function<bool(const XmlElement&)>& m_hangsOnUnknown;
    std::unordered_set<const XmlElement*> m_failed;
};

}  // namespace

bool ContentDoubts::mayMeet(const XmlElement& element, const Candidate& candidate, const IDeviceImp& device,
                            List& found) const {
    if (!m_unknowns.hasProperties()) {
        return candidate.failures.isEmpty();
    }
    List mine;
    const std::function<bool(const XmlElement&)> hangs = [&](const XmlElement& failed) {
        return looksForUnknown(failed, device, Seen::Wanting, mine);
    };
    if (!Retrial(candidate, hangs).mayHold(element)) {
        return false;
    }
    found.insert(found.end(), mine.begin(), mine.end());
    return true;
}

bool ContentDoubts::hangsOnUnknown(const XmlElement& element, const IDeviceImp& device, List& found) const {
    return m_unknowns.hasProperties() && looksForUnknown(element, device, Seen::Having, found);
}

/// A property that a device does not have has helped nothing, save in a `not`.
bool ContentDoubts::looksForUnknown(const XmlElement& element, const IDeviceImp& device, Seen seen, List& found) const {
    for (ScriptWalk walk(element); walk; ++walk) {
        if (walk->kind != ElementKind::Property) {
            continue;
        }
        const String key = fromXmlSafe(attributeOf(*walk->element, vocabulary::KEY));
        if (seen == Seen::Having && walk->nots == 0 && device.findProperty(key) == nullptr) {
            continue;
        }
        if (std::optional<Doubt> doubt = m_unknowns.property(device, key)) {
            doubt->key = key;
            found.push_back({walk->element, std::move(*doubt)});
            return true;
        }
    }
    return false;
}

}  // namespace vrx
