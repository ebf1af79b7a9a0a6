/// One pass that knows strings from what is between them. Behind a value (a string, `}` or `]`) the start of another
/// one needs a comma or a colon between the two. A text that is cut off stays open, so that the parser finds it so.

#include "libMachine/import/mending/JsonMending.h"

#include <algorithm>

namespace vrx {

namespace {

class JsonMender {
public:
    JsonMender(std::string_view text, DamageList& damage) : m_text(text), m_damage(damage) {}

    std::string mend() {
        m_out.reserve(m_text.size() + m_text.size() / 16);
        m_out += '[';
        for (m_at = std::min(m_text.find_first_of("{["), m_text.size()); m_at < m_text.size(); ++m_at) {
            take(m_text[m_at]);
        }
        if (m_depth == 0) {
            m_out += ']';
        } else {
            dropCutOffWord();
        }
        return std::move(m_out);
    }

private:
    void take(char unit) {
        switch (unit) {
            case '\n': ++m_line; [[fallthrough]];
            case ' ':
            case '\t':
            case '\r': m_out += unit; return;
            case ',':
                // At the top level a comma is as good as none.
                if (m_depth > 0 || m_isBehindValue) {
                    m_out += unit;
                }
                m_isBehindValue = false;
                return;
            case ':':
                m_out += unit;
                m_isBehindValue = false;
                return;
            case '{':
            case '[':
                startValue();
                ++m_depth;
                m_out += unit;
                return;
            case '}':
            case ']':
                m_depth -= m_depth > 0 ? 1U : 0U;
                m_out += unit;
                m_isBehindValue = true;
                return;
            case '"':
                startValue();
                takeString();
                m_isBehindValue = true;
                return;
            default: m_out += unit; return;  // of a number, true, false or null
        }
    }

    void startValue() {
        if (m_isBehindValue) {
            if (m_depth > 0) {
                m_damage.add(DamageKind::JsonNoComma, m_line);
            }
            m_out += ',';
        }
        m_isBehindValue = false;
    }

    void takeString() {
        const std::size_t start = m_at++;
        while (m_at < m_text.size() && m_text[m_at] != '"') {
            m_at += m_text[m_at] == '\\' ? 2U : 1U;
        }
        const std::string_view whole = m_text.substr(start, m_at - start + 1);
        const std::size_t before = m_out.size();
        m_out.append(whole);
        const auto isBlank = [](char unit) {
            return unit == '\n' || unit == '\t' || unit == '\r';
        };
        if (std::ranges::any_of(whole, isBlank)) {
            m_line += static_cast<std::size_t>(std::ranges::count(whole, '\n'));
            std::replace_if(m_out.begin() + static_cast<std::ptrdiff_t>(before), m_out.end(), isBlank, ' ');
        }
    }

    /// Half a number would be taken for a whole one.
    void dropCutOffWord() { m_out.resize(m_out.find_last_of("{}[],:\" \t\r\n") + 1); }

    std::string_view m_text;
    DamageList& m_damage;
    std::string m_out;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
    std::size_t m_depth = 0;
    bool m_isBehindValue = false;
};

}  // namespace

std::string mendedJson(std::string_view text, DamageList& damage) { return JsonMender(text, damage).mend(); }

}  // namespace vrx
