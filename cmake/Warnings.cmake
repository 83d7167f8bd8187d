add_library(camcfg_warnings INTERFACE)
target_compile_options(camcfg_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor
  $<$<BOOL:${CAMCFG_WERROR}>:-Werror>)
