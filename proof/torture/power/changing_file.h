#ifndef CAMCFG_TORTURE_POWER_CHANGING_FILE_H
#define CAMCFG_TORTURE_POWER_CHANGING_FILE_H

#include <optional>
#include <string>
#include <vector>

#include "torture/harness/device.h"

namespace camcfg::torture {

/// A file of the sample set, one setting of which is changed by a single save of the library.
class ChangingFile {
 public:
  using Save = void (*)(int value);

  ChangingFile(const char* name, Save howToSave) : name_(name), save_(howToSave) {}

  const char* name() const { return name_; }
  /// Called inside the device: one save that sets the value, 10000 to 65535.
  void save(int value) const { save_(value); }

  /// Finds out, on a filled device, what the file looks like when the library has saved it.
  void learn(const Device& device);
  /// The whole file with this value, as the library writes it.
  std::string textWith(int value) const { return before_ + std::to_string(value) + behind_; }
  /// Writes both copies with this value.
  void layOut(const Device& device, int value) const;

 private:
  const char* name_;
  Save save_;
  std::string before_;
  std::string behind_;
};

/// One for each file of the sample set.
std::vector<ChangingFile> changingFiles();

/// What a copy of such a file may hold.
enum class Contents { Old, New, CutShort, Damaged, Empty, Missing };

const char* wordFor(Contents contents);

/// @param text  none for a file that is missing
Contents contentsOf(const std::optional<std::string>& text, const std::string& oldText,
                    const std::string& newText);

/// Whether every setting is there with its old or its new value.
inline bool isWhole(Contents contents) {
  return contents == Contents::Old || contents == Contents::New;
}

}  // namespace camcfg::torture

#endif
