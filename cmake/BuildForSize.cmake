# The released library has to fit a small flash: it is built for size, at no measurable cost, since
# nearly all its time is spent parsing and in system calls. Other kinds of build stay easy to debug.
if(NOT CMAKE_BUILD_TYPE MATCHES "^(Release|MinSizeRel)$")
  return()
endif()

include(CheckCXXCompilerFlag)
include(CheckIPOSupported)

target_link_options(camcfg PRIVATE LINKER:--gc-sections)

check_ipo_supported(RESULT has_ipo OUTPUT why_not LANGUAGES CXX)
set_target_properties(camcfg PROPERTIES INTERPROCEDURAL_OPTIMIZATION ${has_ipo})

# Where nothing throws, tables for unwinding the stack would be a tenth of the library; as one unit
# the compiler sees through the calls between its files.
set_target_properties(camcfg_nothrow PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
target_compile_options(camcfg_nothrow PRIVATE
  -ffunction-sections -fdata-sections -fno-asynchronous-unwind-tables -fno-unwind-tables)
check_cxx_compiler_flag(-fno-semantic-interposition has_no_semantic_interposition)
if(has_no_semantic_interposition)
  target_compile_options(camcfg_nothrow PRIVATE -fno-semantic-interposition)
endif()

# On 64-bit ARM the records' shared pointers count with a few instructions instead of calls that look
# for newer ones, and an address is made by one instruction instead of two, which reaches 1 MiB.
set(size_options -Os -fomit-frame-pointer)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  check_cxx_compiler_flag(-mno-outline-atomics has_no_outline_atomics)
  if(has_no_outline_atomics)
    list(APPEND size_options -mno-outline-atomics)
  endif()
  check_cxx_compiler_flag(-mcmodel=tiny has_tiny_model)
  if(has_tiny_model)
    list(APPEND size_options -mcmodel=tiny)
  endif()
endif()
foreach(target camcfg camcfg_nothrow)
  target_compile_options(${target} PRIVATE ${size_options})
endforeach()
target_link_options(camcfg PRIVATE ${size_options})

# Nobody asks for the types of these records while running, so their names only take room. Stream
# sources are of a class with derived ones, between which programs may distinguish.
set_source_files_properties(
  ${CMAKE_SOURCE_DIR}/src/media/caches.cpp ${CMAKE_SOURCE_DIR}/src/media/rtsp.cpp
  PROPERTIES COMPILE_OPTIONS -fno-rtti)
