#include "host/commands/Session.h"

#include "host/terminal/PrintableText.h"

namespace vrx::host {

void Session::say(const std::string& line) const { console.writeErr("vrx-inventory: " + printable(line) + "\n"); }

}  // namespace vrx::host
