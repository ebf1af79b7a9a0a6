#pragma once

#include <memory>
#include <utility>

#include "libCommon/Export.h"
#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"
#include "libCommon/values/VRXValue.h"
#include "libSystemState/results/TipImp.h"

namespace vrx {

/// What kind of event it is: 1 a failed test, 2 a notice about the script.
class EventTypeImp {
public:
    constexpr explicit EventTypeImp(int code = 0) noexcept : m_code(code) {}
    constexpr int code() const noexcept { return m_code; }

private:
    int m_code;
};

/// An event that a run raises to its observers. It lives for the duration of the call; an observer that wants to keep
/// it copies it (copies own copies of the tips).
///
///     void handleEvent(const TestRunEventImp& event) override {
///         if (event.name() == u"InventoryTestFailed") {
///             annotatedScript = event.tips()[0]->toString(0, false);
///         }
///     }
class VRX_EXPORT TestRunEventImp {
public:
    struct Variable {
        String name;
        VRXValue value;
    };

    TestRunEventImp(String source, String name);
    TestRunEventImp(const TestRunEventImp& other);
    TestRunEventImp(TestRunEventImp&&) noexcept;
    TestRunEventImp& operator=(const TestRunEventImp& other);
    TestRunEventImp& operator=(TestRunEventImp&&) noexcept;
    ~TestRunEventImp();

    /// Where and why it happened: the type, a detail text, source file and line of the program.
    void setEventOccurence(const EventTypeImp& type, const String& detail, const String& file, int line);

    /// Sets or replaces a variable; returns the event for chaining.
    TestRunEventImp& setVariable(const String& name, const VRXValue& value);

    /// Takes ownership of the tip.
    void addTip(TipImp* tip);

    const String& source() const noexcept { return m_source; }
    const String& name() const noexcept { return m_name; }
    const EventTypeImp& type() const noexcept { return m_type; }
    const String& detail() const noexcept { return m_detail; }

    /// The place in the program that raised the event; empty and 0 before `setEventOccurence`.
    const String& file() const noexcept { return m_file; }
    int line() const noexcept { return m_line; }

    const Array<Variable>& variables() const noexcept { return m_variables; }
    const Array<std::unique_ptr<TipImp>>& tips() const noexcept { return m_tips; }

    /// "source: name", then each variable as ", name = value". Both arguments change nothing.
    String toString(unsigned indent = 0, bool verbose = false) const;

private:
    String m_source;
    String m_name;
    EventTypeImp m_type;
    String m_detail;
    String m_file;
    int m_line = 0;
    Array<Variable> m_variables;
    Array<std::unique_ptr<TipImp>> m_tips;
};

}  // namespace vrx
