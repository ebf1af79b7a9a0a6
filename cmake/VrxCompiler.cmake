# How every target of the project is compiled.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release or RelWithDebInfo" FORCE)
endif()

# NDEBUG is for the libraries that we use: our own assertions are part of the contract and never look at it.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
if(VRX_SANITIZE OR VRX_SANITIZE_THREAD)
    # Instrumented code without any optimisation is too slow for the larger cases.
    set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g1")
endif()

# An installed program finds shared libraries beside it. One that has none of ours need not look there for others.
if(BUILD_SHARED_LIBS)
    set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endif()

# The build folder is kept out of the hash, so that build folders of one source tree share their objects. Sources that
# use precompiled headers need some leniency: the macros and the time stamps of what was precompiled are not compared.
find_program(VRX_CCACHE ccache)
if(VRX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_NOHASHDIR=true "CCACHE_BASEDIR=${PROJECT_BINARY_DIR}"
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${VRX_CCACHE}")
endif()

# The sanitizers' own branches make g++ see reads and writes where there are none; "dev" has these warnings.
set(VRX_NO_FLOW_WARNINGS "$<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized;-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-restrict>")

# vrx_compile_options(<target>): warnings, sanitizers and file names for a target of ours; never part of the package.
function(vrx_compile_options target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=") # log lines and assertions name files from the repository root
    if(VRX_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(VRX_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=undefined
            -fno-omit-frame-pointer ${VRX_NO_FLOW_WARNINGS})
        target_compile_definitions(${target} PRIVATE _GLIBCXX_ASSERTIONS)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(VRX_SANITIZE_THREAD)
        target_compile_options(${target} PRIVATE -fsanitize=thread ${VRX_NO_FLOW_WARNINGS})
        target_link_options(${target} PRIVATE -fsanitize=thread)
    endif()
    if(VRX_BUILD_FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
endfunction()
