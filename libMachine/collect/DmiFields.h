#pragma once

#include "libMachine/smbios/SmbiosFacts.h"

namespace vrx {

struct CollectContext;

/// What the firmware says of the machine as a whole, its first board and chassis, and its BIOS. The kernel's copies in
/// /sys/class/dmi/id come first, because most of them may be read by anyone; what they lack is taken from the SMBIOS
/// table. Each notes which of them need root.
SystemFacts dmiSystem(CollectContext& context);
BoardFacts dmiBoard(CollectContext& context);
ChassisFacts dmiChassis(CollectContext& context);
BiosFacts dmiBios(CollectContext& context);

}  // namespace vrx
