#ifndef CAMCFG_TESTS_PRESET_PRESET_TEST_H
#define CAMCFG_TESTS_PRESET_PRESET_TEST_H

#include <cstring>
#include <limits>
#include <ostream>
#include <string>

#include "camcfg/preset.h"
#include "support/device_test.h"

inline bool operator==(const tagPRESET_CFG_S& left, const tagPRESET_CFG_S& right) {
  return std::memcmp(&left, &right, sizeof left) == 0;
}

inline void PrintTo(const tagPRESET_CFG_S& record, std::ostream* out) {
  *out << record.s32Id << " pan " << record.s32PanPos << " tilt " << record.s32TiltPos << " zoom "
       << record.s32ZoomPos << " focus " << record.s32FocusPos << " mode " << record.s32FocusMode
       << " description "
       << testing::PrintToString(std::string(record.s8Description, sizeof record.s8Description));
}

namespace camcfg::tests {

constexpr int kMin = std::numeric_limits<int>::min();
constexpr int kMax = std::numeric_limits<int>::max();

/// A test with a preset file.
class PresetTest : public DeviceTest {
 protected:
  /// Makes both copies of the preset file.
  void givenFile(const std::string& contents) const {
    device.write("/cfg0/preset_cfg.xml", contents);
    device.write("/cfg1/preset_cfg.xml", contents);
  }
  /// Makes both copies of the preset file, with these lines in the preset group.
  void givenPresets(const std::string& lines) const { givenFile(group(lines)); }

  /// The file that holds these lines in the preset group, as the library writes it.
  static std::string group(const std::string& lines) {
    return "<PresetCfg>\n" + lines + "</PresetCfg>\n";
  }

  void expectBothCopies(const std::string& contents) const {
    EXPECT_EQ(device.read("/cfg0/preset_cfg.xml"), contents);
    EXPECT_EQ(device.read("/cfg1/preset_cfg.xml"), contents);
  }

  /// Whether the file's lock was never asked for.
  static bool neverLocked() { return g_mapFileLock.count(CFG_FILE_PRESET) == 0; }
  static bool unlocked() { return isUnlocked(CFG_FILE_PRESET); }
};

/// A record all of whose bytes are the same, to show what a query writes.
inline tagPRESET_CFG_S patterned() {
  tagPRESET_CFG_S record;
  std::memset(&record, 0x5A, sizeof record);
  return record;
}

/// A record with these numbers and, at the start of a zeroed field, this description.
inline tagPRESET_CFG_S preset(int id, const std::string& description, int pan = 1, int tilt = 2,
                              int zoom = 3, int focus = 4, int mode = 5) {
  tagPRESET_CFG_S record{id, pan, tilt, zoom, focus, mode, {}};
  description.copy(record.s8Description, sizeof record.s8Description);
  return record;
}

/// The operations that take one preset file each, run with the preset 1, "Door".
struct Operation {
  const char* function;
  int (*run)(tagPRESET_CFG_S& record, int& number);
};

inline constexpr Operation kOperations[] = {
    {"CFG_PRESET_SetParam",
     [](tagPRESET_CFG_S& record, int&) { return CFG_PRESET_SetParam(&record); }},
    {"CFG_PRESET_DeleteById", [](tagPRESET_CFG_S&, int&) { return CFG_PRESET_DeleteById(1); }},
    {"CFG_PRESET_DeleteByDesc",
     [](tagPRESET_CFG_S&, int&) { return CFG_PRESET_DeleteByDesc("Door"); }},
    {"CFG_PRESET_QueryOneById",
     [](tagPRESET_CFG_S& record, int&) { return CFG_PRESET_QueryOneById(1, &record); }},
    {"CFG_PRESET_QueryOneByDesc",
     [](tagPRESET_CFG_S& record, int&) { return CFG_PRESET_QueryOneByDesc("Door", &record); }},
    {"CFG_PRESET_GetCountNum",
     [](tagPRESET_CFG_S&, int& number) { return CFG_PRESET_GetCountNum(&number); }},
    {"CFG_PRESET_GetUnusedId",
     [](tagPRESET_CFG_S&, int& number) { return CFG_PRESET_GetUnusedId(&number); }},
};

}  // namespace camcfg::tests

#endif
