#ifndef CAMCFG_TESTS_TOOL_SALVAGE_SCENE_H
#define CAMCFG_TESTS_TOOL_SALVAGE_SCENE_H

#include <cstddef>
#include <map>
#include <random>
#include <string>

#include "device/salvage.h"

namespace camcfg::tests {

/// Settings by their places, read from a text that is well-formed; entries of lists as XML.
using Values = std::map<std::string, std::string>;

/// @return empty for a text that is not well-formed
Values valuesOf(const std::string& text);

/// A file in which nearly every setting has a permitted value that the factory copy and copies with
/// other marks do not have, and in which an entry is missing and another one is new.
std::string marked(const std::string& factory, int mark);

// Damages.
std::string cut(const std::string& text, std::size_t size);
/// A block of so many bytes, at a multiple of its size, full of zeroes.
std::string zeroed(std::string text, std::size_t block, std::size_t size);
/// The same with the bytes of the block before it.
std::string repeated(std::string text, std::size_t block, std::size_t size);
std::string flipped(std::string text, std::mt19937& random);
inline std::size_t blocksOf(const std::string& text, std::size_t size) {
  return (text.size() + size - 1) / size;
}

/// What the copies of a file held before they were damaged, and what salvage makes of them.
struct SalvageScene {
  std::string factory;
  std::string main = marked(factory, 1);
  std::string backup = marked(factory, 2);
  Values inFactory = valuesOf(factory);
  Values inMain = valuesOf(main);
  Values inBackup = valuesOf(backup);

  /// How many settings have the value that the undamaged main copy has, taken from there.
  std::size_t broughtBack(const Values& result) const;
  /// How many settings have a value that is in none of the undamaged copies.
  std::size_t invented(const Values& result) const;
  /// What is wrong with a report and its file: a value that the source given for it did not have
  /// before the damage, or that is not in the file; empty if nothing is.
  std::string faultOf(const tool::device::SalvagedFile& salvaged) const;
};

}  // namespace camcfg::tests

#endif
