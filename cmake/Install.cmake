# What `cmake --install` lays out, in the components that the packages are made of:
#   runtime  the shared library
#   dev      development link, headers, test kit, package files for CMake and pkg-config
#   tools    the tool, its manual and completions, the sample set, the start-up service
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/camcfg)
set(share_dir ${CMAKE_INSTALL_DATADIR}/camcfg)

install(TARGETS camcfg EXPORT camcfg-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)
install(DIRECTORY include/camcfg DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

install(TARGETS camcfg_testkit EXPORT camcfg-targets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
install(DIRECTORY testkit/include/camcfg DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

install(EXPORT camcfg-targets NAMESPACE camcfg:: DESTINATION ${package_dir} COMPONENT dev)
configure_package_config_file(packaging/camcfg-config.cmake.in camcfg-config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(camcfg-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/camcfg-config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/camcfg-config-version.cmake
  DESTINATION ${package_dir} COMPONENT dev)
configure_file(packaging/camcfg.pc.in camcfg.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/camcfg.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

if(TARGET camcfg-tool)
  install(TARGETS camcfg-tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  configure_file(packaging/camcfg-verify.service.in camcfg-verify.service @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/camcfg-verify.service
    DESTINATION lib/systemd/system COMPONENT tools)
endif()
install(FILES tools/camcfg/completion/camcfg.bash RENAME camcfg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
install(FILES tools/camcfg/completion/_camcfg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
if(TARGET camcfg_manual)
  install(FILES ${CMAKE_BINARY_DIR}/camcfg.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
    COMPONENT tools)
endif()
install(DIRECTORY resource/ DESTINATION ${share_dir} COMPONENT tools)
