#pragma once

#include <boost/unordered/unordered_flat_set.hpp>

#include "libCommon/containers/Array.h"
#include "libCommon/containers/HashFunctions.h"
#include "libCommon/text/String.h"

namespace vrx {

/// Texts in the order in which they were first added, each once.
class UniqueTexts {
public:
    void append(const String& text) {
        if (m_known.insert(text).second) {
            m_texts.append(text);
        }
    }
    const Array<String>& texts() const noexcept { return m_texts; }

private:
    Array<String> m_texts;
    boost::unordered_flat_set<String, HashFunc<String>> m_known;
};

}  // namespace vrx
