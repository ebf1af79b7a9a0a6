#pragma once

#include <string_view>

#include "libCommon/text/String.h"
#include "libCommon/xml/XmlDocument.h"
#include "libLint/LintFindings.h"
#include "libSystemState/StateManager.h"

/// Finds mistakes in inventory scripts and parts lists: names that nothing knows, patterns that do not compile, groups
/// that cannot be met; with a machine also what that machine could never meet. docs/lint-rules.md lists the rules.
///
///     Lint lint;
///     if (lint.runText(script) == Lint::Result::Done) {
///         for (const LintFinding& finding : lint.findings().list()) {
///             std::cout << finding.row + 1 << ": " << finding.message() << " [" << finding.rule << "]\n";
///         }
///     }
///
/// A script is what has the root `inventory-check`, a parts list anything else with a `part` in its root. Any number of
/// objects may be used at the same time, each by one thread.
namespace vrx {

class Lint {
public:
    enum class Extent {
        Everything,
        Mistakes,  ///< errors alone: what a script is refused for. Takes a fraction of the time
    };

    enum class Result {
        Done,
        NotReadable,  ///< the file cannot be read
        NotXml,       ///< it does not parse; `document` says where and why
        Neither,      ///< its root is neither that of a script nor that of a parts list, or it has none
    };

    explicit Lint(Extent extent = Extent::Everything) noexcept : m_extent(extent) {}

    /// Compares what is looked through from now on with that machine. It is not changed. Requires: it outlives the
    /// object.
    void setMachine(StateManager& machine) noexcept { m_machine = &machine; }

    /// How many threads look for mistakes at once, initially one; what is found never depends on it. Other extents take
    /// one. Requires: at least 1.
    void setThreads(unsigned threads) noexcept { m_threads = threads; }

    /// Looks through the bytes of a file, read as a check reads a script, or strictly when they are a parts list.
    /// Forgets what was found before, as all of these do.
    Result run(std::string_view bytes);

    /// Looks through a text that is held in memory.
    Result runText(const String& text);

    /// Looks through a file. When it cannot be read, `reason` says why.
    Result runFile(const String& path, String& reason);

    /// Looks through a document that has been parsed elsewhere. Requires: it outlives the findings.
    Result runDocument(const XmlDocument& document);

    /// In document order. Elements that they name belong to `document`, or to the one that was given.
    const LintFindings& findings() const noexcept { return m_findings; }

    /// What was parsed from bytes, a text or a file; valid until the next run.
    const XmlDocument& document() const noexcept { return m_document; }

private:
    void parse(const String& text);
    Result judge(const XmlDocument& document, const Utf8Damage* damage);

    Extent m_extent;
    StateManager* m_machine = nullptr;
    unsigned m_threads = 1;
    XmlDocument m_document;
    LintFindings m_findings;
};

}  // namespace vrx
