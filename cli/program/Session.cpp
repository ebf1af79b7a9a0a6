#include "cli/program/Session.h"

#include "libCommon/text/PrintableText.h"

namespace vrx::cli {

void Session::say(const std::string& line) const { console.writeErr("vrx-inventory: " + printable(line) + "\n"); }

}  // namespace vrx::cli
