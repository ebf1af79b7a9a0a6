#include "cli/files/InputFile.h"

#include <unistd.h>

#include "libCommon/io/FileLoader.h"

namespace vrx::cli {

bool loadInput(const std::string& path, std::string& bytes, String& reason) {
    return path == "-" ? loadDescriptor(STDIN_FILENO, bytes, reason)
                       : loadFile(String::UTF8Decode(path), bytes, reason);
}

}  // namespace vrx::cli
