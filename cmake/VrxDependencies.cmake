# What the project uses, each a Debian package (tools/installDependencies holds their names).
#
# A static build takes what it uses into its programs: loading a dozen shared libraries takes longer than a small check.
# Where a package has no archive the shared library serves. Installed libraries are not concerned, since a host finds
# these packages itself. What only few runs need (hwloc, libarchive, log4cplus) is not linked at all: those runs load it
# (libCommon/io/SharedLibrary.h), so its headers suffice here.

option(VRX_LINK_ARCHIVES "Link programs of a static build with static archives of other packages" ON)
if(BUILD_SHARED_LIBS)
    set(VRX_LINK_ARCHIVES OFF)
endif()

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

# vrx_take_in(<name>): an imported shared library is linked from its archive, where that is installed beside it. What
# includes its headers is compiled as before.
function(vrx_take_in name)
    get_target_property(shared ${name} IMPORTED_LOCATION_RELEASE)
    string(REGEX REPLACE "[.]so.*" ".a" archive "${shared}")
    if(EXISTS "${archive}")
        set_target_properties(${name} PROPERTIES IMPORTED_LOCATION_RELEASE "${archive}")
    endif()
endfunction()

find_package(Boost 1.81 REQUIRED COMPONENTS json)
set(sharedFirst ${CMAKE_FIND_LIBRARY_SUFFIXES})
if(VRX_LINK_ARCHIVES)
    list(PREPEND CMAKE_FIND_LIBRARY_SUFFIXES .a)
endif()
find_package(ICU REQUIRED COMPONENTS uc data)
find_package(EXPAT REQUIRED)
pkg_check_modules(PCRE2 REQUIRED IMPORTED_TARGET libpcre2-16)
set(CMAKE_FIND_LIBRARY_SUFFIXES ${sharedFirst})
if(VRX_LINK_ARCHIVES)
    vrx_take_in(Boost::json)
    vrx_take_in(Boost::container)
    target_link_libraries(ICU::uc INTERFACE ICU::data)
endif()

find_package(CLI11 REQUIRED)
find_package(fmt REQUIRED)
pkg_check_modules(LOG4CPLUS REQUIRED IMPORTED_TARGET log4cplus)
pkg_check_modules(HWLOC REQUIRED IMPORTED_TARGET hwloc)
pkg_check_modules(LIBARCHIVE REQUIRED IMPORTED_TARGET libarchive)
