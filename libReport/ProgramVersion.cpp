#include "libReport/ProgramVersion.h"

namespace vrx {

std::string_view programVersion() noexcept { return VRX_VERSION; }

}  // namespace vrx
