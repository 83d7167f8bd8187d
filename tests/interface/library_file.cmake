# Checks the built library as the linker sees it.
#   cmake -D CHECK=... -D LIBRARY=... -D SYMBOLS=... -D NM=... -D READELF=... -P library_file.cmake
set(ENV{LC_ALL} C)

function(read_library result)
  execute_process(COMMAND ${ARGN} ${LIBRARY} OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
  string(STRIP "${lines}" lines)
  string(REPLACE "\n" ";" lines "${lines}")
  set(${result} "${lines}" PARENT_SCOPE)
endfunction()

function(fail_for_each what names)
  foreach(name IN LISTS names)
    message(SEND_ERROR "${what}: ${name}")
  endforeach()
endfunction()

function(ExportsWhatTheListNamesAndNothingElse)
  file(STRINGS ${SYMBOLS} listed REGEX "^[^#]")
  list(TRANSFORM listed REPLACE "[ \t]*#.*" "")
  read_library(exported ${NM} -D --defined-only --portability)
  list(TRANSFORM exported REPLACE " .*" "")

  set(missing ${listed})
  list(REMOVE_ITEM missing ${exported})
  set(extra ${exported})
  list(REMOVE_ITEM extra ${listed})
  fail_for_each("listed, not exported" "${missing}")
  fail_for_each("exported, not listed" "${extra}")
endfunction()

function(SonameCarriesTheMajorVersion)
  read_library(dynamic ${READELF} -d)
  list(FILTER dynamic INCLUDE REGEX "SONAME")
  if(NOT dynamic MATCHES "\\[libcamcfg\\.so\\.1\\]$")
    message(FATAL_ERROR "soname: ${dynamic}")
  endif()
endfunction()

function(LoggerIsImportedWeakly)
  read_library(imported ${NM} -D --undefined-only --portability)
  list(FILTER imported INCLUDE REGEX "UTIL_LOG_Print")
  if(NOT imported MATCHES "^UTIL_LOG_Print w *$")
    message(FATAL_ERROR "logger: ${imported}")
  endif()
endfunction()

cmake_language(CALL ${CHECK})
