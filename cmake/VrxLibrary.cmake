# vrx_library(<name> [STATIC] SOURCES <file>... [ALONE <file>...] [HEADERS <file>...]
#             [PUBLIC <target>...] [PRIVATE <target>...])
#
# A library of the project: its sources are listed by hand, its include root is the root of the repository.
# PUBLIC and PRIVATE name the targets that it links, as in target_link_libraries. STATIC keeps it a static
# library under BUILD_SHARED_LIBS. ALONE names sources that a unity build leaves alone (say why beside it). HEADERS
# are the public ones, which the package installs: all that a host may include, and what they include. A library whose list of sources is empty is an interface library.
function(vrx_library name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "STATIC" "" "SOURCES;ALONE;HEADERS;PUBLIC;PRIVATE")
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vrx_library(${name}): unknown arguments ${ARG_UNPARSED_ARGUMENTS}")
    endif()

    set(includes $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${VRX_INSTALL_INCLUDEDIR}>)
    if(NOT ARG_SOURCES)
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE ${includes})
        target_link_libraries(${name} INTERFACE ${ARG_PUBLIC} ${ARG_PRIVATE})
        return()
    endif()

    set(kind "")
    if(ARG_STATIC)
        set(kind STATIC)
    endif()
    add_library(${name} ${kind} ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${includes})
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    set_target_properties(${name} PROPERTIES
        DEFINE_SYMBOL "" # the same objects for static and shared libraries
        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    if(ARG_HEADERS)
        target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${ARG_HEADERS})
    endif()
    vrx_compile_options(${name})
    vrx_use_headers(${name} vrxHeaders)
    vrx_unity_batches(${name} ${ARG_SOURCES})
    if(ARG_ALONE)
        set_source_files_properties(${ARG_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
endfunction()

# vrx_program(<name> SOURCES <file>... [LIBRARIES <target>...])
#
# A program of the project. An empty list of sources makes none.
function(vrx_program name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LIBRARIES")
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vrx_program(${name}): unknown arguments ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT ARG_SOURCES)
        return()
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES})
    vrx_compile_options(${name})
endfunction()

# vrx_starts_fast(<program> <source with the functions of {fmt}>)
#
# Takes the run-time libraries of C++ and {fmt} into a program as well (VrxDependencies.cmake). The sanitizers need the
# shared ones.
function(vrx_starts_fast program source)
    if(VRX_LINK_ARCHIVES AND NOT VRX_SANITIZE AND NOT VRX_SANITIZE_THREAD)
        target_sources(${program} PRIVATE ${source})
        set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
        target_link_libraries(${program} PRIVATE fmt::fmt)
        target_link_options(${program} PRIVATE -static-libstdc++ -static-libgcc -Wl,--as-needed)
    endif()
endfunction()
