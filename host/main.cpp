#include <cstdlib>
#include <exception>
#include <new>

#include "host/commands/Program.h"
#include "host/terminal/PrintableText.h"
#include "host/terminal/ProcessConsole.h"
#include "libCommon/error/Exception.h"
#include "libCommon/error/StructuredException.h"

namespace {

using vrx::host::ExitStatus;

int internalError(vrx::host::Console& console, const std::string& text) {
    console.writeErr("vrx-inventory: internal error: " + text + "\n");
    return static_cast<int>(ExitStatus::InternalError);
}

}  // namespace

int main(int argc, char** argv) {
    static vrx::host::ProcessConsole& console = *new vrx::host::ProcessConsole;
    static vrx::host::Session& session = *new vrx::host::Session(console);
    try {
        return static_cast<int>(vrx::host::runProgram(argc, argv, session));
    } catch (const vrx::StructuredException& broken) {
        return internalError(console, vrx::host::printable(broken.text().view()));
    } catch (const vrx::Exception& unexpected) {
        return internalError(console, vrx::host::printable(unexpected.text().view()));
    } catch (const std::bad_alloc&) {
        console.writeErr("vrx-inventory: internal error: out of memory\n");
    } catch (const std::exception& unexpected) {
        return internalError(console, vrx::host::printable(std::string_view(unexpected.what())));
    }
    return static_cast<int>(ExitStatus::InternalError);
}
