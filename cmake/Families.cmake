# The library's folders below src/, from the file that scripts read as well.
file(STRINGS ${CMAKE_SOURCE_DIR}/src/folders.txt camcfg_folders REGEX "^[a-z]")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/folders.txt)
