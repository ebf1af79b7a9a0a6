#pragma once

#include "libMachine/import/dmidecode/DmidecodeText.h"
#include "libMachine/smbios/SmbiosFacts.h"

namespace vrx {

/// The facts that the structures of the text tell, in its order. Structures of types that mean nothing to a recording
/// are passed over.
SmbiosFacts dmidecodeFacts(const std::vector<DmidecodeStructure>& structures, DamageList& damage);

}  // namespace vrx
