# Fails when the tool, as it is installed, is larger than a device has room for.
#   cmake -D TOOL=... -D STRIP=... -P size.cmake
cmake_minimum_required(VERSION 3.25)
set(most 1800000)

set(stripped ${TOOL}-stripped)
execute_process(COMMAND ${STRIP} -o ${stripped} ${TOOL} COMMAND_ERROR_IS_FATAL ANY)
file(SIZE ${stripped} bytes)
file(REMOVE ${stripped})
message("the tool: ${bytes} of ${most} bytes")
if(bytes GREATER most)
  message(FATAL_ERROR "the tool: ${bytes} bytes are more than ${most}")
endif()
