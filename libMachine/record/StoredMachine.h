#pragma once

#include <unordered_set>

#include "libCommon/text/TextHash.h"
#include "libMachine/record/Recording.h"
#include "libSystemState/Forward.h"

namespace vrx {

/// The devices of a store as a recording, so that it can be changed and stored again. Values are shared with the store.
class StoredMachine {
public:
    explicit StoredMachine(const StateManager& store);

    /// Borrows from this object.
    Recording& recording() noexcept { return m_recording; }

private:
    StringView kept(const String& text) { return *m_texts.insert(text).first; }

    Recording m_recording;
    std::unordered_set<String, TextHash> m_texts;  // what records only borrow: types, capabilities, keys
};

}  // namespace vrx
