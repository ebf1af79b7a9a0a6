#pragma once

#include "libMachine/record/Recording.h"
#include "libMachine/smbios/SmbiosFacts.h"

/// Processors as devices, as far as firmware knows them.
namespace vrx {

/// The populated sockets in their order, which is that in which kernels number the packages.
std::vector<const ProcessorFacts*> populatedSockets(const SmbiosFacts& facts);

/// Adds to a processor what the firmware knows of it and no better source has said.
void addSocketFacts(DeviceRecord& processor, const ProcessorFacts& facts);

/// Adds the processors of all populated sockets, for want of a better source: `cpu:0`, `cpu:1`, ...
void addProcessors(Recording& recording, const SmbiosFacts& facts);

/// Adds a Slot for each socket without a processor.
void addEmptySockets(Recording& recording, const SmbiosFacts& facts);

/// "Intel(R) Xeon(R) CPU E5-2680 v4 @ 2.40GHz" says 2400; 0 when the name of a model says nothing.
double megahertzInModel(std::string_view model);

}  // namespace vrx
