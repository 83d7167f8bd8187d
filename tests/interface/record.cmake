# Compares the interface with the one on record.
#   cmake -D CHECK=... -D SOURCE=... -D SCRATCH=... -D COMPILER=... -P record.cmake
cmake_minimum_required(VERSION 3.25)

set(record ${SOURCE}/packaging/interface)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# What abidiff reports of a file of the record and a library or another record; empty for no difference.
function(differences_from name other result)
  execute_process(
    COMMAND abidiff --suppressions ${record}/not-ours.ini ${record}/${name} ${other}
    RESULT_VARIABLE status OUTPUT_VARIABLE report)
  if(status EQUAL 0)
    set(report "")
  elseif(NOT status MATCHES "^[0-9]+$" OR report STREQUAL "")
    message(FATAL_ERROR "abidiff: ${status}")
  endif()
  set(${result} "${report}" PARENT_SCOPE)
endfunction()

function(expect_as_recorded name)
  differences_from(${name} ${SCRATCH}/now/${name} report)
  if(report)
    message(NOTICE "${report}")
    message(FATAL_ERROR "The interface is not the one on record in packaging/interface. What may "
      "change is stated in docs/compatibility.md; scripts/record-interface.sh renews the record.")
  endif()
endfunction()

function(IsRecordedAgain)
  run(${SOURCE}/scripts/record-interface.sh ${SCRATCH}/now ${SCRATCH}/build)
endfunction()

function(LibraryIsAsRecorded)
  expect_as_recorded(libcamcfg.abi)
endfunction()

function(RecordsAreAsRecorded)
  expect_as_recorded(records.abi)
endfunction()

# Alters one header or source of a copy, and expects the comparison to report it in these words.
function(alter file old new)
  file(REMOVE_RECURSE ${SCRATCH}/altered)
  file(COPY ${SOURCE}/include ${SOURCE}/src
    DESTINATION ${SCRATCH}/altered)
  file(READ ${SCRATCH}/altered/${file} text)
  string(FIND "${text}" "${old}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${file} no longer has: ${old}")
  endif()
  string(REPLACE "${old}" "${new}" text "${text}")
  file(WRITE ${SCRATCH}/altered/${file} "${text}")
endfunction()

# Versions of abidiff write a function without parameters as f() or as f(void).
function(expect_reported name words)
  differences_from(${name} ${SCRATCH}/altered.so report)
  string(REPLACE "(void)" "()" report "${report}")
  string(FIND "${report}" "${words}" at)
  if(at EQUAL -1)
    message(NOTICE "${report}")
    message(FATAL_ERROR "not reported: ${words}")
  endif()
endfunction()

function(link_altered)
  run(${COMPILER} -std=c++17 -g -O0 -fPIC -shared -fvisibility=hidden
    -I ${SCRATCH}/altered/include -I ${SCRATCH}/altered/src ${ARGN} -o ${SCRATCH}/altered.so)
endfunction()

function(expect_altered_record_reported file old new words)
  alter(include/camcfg/${file} "${old}" "${new}")
  link_altered(${SOURCE}/tests/interface/records.cpp)
  expect_reported(records.abi "${words}")
endfunction()

function(FieldAddedToARecordIsNoticed)
  expect_altered_record_reported(livemedia.h "std::list<int> lstChannel;"
    "std::int32_t s32Added = 0; std::list<int> lstChannel;" "1 data member insertion")
endfunction()

function(FieldAtAnotherOffsetIsNoticed)
  expect_altered_record_reported(preset.h
    "std::int32_t s32Id;" "std::int32_t s32Swapped; std::int32_t s32Id;"
    "offset changed from 0 to 32 (in bits)")
endfunction()

function(WiderFieldIsNoticed)
  expect_altered_record_reported(network.h "CFG_NETWORK_TEXT_SIZE 32" "CFG_NETWORK_TEXT_SIZE 64"
    "array type size changed from 256 to 512")
endfunction()

function(ValueOfAnEnumerationIsNoticed)
  expect_altered_record_reported(network.h "IP_MODE_STATIC = 1" "IP_MODE_STATIC = 2"
    "'tagIP_MODE_E::IP_MODE_STATIC' from value '1' to '2'")
endfunction()

function(NewVirtualFunctionIsNoticed)
  expect_altered_record_reported(stream.h "virtual ~tag_CFG_STREAM_SOURCE_T() = default;"
    "virtual int kind() const { return 0; } virtual ~tag_CFG_STREAM_SOURCE_T() = default;"
    "'method virtual int tag_CFG_STREAM_SOURCE_T::kind() const'")
endfunction()

# A library of some of the sources has everything else removed, which is reported as well; what counts
# is the function that was altered.
function(RemovedFunctionIsNoticed)
  alter(include/camcfg/params.h "CFG_API int CFG_SYSTEM_GetRtspPort();"
    "int CFG_SYSTEM_GetRtspPort();")
  link_altered(${SCRATCH}/altered/src/params/system.cpp)
  expect_reported(libcamcfg.abi "[D] 'function int CFG_SYSTEM_GetRtspPort()'")
endfunction()

function(ChangedResultIsNoticed)
  alter(include/camcfg/params.h "CFG_API int CFG_SYSTEM_GetRtspPort();"
    "CFG_API long CFG_SYSTEM_GetRtspPort();")
  file(READ ${SCRATCH}/altered/src/params/system.cpp text)
  string(REPLACE "int CFG_SYSTEM_GetRtspPort()" "long CFG_SYSTEM_GetRtspPort()" text "${text}")
  file(WRITE ${SCRATCH}/altered/src/params/system.cpp "${text}")
  link_altered(${SCRATCH}/altered/src/params/system.cpp)
  expect_reported(libcamcfg.abi "return type changed:\n      type name changed from 'int' to 'long int'")
endfunction()

cmake_language(CALL ${CHECK})
