#ifndef CAMCFG_FUZZ_DEVICE_H
#define CAMCFG_FUZZ_DEVICE_H

#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>

namespace camcfg::fuzz {

/// Thrown by a target when the library does not do what its headers promise.
class Broken : public std::logic_error {
  using std::logic_error::logic_error;
};

/// Throws Broken unless a promise holds.
inline void require(bool holds, const std::string& promise) {
  if (!holds) throw Broken("broken: " + promise);
}

/// Whether a field of a record ends within its width.
template <std::size_t Size>
bool isTerminated(const char (&field)[Size]) {
  return std::memchr(field, 0, Size) != nullptr;
}

/// Lays out the scratch device of this process, outside of which it stays. Call it first while the
/// process has one thread.
void prepareDevice();

/// Runs something inside the device, which is empty at first, with standard output silenced.
/// @throws Broken if a file's lock is held afterwards
void inDevice(const std::function<void()>& run);

/// Goes back outside from within, for a report on a crash: programs and files of the host are needed
/// for it.
void leaveDevice();

/// A file of the device. One that does not exist reads as kNoFile, and writing that removes it.
void writeFile(const std::string& path, const std::string& contents);
std::string readFile(const std::string& path);
inline constexpr char kNoFile[] = "-";

/// A file of a device that has a little of everything, from small_device/.
const std::string& smallFile(const std::string& name);

/// Releases a file's lock where a call has deliberately left it held.
void releaseIfLocked(const char* path);

/// A text as it comes back from an attribute of a saved file: line ends are "\n".
std::string asReadBack(const std::string& text);

}  // namespace camcfg::fuzz

#endif
