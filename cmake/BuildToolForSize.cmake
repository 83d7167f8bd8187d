# What goes onto a device is built for size: the tool is linked as one unit, which takes an eighth
# off. That takes half a minute, so what is built to be used on this machine does without.
if(NOT CMAKE_BUILD_TYPE MATCHES "^(Release|MinSizeRel)$"
   OR NOT CMAKE_CXX_COMPILER_ID STREQUAL GNU OR NOT (CMAKE_CROSSCOMPILING OR CAMCFG_PACKAGES))
  return()
endif()

# The tests link the same objects, but not as one unit.
set(size_options -flto=auto $<IF:$<BOOL:${CAMCFG_TESTS}>,-ffat-lto-objects,-fno-fat-lto-objects>
  -Os -fomit-frame-pointer $<$<BOOL:${has_no_outline_atomics}>:-mno-outline-atomics>)
target_compile_options(camcfg_tool_parts PRIVATE ${size_options})
target_compile_options(camcfg-tool PRIVATE ${size_options})
target_link_options(camcfg-tool PRIVATE ${size_options} LINKER:--gc-sections)
# Files that are compiled together get larger: more is inlined before the tool is seen as a whole.
set_target_properties(camcfg_tool_parts PROPERTIES UNITY_BUILD OFF)
