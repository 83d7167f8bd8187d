# What `cmake --install` lays out, in the components that the packages are made of:
#   runtime  the shared library; the directory of its locks, made at boot
#   dev      development link, headers, test kit, package files for CMake and pkg-config, sample set
#   tools    the tool, its manual and completions, the start-up service
#
# No file names where the tree was installed, or finds it by its own place, so that it may be moved;
# except for the service, which must name the tool's whole path and is made while installing.
include(CMakePackageConfigHelpers)

# What is released, and nothing that is only for its developers: all that an installation needs.
add_custom_target(released)
foreach(target camcfg camcfg_testkit camcfg-tool camcfg_manual)
  if(TARGET ${target})
    add_dependencies(released ${target})
  endif()
endforeach()

# Comes first: an installation of a tree that is not wholly built changes nothing.
set(built $<TARGET_FILE:camcfg> $<TARGET_FILE:camcfg_testkit>)
if(TARGET camcfg-tool)
  list(APPEND built $<TARGET_FILE:camcfg-tool>)
endif()
if(TARGET camcfg_manual)
  list(APPEND built ${CMAKE_BINARY_DIR}/camcfg.1)
endif()
install(CODE "foreach(file ${built})
    if(NOT EXISTS \"\${file}\")
      message(FATAL_ERROR \"\${file} is not built yet, and nothing was installed: build first, for \"
        \"example by scripts/build.sh\")
    endif()
  endforeach()" ALL_COMPONENTS)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/camcfg)
set(share_dir ${CMAKE_INSTALL_DATADIR}/camcfg)

install(TARGETS camcfg EXPORT camcfg-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)
install(FILES packaging/tmpfiles.d/camcfg.conf DESTINATION lib/tmpfiles.d COMPONENT runtime)
install(DIRECTORY include/camcfg DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

install(TARGETS camcfg_testkit EXPORT camcfg-targets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
install(DIRECTORY testkit/include/camcfg DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
install(DIRECTORY resource/ DESTINATION ${share_dir} COMPONENT dev)
# Debian keeps examples under the name of the package that has them.
set(examples_dir ${CMAKE_INSTALL_DATADIR}/doc/camcfg/examples)
set(tools_documents_dir ${CMAKE_INSTALL_DATADIR}/doc/camcfg)
if(CAMCFG_PACKAGES)
  set(examples_dir ${CMAKE_INSTALL_DATADIR}/doc/libcamcfg-dev/examples)
  set(tools_documents_dir ${CMAKE_INSTALL_DATADIR}/doc/camcfg-tools)
endif()
install(DIRECTORY examples/ DESTINATION ${examples_dir} COMPONENT dev
  FILES_MATCHING PATTERN *.cpp PATTERN *.h PATTERN CMakeLists.txt PATTERN Makefile)

install(EXPORT camcfg-targets NAMESPACE camcfg:: DESTINATION ${package_dir} COMPONENT dev)
configure_package_config_file(packaging/camcfg-config.cmake.in camcfg-config.cmake
  INSTALL_DESTINATION ${package_dir} PATH_VARS share_dir)
write_basic_package_version_file(camcfg-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/camcfg-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/camcfg-config-version.cmake
  DESTINATION ${package_dir} COMPONENT dev)

string(REGEX REPLACE "[^/]+" ".." path_to_prefix ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
foreach(module camcfg camcfg-testkit)
  configure_file(packaging/${module}.pc.in ${module}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${module}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()

if(TARGET camcfg-tool)
  # Below /usr the library is found by itself; anywhere else relative to the tool.
  if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    string(REGEX REPLACE "[^/]+" ".." from_bin_to_prefix ${CMAKE_INSTALL_BINDIR})
    set_target_properties(camcfg-tool PROPERTIES
      INSTALL_RPATH "$ORIGIN/${from_bin_to_prefix}/${CMAKE_INSTALL_LIBDIR}")
  endif()
  install(TARGETS camcfg-tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  configure_file(packaging/install-service.cmake.in install-service.cmake @ONLY)
  install(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/install-service.cmake COMPONENT tools)
  # The manual refers to it.
  install(FILES docs/json.md docs/upgrade.schema.json DESTINATION ${tools_documents_dir} COMPONENT tools)
  install(FILES tool/completion/camcfg.bash RENAME camcfg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
  install(FILES tool/completion/_camcfg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
endif()
if(TARGET camcfg_manual)
  install(FILES ${CMAKE_BINARY_DIR}/camcfg.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
    COMPONENT tools)
endif()
