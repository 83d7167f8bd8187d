// Numbers of a command line.
#ifndef EXAMPLES_NUMBER_H
#define EXAMPLES_NUMBER_H

#include <cerrno>
#include <climits>
#include <cstdlib>

/// Reads a whole decimal number. False, with the number untouched, for any other text.
inline bool readNumber(const char* text, int* number) {
  char* end = nullptr;
  errno = 0;
  const long value = std::strtol(text, &end, 10);
  if (end == text || *end != '\0' || errno != 0 || value < INT_MIN || value > INT_MAX) return false;
  *number = static_cast<int>(value);
  return true;
}

#endif
