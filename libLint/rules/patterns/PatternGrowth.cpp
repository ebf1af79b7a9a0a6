/// Decides from the text of a pattern whether a repetition nests in another one.
///
/// The pattern is read item by item with a stack of open groups. Of each branch of a group it is kept whether it holds
/// an item that is repeated without bound, and whether it holds an item that every round must match once (`,` in
/// `(\d+,)+`), which tells where a round ends. A group that is itself repeated without bound is dangerous when some
/// branch has the first and not the second. A repeated point swallows such marks too, so it is dangerous in any case.
///
/// Possessive repetitions (`a++`) and atomic groups (`(?>a+)`) never give anything back and are harmless inside; groups
/// that take no text (lookarounds, comments) are left out of the account.

#include "libLint/rules/patterns/PatternGrowth.h"

#include <algorithm>
#include <vector>

namespace vrx {

namespace {

/// More repetitions than this are as bad as any number.
constexpr std::size_t MANY = 32;

struct Repetition {
    bool isOptional = false;   ///< may match nothing
    bool isUnbounded = false;  ///< and gives back what it took
};

struct Group {
    bool isAtomic = false;
    bool takesText = true;
    bool branchRepeats = false;
    bool branchHasMark = false;
    bool swallows = false;  ///< holds a repeated point
    bool isRisky = false;   ///< some branch repeats and has no mark
    bool everyBranchHasMark = true;

    void endBranch() noexcept {
        isRisky = isRisky || (branchRepeats && !branchHasMark);
        everyBranchHasMark = everyBranchHasMark && branchHasMark;
        branchRepeats = branchHasMark = false;
    }
};

class GrowthScan {
public:
    explicit GrowthScan(StringView pattern) : m_pattern(pattern), m_open(1) {}

    bool run() {
        while (!m_found && m_at < m_pattern.size()) {
            takeItem();
        }
        return m_found;
    }

private:
    void takeItem() {
        switch (m_pattern[m_at]) {
            case u'(': openGroup(); return;
            case u')': closeGroup(); return;
            case u'|':
                m_open.back().endBranch();
                ++m_at;
                return;
            case u'^':
            case u'$': ++m_at; return;
            case u'[': skipClass(); return addCharacter(false);
            case u'\\': return takeEscape();
            case u'.': ++m_at; return addCharacter(true);
            default: ++m_at; return addCharacter(false);
        }
    }

    void takeEscape() {
        if (m_pattern.substr(m_at, 2) == u"\\Q") {
            const std::size_t end = m_pattern.find(u"\\E", m_at);
            m_at = end == StringView::npos ? m_pattern.size() : end + 2;
        } else {
            m_at = std::min(m_at + 2, m_pattern.size());
        }
        addCharacter(false);
    }

    void addCharacter(bool isPoint) {
        const Repetition repetition = takeRepetition();
        Group& group = m_open.back();
        group.branchRepeats = group.branchRepeats || repetition.isUnbounded;
        group.swallows = group.swallows || (isPoint && repetition.isUnbounded);
        group.branchHasMark = group.branchHasMark || (!repetition.isUnbounded && !repetition.isOptional);
    }

    void openGroup() {
        const StringView rest = m_pattern.substr(m_at);
        Group group;
        group.isAtomic = rest.starts_with(u"(?>");
        for (const StringView silent : {u"(?=", u"(?!", u"(?<=", u"(?<!", u"(?#", u"(*"}) {
            group.takesText = group.takesText && !rest.starts_with(silent);
        }
        m_at += rest.starts_with(u"(?") ? headSize(rest) : 1;
        m_open.push_back(group);
    }

    /// Of "(?:", "(?i-s:", "(?<name>" and the like.
    static std::size_t headSize(StringView rest) noexcept {
        const std::size_t end = rest.find_first_of(u":>=!)", 2);
        return end == StringView::npos || rest[end] == u')' ? 2 : end + 1;
    }

    void closeGroup() {
        ++m_at;
        if (m_open.size() == 1) {
            return;
        }
        Group group = m_open.back();
        m_open.pop_back();
        group.endBranch();
        const Repetition repetition = takeRepetition();
        if (!group.takesText) {
            return;
        }
        const bool isRisky = !group.isAtomic && (group.isRisky || group.swallows);
        m_found = isRisky && repetition.isUnbounded;
        Group& parent = m_open.back();
        parent.branchRepeats = parent.branchRepeats || repetition.isUnbounded || (!group.isAtomic && group.isRisky);
        parent.swallows = parent.swallows || (!group.isAtomic && group.swallows);
        parent.branchHasMark = parent.branchHasMark || (!repetition.isUnbounded && !repetition.isOptional &&
                                                        (group.isAtomic || group.everyBranchHasMark));
    }

    void skipClass() noexcept {
        ++m_at;
        m_at += m_at < m_pattern.size() && m_pattern[m_at] == u'^' ? 1 : 0;
        for (bool isFirst = true; m_at < m_pattern.size(); isFirst = false) {
            const char16_t unit = m_pattern[m_at];
            if (unit == u']' && !isFirst) {
                break;
            }
            m_at += unit == u'\\' ? 2 : 1;
        }
        m_at = std::min(m_at + 1, m_pattern.size());
    }

    char16_t next() const noexcept { return m_at < m_pattern.size() ? m_pattern[m_at] : u'\0'; }

    /// The quantifier at this place, if any, and the `+` or `?` behind it.
    Repetition takeRepetition() noexcept {
        Repetition repetition;
        switch (next()) {
            case u'*': repetition = {true, true}; break;
            case u'+': repetition = {false, true}; break;
            case u'?': repetition = {true, false}; break;
            case u'{':
                if (!takeCounts(repetition)) {
                    return {};
                }
                break;
            default: return {};
        }
        ++m_at;
        if (next() == u'+') {
            repetition.isUnbounded = false;
            ++m_at;
        } else if (next() == u'?') {
            ++m_at;
        }
        return repetition;
    }

    /// Moves to the closing brace of "{2}", "{2,}" or "{2,4}"; false, moving nowhere, for anything else.
    bool takeCounts(Repetition& repetition) noexcept {
        std::size_t at = m_at + 1;
        const std::size_t begin = at;
        const std::size_t least = takeNumber(at);
        std::size_t most = least;
        if (at > begin && at < m_pattern.size() && m_pattern[at] == u',') {
            const std::size_t beginMost = ++at;
            most = takeNumber(at);
            most = at == beginMost ? MANY + 1 : most;
        }
        if (at == begin || at >= m_pattern.size() || m_pattern[at] != u'}') {
            return false;
        }
        repetition = {least == 0, most > MANY && most != least};
        m_at = at;
        return true;
    }

    std::size_t takeNumber(std::size_t& at) const noexcept {
        std::size_t number = 0;
        for (; at < m_pattern.size() && m_pattern[at] >= u'0' && m_pattern[at] <= u'9'; ++at) {
            number = std::min<std::size_t>(number * 10 + (m_pattern[at] - u'0'), 1'000'000);
        }
        return number;
    }

    StringView m_pattern;
    std::size_t m_at = 0;
    std::vector<Group> m_open;
    bool m_found = false;
};

}  // namespace

bool canExplode(StringView pattern) { return GrowthScan(pattern).run(); }

}  // namespace vrx
