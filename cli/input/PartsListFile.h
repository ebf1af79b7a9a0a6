#pragma once

#include <string>

#include "libInventory/Inventory.h"

namespace vrx::cli {

/// What parts generation starts from, read from files that are fit for it.
///
/// Both throw a CommandFailure (bad input) that says which file, where and why.

/// The parts of a list. Refuses lists without parts, with blank parts, with an `or` inside a `part` and, unless they
/// are to be passed over, with mistakes.
Array<Inventory::PartSpec> loadPartsForGeneration(const std::string& path, bool passesMistakesOver);

/// A base script's inner XML; empty for an empty path. Refuses what is not well-formed inside `inventory-check`, and an
/// `or` inside a `part` and, unless they are to be passed over, mistakes.
String loadBaseScript(const std::string& path, bool passesMistakesOver);

}  // namespace vrx::cli
