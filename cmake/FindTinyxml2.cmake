# tinyxml2 of the architecture that is built for. Its package configuration is preferred; where a
# cross build does not see it, the library and header are looked up directly.
find_package(tinyxml2 CONFIG QUIET)
if(NOT TARGET tinyxml2::tinyxml2)
  find_path(TINYXML2_INCLUDE_DIR tinyxml2.h)
  find_library(TINYXML2_LIBRARY tinyxml2)
  if(NOT TINYXML2_INCLUDE_DIR OR NOT TINYXML2_LIBRARY)
    message(FATAL_ERROR "tinyxml2 not found: install the package libtinyxml2-dev")
  endif()
  add_library(tinyxml2::tinyxml2 UNKNOWN IMPORTED)
  set_target_properties(tinyxml2::tinyxml2 PROPERTIES
    IMPORTED_LOCATION ${TINYXML2_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${TINYXML2_INCLUDE_DIR})
endif()
