#pragma once

#include <string>

#include "libCommon/Export.h"

namespace vrx {

/// A library that is loaded when a run first needs it. What a program links is loaded at every start, with all that it
/// links itself, and that takes longer than a small check.
///
///     struct ArchiveLibrary : SharedLibrary {
///         ArchiveLibrary() : SharedLibrary("libarchive.so.13", "libarchive13") {}
///         VRX_LOADED_FUNCTION(archive_read_new)
///     };
///
/// It stays as long as the process.
class VRX_EXPORT SharedLibrary {
public:
    /// The name that the dynamic linker knows the library by, and the package that holds it.
    SharedLibrary(const char* file, const char* package);

    /// Why the functions cannot be called, and what to install; empty when they can.
    const std::string& problem() const noexcept { return m_problem; }

protected:
    ~SharedLibrary() = default;

    /// The function of that name; null when there is none, and then there is a problem.
    template <typename Function>
    Function find(const char* name) {
        return reinterpret_cast<Function>(findAddress(name));
    }

private:
    void* findAddress(const char* name);

    const char* m_file;
    const char* m_package;
    void* m_library;
    std::string m_problem;
};

}  // namespace vrx

/// A member of the name and type of a function that a header of the library declares.
#define VRX_LOADED_FUNCTION(function) decltype(&::function) function = find<decltype(&::function)>(#function);
