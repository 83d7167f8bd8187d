# Debian packages: `cpack -G DEB` in the build directory makes libcamcfg1, libcamcfg-dev and
# camcfg-tools for the architecture that was built for.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME camcfg)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "camcfg maintainers <maintainers@camcfg.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime dev tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
else()
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
endif()

set(library_package libcamcfg${PROJECT_VERSION_MAJOR})
set(same_version "(= ${PROJECT_VERSION})")
set(cxx_runtime "libc6 (>= 2.34), libgcc-s1 (>= 3.0), libstdc++6 (>= 12)")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "${cxx_runtime}, libtinyxml2-9 (>= 9.0.0)")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
  "configuration library of a network video device
 Reads and rewrites the device's XML settings, keeps a backup copy in step on
 every save, repairs broken files at start-up and serialises access between
 threads.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libcamcfg-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${library_package} ${same_version}, libtinyxml2-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION
  "configuration library of a network video device - development files
 Headers, the development link, package files for CMake and pkg-config, and the
 test kit: a scratch device root and a log recorder for an application's tests.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME camcfg-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${library_package} ${same_version}, ${cxx_runtime}, libtinyxml2-9 (>= 9.0.0)")
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "graphviz")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION
  "command-line tool for the settings of a network video device
 Lists, reads, checks and sets the device's parameters, verifies and repairs its
 configuration files, and brings a sample factory set.")
include(CPack)
