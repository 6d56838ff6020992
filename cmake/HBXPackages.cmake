# The binary packages: one .tar.gz of everything, and a Debian package for each component.

set(CPACK_GENERATOR TGZ DEB)
set(CPACK_PACKAGE_NAME hbxfunctionalitycore)
set(CPACK_PACKAGE_CONTACT "HBX developers <developers@localhost>")
set(CPACK_PACKAGE_FILE_NAME "hbxfunctionalitycore-${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development program)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")
foreach(room IN LISTS HBX_ROOM_FOLDERS)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/core/src/${room}")
endforeach()

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libhbxfunctionalitycore)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "The shared libraries.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libhbxfunctionalitycore-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "libhbxfunctionalitycore (= ${PROJECT_VERSION}), libboost-dev, libboost-program-options-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "The headers, and what CMake and pkg-config need to find the library.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME hbx)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "libhbxfunctionalitycore (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
    "The program hbx, which shows and changes what agents of this host know.")
include(CPack)
