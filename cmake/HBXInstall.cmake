# What find_package(HBXFunctionalityCore) and pkg-config read. Both find the rest from where they lie themselves, so
# that an installed copy can be moved.

include(CMakePackageConfigHelpers)
set(packageDir "${CMAKE_INSTALL_LIBDIR}/cmake/HBXFunctionalityCore")
configure_package_config_file(cmake/HBXFunctionalityCoreConfig.cmake.in
    "${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfig.cmake" INSTALL_DESTINATION "${packageDir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfig.cmake"
              "${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfigVersion.cmake"
        DESTINATION "${packageDir}" COMPONENT development)
install(EXPORT HBXFunctionalityCoreTargets NAMESPACE HBX:: DESTINATION "${packageDir}" COMPONENT development)

set(pkgConfigDir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
file(RELATIVE_PATH HBX_PREFIX_FROM_PC "/${pkgConfigDir}" "/")
configure_file(cmake/HBXFunctionalityCore.pc.in "${PROJECT_BINARY_DIR}/HBXFunctionalityCore.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/HBXFunctionalityCore.pc"
        DESTINATION "${pkgConfigDir}" COMPONENT development)
