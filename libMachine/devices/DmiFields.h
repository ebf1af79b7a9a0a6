#pragma once

#include <string>
#include <string_view>

#include "libMachine/record/DeviceRecord.h"
#include "libMachine/smbios/SmbiosFacts.h"
#include "libSystemState/properties/PropertyNames.h"

namespace vrx {

struct CollectContext;

/// What the firmware says of the machine as a whole, its first board and chassis, and its BIOS. The kernel's copies in
/// /sys/class/dmi/id come first, because most of them may be read by anyone; what they lack is taken from the SMBIOS
/// table. Each notes which of them need root.
SystemFacts dmiSystem(CollectContext& context);
BoardFacts dmiBoard(CollectContext& context);
ChassisFacts dmiChassis(CollectContext& context);
BiosFacts dmiBios(CollectContext& context);

/// "Vendor Model" from a device's properties, the model alone, or the given text where the model is not known.
/// `modelKey` is the property that tells the model.
std::string nameFromModel(const DeviceRecord& device, std::string_view otherwise,
                          StringView modelKey = property::MODEL);

}  // namespace vrx
