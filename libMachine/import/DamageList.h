#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "libCommon/containers/Array.h"
#include "libCommon/text/String.h"

namespace vrx {

/// What was wrong with a recording by kind, so that a thousand bad bytes give one line and not a thousand.
class DamageList {
public:
    /// Counts one damage more. `kind` is the sentence for one or many of them ("bytes that are no UTF-8, replaced");
    /// `place` says where the first of the kind stands ("line 12", a locator) and may be empty.
    void add(std::string_view kind, std::string_view place = {}, std::size_t count = 1);

    bool isEmpty() const noexcept { return m_kinds.empty(); }

    /// One line for each kind, in the order in which they were first seen: "KIND: COUNT (first: PLACE)".
    Array<String> lines() const;

private:
    struct Kind {
        std::string sentence;
        std::string firstPlace;
        std::size_t count = 0;
    };

    std::vector<Kind> m_kinds;
};

}  // namespace vrx
