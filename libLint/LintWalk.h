#pragma once

#include <cstdint>

#include "libLint/LintFindings.h"
#include "libLint/LintVocabulary.h"
#include "libLint/rules/RepeatedDevices.h"

namespace vrx {

/// Walks the elements between devices, as a check does, and hands each of them to its rules.
class LintWalk {
public:
    explicit LintWalk(LintFindings& findings) : m_findings(findings) {}

    /// The whole of a script.
    void walkScript(const XmlElement& root);

    /// The content of one part of a parts list.
    void walkPart(const XmlElement& part);

private:
    /// Which elements the walk is inside of.
    struct Place {
        bool isUnderNot = false;
        bool isInsidePart = false;
        bool isAlternative = false;
    };

    void walkChildren(const XmlElement& element, const Place& place);
    void walk(const XmlElement& element, const Place& place);
    void walkGroup(const XmlElement& group, LintKind kind, Place place);
    void walkDevice(const XmlElement& device, const Place& place);
    void walkExtraDeviceRule(const XmlElement& rule, const Place& place);
    void checkOr(const XmlElement& element, const Place& place);
    void checkEmpty(const XmlElement& group, LintKind kind);
    void reportCombinations(const XmlElement& root);

    LintFindings& m_findings;
    RepeatedDevices m_repeated;
    std::uint64_t m_combinations = 1;  ///< as many as 64 bits hold, when there are more
};

}  // namespace vrx
