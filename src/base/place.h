#ifndef CAMCFG_BASE_PLACE_H
#define CAMCFG_BASE_PLACE_H

namespace camcfg {

/// Function and source line that a message names.
struct Place {
  const char* function;
  int line;
};

inline Place here(const char* function = __builtin_FUNCTION(), int line = __builtin_LINE()) {
  return {function, line};
}

}  // namespace camcfg

#endif
