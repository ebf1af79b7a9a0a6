#include "libCommon/io/SharedLibrary.h"

#include <dlfcn.h>

namespace vrx {

SharedLibrary::SharedLibrary(const char* file, const char* package)
    : m_file(file), m_package(package), m_library(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {
    if (m_library == nullptr) {
        m_problem = std::string(dlerror()) + "; install the package " + package;
    }
}

void* SharedLibrary::findAddress(const char* name) {
    void* const address = m_library == nullptr ? nullptr : dlsym(m_library, name);
    if (address == nullptr && m_problem.empty()) {
        m_problem = std::string(m_file) + " has no " + name + "; install the package " + m_package + " of this system";
    }
    return address;
}

}  // namespace vrx
