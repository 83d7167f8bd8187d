# Lists a program's tests for CTest, once the program is built: one entry for the tests of a suite, or
# one for each test. They run in processes of their own either way (support/main.cpp).
#
#   cmake -D NAME=… -D PROGRAM=… -D EMULATOR=… -D ONLY=… -D EACH=… -D TIMEOUT=… -D LIST=… -P discover.cmake
execute_process(COMMAND ${EMULATOR} ${PROGRAM} --gtest_list_tests --gtest_filter=${ONLY}
  OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" lines "${listing}")

# Suites that take long, whose tests are always entries of their own: what is left at the end is waited
# for by the other processors.
set(long "EveryCombination|LockRegistryTest|OpenTest|ProcessLockTest|RefusalsInJsonTest|SalvageDamageTest\
|SecretsTest|TaskTest|UnprintedTest")

set(entries "")
function(add_entry entry)
  if(ARGN)
    set(words ${EMULATOR} ${PROGRAM} --apart ${ARGN})
    list(JOIN words "]=] [=[" command)
    set(entries "${entries}add_test([=[${NAME}.${entry}]=] [=[${command}]=])
set_tests_properties([=[${NAME}.${entry}]=] PROPERTIES TIMEOUT ${TIMEOUT})\n" PARENT_SCOPE)
  endif()
endfunction()

set(suite "")
set(tests "")
foreach(line IN LISTS lines)
  string(REGEX REPLACE " *#.*" "" line "${line}")
  if(line MATCHES "^  (.+)$")
    set(test "${suite}${CMAKE_MATCH_1}")
    if(EACH OR suite MATCHES "${long}")
      add_entry("${test}" "${test}")
    else()
      list(APPEND tests "${test}")
    endif()
  elseif(line MATCHES "^([^ ]+)[.]$")
    string(REGEX REPLACE "[.]$" "" ended "${suite}")
    add_entry("${ended}" ${tests})
    set(suite "${line}")
    set(tests "")
  endif()
endforeach()
string(REGEX REPLACE "[.]$" "" ended "${suite}")
add_entry("${ended}" ${tests})
file(WRITE ${LIST} "${entries}")
