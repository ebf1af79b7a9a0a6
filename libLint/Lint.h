#pragma once

#include <string_view>

#include "libCommon/xml/XmlDocument.h"
#include "libLint/LintFindings.h"

namespace vrx {

/// A file that was looked through without a machine.
class Lint {
public:
    enum class Result {
        Done,
        NotXml,   ///< it does not parse; `document` says where and why
        Neither,  ///< its root is neither a script nor a parts list
    };

    /// Looks through the bytes of a script (its root is `inventory-check`) or of a parts list (any other root with a
    /// `part` below it).
    Result run(std::string_view bytes);

    /// In document order.
    const LintFindings& findings() const noexcept { return m_findings; }
    const XmlDocument& document() const noexcept { return m_document; }

private:
    bool parseScript(std::string_view bytes);
    Result judgePartsList(std::string_view bytes);

    XmlDocument m_document;
    LintFindings m_findings;
};

}  // namespace vrx
