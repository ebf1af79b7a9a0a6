#include "libSystemState/results/TestRunEventImp.h"

#include "libCommon/Assertion.h"

namespace vrx {

TestRunEventImp::TestRunEventImp(String source, String name) : m_source(std::move(source)), m_name(std::move(name)) {}

TestRunEventImp::TestRunEventImp(const TestRunEventImp& other)
    : m_source(other.m_source),
      m_name(other.m_name),
      m_type(other.m_type),
      m_detail(other.m_detail),
      m_file(other.m_file),
      m_line(other.m_line),
      m_variables(other.m_variables),
      m_tips(other.m_tips.size()) {
    for (const std::unique_ptr<TipImp>& tip : other.m_tips) {
        m_tips.emplace(tip->clone());
    }
}

TestRunEventImp& TestRunEventImp::operator=(const TestRunEventImp& other) { return *this = TestRunEventImp(other); }

TestRunEventImp::TestRunEventImp(TestRunEventImp&&) noexcept = default;
TestRunEventImp& TestRunEventImp::operator=(TestRunEventImp&&) noexcept = default;
TestRunEventImp::~TestRunEventImp() = default;

void TestRunEventImp::setEventOccurence(const EventTypeImp& type, const String& detail, const String& file, int line) {
    m_type = type;
    m_detail = detail;
    m_file = file;
    m_line = line;
}

TestRunEventImp& TestRunEventImp::setVariable(const String& name, const VRXValue& value) {
    for (Variable& variable : m_variables) {
        if (variable.name == name) {
            variable.value = value;
            return *this;
        }
    }
    m_variables.append(Variable{name, value});
    return *this;
}

void TestRunEventImp::addTip(TipImp* tip) {
    VRX_ASSERT(tip != nullptr);
    m_tips.append(std::unique_ptr<TipImp>(tip));
}

String TestRunEventImp::toString(unsigned, bool) const {
    String text = concat(m_source, u": ", m_name);
    for (const Variable& variable : m_variables) {
        text.append(u", ").append(variable.name).append(u" = ").append(variable.value.toString());
    }
    return text;
}

}  // namespace vrx
