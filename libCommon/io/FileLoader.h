#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "libCommon/Export.h"
#include "libCommon/text/String.h"

/// Whole files, read and written. Paths are UTF-16 text that is given to the operating system as UTF-8.
///
///     std::string bytes;
///     String reason;
///     if (!loadFile(u"script.xml", bytes, reason)) {
///         std::cerr << reason.toUtf8() << '\n';
///     }
namespace vrx {

/// Files larger than this are refused (a recording of a million properties has about 60 MB).
inline constexpr std::size_t MAXIMUM_FILE_SIZE = std::size_t{1} << 30;

/// Reads a whole file into `bytes`. On failure `bytes` is empty, `error` says why in
/// the operating system's words ("No such file or directory", "Is a directory", "file is larger than 1 GiB") and the
/// result is false. Pipes are read to their end; block and character devices are refused.
VRX_EXPORT bool loadFile(const String& path, std::string& bytes, String& error);

/// The same for an open descriptor, such as that of standard input, which is left open.
VRX_EXPORT bool loadDescriptor(int descriptor, std::string& bytes, String& error);

/// Replaces the file's content in one step: the bytes go to a temporary file in the same folder, which takes the
/// place of the old one only when everything was written. On failure the old file is as it was, nothing is left
/// behind, and `error` says why. A path that is no regular file (a pipe, a terminal, /dev/null, /dev/full) is written
/// directly; one that names an open file (/dev/stdout, /dev/fd/3) is written on where that stands. An existing file's
/// permissions are kept, and a symbolic link's target is what is replaced.
VRX_EXPORT bool replaceFile(const String& path, std::string_view bytes, String& error);

/// The number of this process's open file that the path names, as /dev/stdout names 1; none for any other path.
VRX_EXPORT std::optional<int> ownDescriptor(const String& path);

}  // namespace vrx
