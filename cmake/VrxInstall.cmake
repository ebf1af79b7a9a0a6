# `cmake --install`: the program, the libraries with their public headers, and what find_package(VrxInventory) needs.

include(CMakePackageConfigHelpers)

set(VRX_INSTALL_CONFIGDIR "${CMAKE_INSTALL_LIBDIR}/cmake/VrxInventory")
set(VRX_INSTALL_DATADIR "${CMAKE_INSTALL_DATADIR}/vrx-inventory")

install(TARGETS vrxCommon vrxRegex vrxSystemState vrxInventory EXPORT VrxInventoryTargets)
install(EXPORT VrxInventoryTargets NAMESPACE VrxInventory:: DESTINATION "${VRX_INSTALL_CONFIGDIR}")
if(TARGET vrx-inventory)
    install(TARGETS vrx-inventory)
endif()

foreach(library libCommon libSystemState)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/${library}" DESTINATION "${VRX_INSTALL_INCLUDEDIR}"
            FILES_MATCHING PATTERN "*.h")
endforeach()
# libRegex and libInventory keep what lies in their folders to themselves.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/libInventory" DESTINATION "${VRX_INSTALL_INCLUDEDIR}"
        FILES_MATCHING PATTERN "*.h" PATTERN "libInventory/*/*" EXCLUDE)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/libRegex" DESTINATION "${VRX_INSTALL_INCLUDEDIR}"
        FILES_MATCHING PATTERN "Regex.h")

configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/VrxInventoryConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/VrxInventoryConfig.cmake"
                              INSTALL_DESTINATION "${VRX_INSTALL_CONFIGDIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VrxInventoryConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VrxInventoryConfig.cmake" "${PROJECT_BINARY_DIR}/VrxInventoryConfigVersion.cmake"
        DESTINATION "${VRX_INSTALL_CONFIGDIR}")

install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
foreach(folder docs/ schemas examples)
    if(EXISTS "${PROJECT_SOURCE_DIR}/${folder}")
        if(folder STREQUAL "docs/")
            install(DIRECTORY "${PROJECT_SOURCE_DIR}/${folder}" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
        else()
            install(DIRECTORY "${PROJECT_SOURCE_DIR}/${folder}" DESTINATION "${VRX_INSTALL_DATADIR}")
        endif()
    endif()
endforeach()
