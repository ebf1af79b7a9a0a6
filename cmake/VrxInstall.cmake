# `cmake --install`: the program, the libraries with their public headers, and what find_package(VrxInventory) needs.

include(CMakePackageConfigHelpers)

set(VRX_INSTALL_CONFIGDIR "${CMAKE_INSTALL_LIBDIR}/cmake/VrxInventory")
set(VRX_INSTALL_DATADIR "${CMAKE_INSTALL_DATADIR}/vrx-inventory")

set(VRX_LIBRARIES vrxFleet vrxReport vrxGolden vrxDiagnosis vrxLint vrxMachine vrxInventory vrxRegex vrxSystemState
    vrxCommon)

install(TARGETS ${VRX_LIBRARIES} EXPORT VrxInventoryTargets FILE_SET HEADERS DESTINATION "${VRX_INSTALL_INCLUDEDIR}")
install(EXPORT VrxInventoryTargets NAMESPACE VrxInventory:: DESTINATION "${VRX_INSTALL_CONFIGDIR}")
if(TARGET vrx-inventory)
    install(TARGETS vrx-inventory)
endif()

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/VrxInventoryConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/VrxInventoryConfig.cmake"
                              INSTALL_DESTINATION "${VRX_INSTALL_CONFIGDIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VrxInventoryConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VrxInventoryConfig.cmake" "${PROJECT_BINARY_DIR}/VrxInventoryConfigVersion.cmake"
        DESTINATION "${VRX_INSTALL_CONFIGDIR}")

# For pkg-config: the libraries of ours, those above before those below, and what the static ones of them link.
list(TRANSFORM VRX_LIBRARIES PREPEND "-l" OUTPUT_VARIABLE VRX_PC_LIBRARIES)
list(JOIN VRX_PC_LIBRARIES " " VRX_PC_LIBRARIES)
set(VRX_PC_REQUIRES "fmt")
if(NOT BUILD_SHARED_LIBS)
    string(APPEND VRX_PC_REQUIRES " libpcre2-16 icu-uc expat")
endif()
file(RELATIVE_PATH VRX_PC_PREFIX "/p/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/p")
configure_file("${PROJECT_SOURCE_DIR}/cmake/vrx-inventory.pc.in" "${PROJECT_BINARY_DIR}/vrx-inventory.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vrx-inventory.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
foreach(folder docs/ schemas examples contrib)
    if(EXISTS "${PROJECT_SOURCE_DIR}/${folder}")
        if(folder STREQUAL "docs/")
            install(DIRECTORY "${PROJECT_SOURCE_DIR}/${folder}" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
        else()
            install(DIRECTORY "${PROJECT_SOURCE_DIR}/${folder}" DESTINATION "${VRX_INSTALL_DATADIR}"
                    USE_SOURCE_PERMISSIONS)
        endif()
    endif()
endforeach()
