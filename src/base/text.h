#ifndef CAMCFG_BASE_TEXT_H
#define CAMCFG_BASE_TEXT_H

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace camcfg {

/// Copies a text with its terminator, cut to the field's size. Bytes after the terminator keep
/// their contents.
inline void copyText(char* destination, std::size_t room, const char* text) {
  const std::size_t length = std::min(std::strlen(text), room - 1);
  std::memcpy(destination, text, length);
  destination[length] = '\0';
}

template <std::size_t Room>
void copyText(char (&destination)[Room], const char* text) {
  copyText(destination, Room, text);
}

/// Builds "DIRECTORY/NAME", cut to the size of `path`.
template <std::size_t Room, std::size_t Length>
void joinPath(char (&path)[Room], const char (&directory)[Length], const char* name) {
  static_assert(Length < Room, "the directory and its slash must fit");
  copyText(path, directory);
  const std::size_t used = std::strlen(path);
  path[used] = '/';
  copyText(path + used + 1, Room - used - 1, name);
}

/// Copies the characters of a text, at most `room`, without a terminator.
inline void copyCharacters(char* destination, std::size_t room, const char* text) {
  std::copy_n(text, std::min(std::strlen(text), room), destination);
}

/// Whether a text begins with another; the empty text begins every text.
inline bool beginsWith(const char* text, const char* beginning) {
  return std::strncmp(text, beginning, std::strlen(beginning)) == 0;
}

}  // namespace camcfg

#endif
