# What makes a build from nothing cheap. Most of the time of a plain build goes into reading the same hundred thousand
# lines of other people's headers for each source, so that
#  - every library reads the common ones precompiled (off with -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON);
#  - the presets that are built whole ("release", "bench" and the sanitizers') compile some sixteen sources as one
#    (CMAKE_UNITY_BUILD).
# The preset in which people work, "dev", keeps single files: there a change compiles one source, and a source that lacks
# an include is found by the presets without precompiled headers ("tidy", "fuzz").

# System headers only: what changes with the project would make everything stale at once.
set(VRX_COMMON_HEADERS
    <algorithm> <array> <charconv> <cstdint> <functional> <iterator> <map> <memory> <optional> <set> <span> <string>
    <string_view> <unordered_map> <utility> <vector>
    <boost/make_shared.hpp> <boost/shared_ptr.hpp> <boost/unordered/unordered_flat_map.hpp>
    <fmt/format.h>
)

# vrx_precompiled_headers(<name> OBJECT|PROGRAM <header>...)
#
# A target that only precompiles headers, for many targets to use: vrx_use_headers(<target> <name>). A program's code
# depends on its position in another way than a library's, so each kind needs its own.
function(vrx_precompiled_headers name kind)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    if(kind STREQUAL "PROGRAM")
        file(CONFIGURE OUTPUT "${source}" CONTENT "int main() {}\n")
        add_executable(${name} "${source}")
    else()
        file(CONFIGURE OUTPUT "${source}" CONTENT "namespace {}\n")
        add_library(${name} OBJECT "${source}")
    endif()
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON UNITY_BUILD OFF)
    target_precompile_headers(${name} PRIVATE ${ARGN})
    vrx_header_definitions(${name})
    vrx_compile_options(${name})
endfunction()

function(vrx_use_headers target name)
    target_precompile_headers(${target} REUSE_FROM ${name})
    vrx_header_definitions(${target})
endfunction()

# The macros that a precompiled header looked at must be the same for all who use it.
function(vrx_header_definitions target)
    target_compile_definitions(${target} PRIVATE $<TARGET_PROPERTY:fmt::fmt,INTERFACE_COMPILE_DEFINITIONS>)
endfunction()

# vrx_unity_batches(<target> <file>...)
#
# Divides sources among the units of a unity build: neighbours of one folder share a unit, a unit takes sixteen at most,
# and small folders share one. Sources of one unit share their anonymous namespaces.
function(vrx_unity_batches target)
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
    if(CMAKE_UNITY_BUILD)
        # A function that nobody calls any more: an overload of another source of the unit is called in its place.
        # And what a unit includes looks like a header, where a class must not hold what is the source's own.
        target_compile_options(${target} PRIVATE -Werror=unused-function -Wno-subobject-linkage)
    endif()
    set(unit 0)
    set(size 0)
    set(lastFolder "")
    foreach(source IN LISTS ARGN)
        get_filename_component(folder "${source}" DIRECTORY)
        if(size EQUAL 16 OR (size GREATER_EQUAL 8 AND NOT folder STREQUAL lastFolder))
            math(EXPR unit "${unit} + 1")
            set(size 0)
        endif()
        set_source_files_properties("${source}" PROPERTIES UNITY_GROUP "${target}${unit}")
        math(EXPR size "${size} + 1")
        set(lastFolder "${folder}")
    endforeach()
endfunction()
