#include <cstdlib>
#include <exception>
#include <new>

#include "cli/program/MonitoringAnswer.h"
#include "cli/program/OutOfMemory.h"
#include "cli/program/Program.h"
#include "cli/terminal/ProcessConsole.h"
#include "libCommon/error/Exception.h"
#include "libCommon/error/StructuredException.h"
#include "libCommon/text/PrintableText.h"

namespace {

using vrx::cli::ExitStatus;

struct Arguments {
    int count;
    const char* const* texts;
};

int internalError(vrx::cli::Console& console, const Arguments& arguments, const std::string& text) {
    console.writeErr("vrx-inventory: internal error: " + text + "\n");
    return static_cast<int>(vrx::cli::asksForMonitoring(arguments.count, arguments.texts)
                                ? vrx::cli::answerUnknown(console, "internal error: " + text)
                                : ExitStatus::InternalError);
}

/// Constructors of the program's own static objects come later.
[[gnu::constructor(101)]] void guardFromTheStart() { vrx::cli::endWithoutMemory(); }

}  // namespace

int main(int argc, char** argv) {
    static vrx::cli::ProcessConsole& console = *new vrx::cli::ProcessConsole;
    static vrx::cli::Session& session = *new vrx::cli::Session(console);
    try {
        return static_cast<int>(vrx::cli::runProgram(argc, argv, session));
    } catch (const vrx::StructuredException& broken) {
        return internalError(console, {argc, argv}, vrx::printable(broken.text().view()));
    } catch (const vrx::Exception& unexpected) {
        return internalError(console, {argc, argv}, vrx::printable(unexpected.text().view()));
    } catch (const std::bad_alloc&) {
        return internalError(console, {argc, argv}, "out of memory");
    } catch (const std::exception& unexpected) {
        return internalError(console, {argc, argv}, vrx::printable(std::string_view(unexpected.what())));
    }
}
