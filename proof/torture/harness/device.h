#ifndef CAMCFG_TORTURE_HARNESS_DEVICE_H
#define CAMCFG_TORTURE_HARNESS_DEVICE_H

#include <array>
#include <optional>
#include <string>

#include "camcfg/testkit/device_root.h"
#include "support/quick_saves.h"

namespace camcfg::torture {

/// Where a device asks for locks between programs.
inline constexpr char kLockDirectory[] = "/run/camcfg";

/// The files of the sample set.
inline constexpr std::array<const char*, 3> kSampleFiles = {"business_param.xml", "mpp_cfg.xml",
                                                            "preset_cfg.xml"};

std::string mainPath(const std::string& name);
std::string backupPath(const std::string& name);
std::string factoryPath(const std::string& name);

/// A file of the sample set as the tree has it.
std::string sampleText(const std::string& name);

/// A scratch device in memory, where the host has a file system for that, that children enter.
/// sync() returns at once in this process and the children that it forks.
class Device : private tests::QuickSaves {
 public:
  const std::string& root() const { return root_.hostPath(); }
  std::string hostPath(const std::string& path) const { return root() + path; }

  /// Lays out the sample set: factory defaults, main copies, backups, languages.
  void fill() const;

  void write(const std::string& path, const std::string& text) const;
  void remove(const std::string& path) const { root_.remove(path); }
  /// A file's text; none when it is missing.
  std::optional<std::string> read(const std::string& path) const;
  void makeDirectory(const std::string& path) const { root_.makeDirectory(path); }

  /// The same for a child that has entered a device.
  static void writeHere(const std::string& path, const std::string& text);
  static void removeHere(const std::string& path);
  static std::optional<std::string> readHere(const std::string& path);

 private:
  testkit::DeviceRoot root_{testkit::DeviceRoot::StayOut};
};

}  // namespace camcfg::torture

#endif
