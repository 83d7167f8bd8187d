# Debian packages: libcamcfg1, libcamcfg-dev and camcfg-tools, for the architecture that is built for.
# scripts/make-packages.sh builds them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME camcfg)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "camcfg maintainers <maintainers@camcfg.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime dev tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/packaging/debian/compress-manual.cmake)
# Where the tool's library is found before it is installed.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR})
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
else()
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
endif()

set(debian ${CMAKE_CURRENT_SOURCE_DIR}/packaging/debian)
set(made ${CMAKE_CURRENT_BINARY_DIR}/debian)
set(library_package libcamcfg${PROJECT_VERSION_MAJOR})
set(same_version "(= ${PROJECT_VERSION})")

# What every package says about itself.
file(MAKE_DIRECTORY ${made})
execute_process(COMMAND gzip -9nc ${debian}/changelog
  OUTPUT_FILE ${made}/changelog.gz COMMAND_ERROR_IS_FATAL ANY)
foreach(pair runtime:${library_package} dev:libcamcfg-dev tools:camcfg-tools)
  string(REGEX MATCH "([a-z]+):(.*)" matched ${pair})
  install(FILES ${debian}/copyright ${made}/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CMAKE_MATCH_2} COMPONENT ${CMAKE_MATCH_1})
endforeach()
install(FILES ${debian}/lintian-overrides
  DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME ${library_package}
  COMPONENT runtime)

# Which symbols a program needs this library for, and since when; a symbol that is added later
# gets the version that brought it, after its name in the list of exported symbols.
file(STRINGS packaging/libcamcfg.symbols lines REGEX "^[^#]")
set(symbols "libcamcfg.so.${PROJECT_VERSION_MAJOR} ${library_package} #MINVER#\n")
list(SORT lines)
foreach(line IN LISTS lines)
  string(REGEX MATCH "^([^ ]+)( *# *since ([0-9.]+))?" matched "${line}")
  set(since ${PROJECT_VERSION_MAJOR}.0.0)
  if(CMAKE_MATCH_3)
    set(since ${CMAKE_MATCH_3})
  endif()
  string(APPEND symbols " ${CMAKE_MATCH_1}@Base ${since}\n")
endforeach()
file(WRITE ${made}/symbols "${symbols}")
file(WRITE ${made}/shlibs "libcamcfg ${PROJECT_VERSION_MAJOR} ${library_package} (>= ${PROJECT_VERSION})\n")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${debian}/triggers ${made}/symbols ${made}/shlibs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
  "configuration library of a network video device
Reads and rewrites the device's XML settings, updates a backup copy with every
save, repairs broken files at start-up and serialises access between threads.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libcamcfg-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "${library_package} ${same_version}, libtinyxml2-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION
  "configuration library of a network video device - development files
Headers, the development link, package files for CMake and pkg-config, a sample
factory set, and the test kit: a scratch device root and a log recorder for an
application's tests.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME camcfg-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${library_package} ${same_version}")
set(CPACK_DEBIAN_TOOLS_PACKAGE_CONTROL_EXTRA ${debian}/postinst ${debian}/postrm)
set(CPACK_DEBIAN_TOOLS_DESCRIPTION
  "command-line tool for the settings of a network video device
Lists, reads, checks and sets the device's parameters, verifies and repairs its
configuration files, by hand and at every start.")
include(CPack)
