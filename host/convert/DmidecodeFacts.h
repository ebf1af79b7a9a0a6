#pragma once

#include "host/collect/SmbiosFacts.h"
#include "host/convert/DmidecodeText.h"

namespace vrx::host {

/// The facts that the structures of the text tell, in its order. Structures of types that mean nothing to a recording
/// are passed over.
SmbiosFacts dmidecodeFacts(const std::vector<DmidecodeStructure>& structures, DamageList& damage);

}  // namespace vrx::host
