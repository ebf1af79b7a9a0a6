#pragma once

#include <span>

#include "libInventory/script/ScriptVocabulary.h"

namespace vrx {

/// The attributes that an element of the kind has a use for.
std::span<const StringView> attributesOf(vocabulary::ElementKind kind) noexcept;

}  // namespace vrx
