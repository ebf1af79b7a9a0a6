#pragma once

#include <string_view>

#include "libMachine/record/Recording.h"
#include "libMachine/smbios/SmbiosFacts.h"

/// System, chassis, boards and BIOS as devices, whoever read the facts. Requires: the recording has its root, but where
/// that is what is made.
namespace vrx {

/// The root device. The source may add to it before it adds it to the recording.
DeviceRecord systemDevice(const SystemFacts& facts);

/// The first chassis, board and the BIOS; not added when the facts say nothing.
void addChassis(Recording& recording, const ChassisFacts& facts);
void addBoard(Recording& recording, const BoardFacts& facts);
void addBios(Recording& recording, const BiosFacts& facts);

/// Chassis and boards from the second on: blades with their enclosure, risers, memory boards. Told apart by their
/// place in the chassis, else by what they are.
void addFurtherChassis(Recording& recording, const SmbiosFacts& facts);
void addFurtherBoards(Recording& recording, const SmbiosFacts& facts);

/// Adds a word of a fixed list as it is: "None" of an error correction is no placeholder. Nothing when it is empty.
void addWord(DeviceRecord& device, StringView key, std::string_view word);

}  // namespace vrx
