# Installation, the package that find_package(HBXFunctionalityCore) reads, and the binary packages.

include(CMakePackageConfigHelpers)
set(packageDir "${CMAKE_INSTALL_LIBDIR}/cmake/HBXFunctionalityCore")
configure_package_config_file(cmake/HBXFunctionalityCoreConfig.cmake.in
    "${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfig.cmake" INSTALL_DESTINATION "${packageDir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfig.cmake"
              "${PROJECT_BINARY_DIR}/HBXFunctionalityCoreConfigVersion.cmake" DESTINATION "${packageDir}")
if(TARGET HBX::Common)
    install(EXPORT HBXFunctionalityCoreTargets NAMESPACE HBX:: DESTINATION "${packageDir}")
endif()

set(CPACK_GENERATOR TGZ DEB)
set(CPACK_PACKAGE_NAME hbxfunctionalitycore)
set(CPACK_PACKAGE_CONTACT "HBXFunctionalityCore developers")
set(CPACK_PACKAGE_FILE_NAME "hbxfunctionalitycore-${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
foreach(room IN LISTS HBX_ROOM_FOLDERS)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/core/src/${room}")
endforeach()
include(CPack)
