#ifndef CAMCFG_TESTS_PARAMS_PARAMS_TEST_H
#define CAMCFG_TESTS_PARAMS_PARAMS_TEST_H

#include <algorithm>
#include <cstring>
#include <string>

#include "camcfg/params.h"
#include "support/device_test.h"
#include "support/outcome.h"

namespace camcfg::tests {

/// A device with a parameter file. Whatever a test does, the file must be unlocked at its end.
class ParamsTest : public DeviceTest {
 protected:
  static constexpr char kFile[] = CFG_FILE_BUSINESS;
  static constexpr char kBackup[] = "/cfg1/business_param.xml";

  void TearDown() override {
    if (g_mapFileLock.count(kFile) == 0) return;
    EXPECT_TRUE(isUnlocked(kFile));
  }

  void write(const std::string& contents) { device.write(kFile, contents); }

  /// Expects both copies to hold this.
  void expectSaved(const std::string& contents) {
    EXPECT_EQ(device.read(kFile), contents);
    EXPECT_EQ(device.read(kBackup), contents);
  }
  /// Expects that nothing was saved since write() wrote this.
  void expectUntouched(const std::string& contents) {
    EXPECT_EQ(device.read(kFile), contents);
    EXPECT_FALSE(device.exists(kBackup));
  }
};

/// Matches the outcome of a call that says nothing on standard output.
inline auto returnsSilently(int result) {
  return testing::FieldsAre(result, "");
}

/// Matches a failure reported on standard output as "FUNCTION LINE message".
inline auto failsSaying(const std::string& function, const std::string& message) {
  return testing::FieldsAre(-1, testing::MatchesRegex(function + " [1-9][0-9]* " + message + "\n"));
}

inline auto loadFailure(const std::string& path = CFG_FILE_BUSINESS) {
  return testing::FieldsAre(3, "[CFG_GetDocByFileName:324] ", "Load file " + path + " fail\n");
}

inline auto rootFailure(const char* function, const std::string& path = CFG_FILE_BUSINESS) {
  return Logged(3, function, "Acquire " + path + " root failed\n");
}

/// A record between guard bytes, all pre-filled with a pattern that shows what was written.
template <typename Record>
class Guarded {
 public:
  Guarded() { std::memset(&memory_, kPattern, sizeof memory_); }
  Record* operator->() { return &memory_.record; }
  Record* get() { return &memory_.record; }
  bool guardsIntact() const { return isPattern(memory_.before) && isPattern(memory_.after); }

  /// Whether a field was not written.
  template <typename Field>
  static bool isPattern(const Field& field) {
    const char* bytes = reinterpret_cast<const char*>(&field);
    return std::all_of(bytes, bytes + sizeof field, [](char byte) { return byte == kPattern; });
  }
  /// Whether a field holds this text, its terminator, and the pattern after it.
  template <std::size_t Size>
  static bool isText(const char (&field)[Size], const std::string& text) {
    return std::strncmp(field, text.c_str(), Size) == 0 &&
           std::all_of(field + text.size() + 1, field + Size,
                       [](char byte) { return byte == kPattern; });
  }

 private:
  static constexpr char kPattern = 0x5a;
  struct {
    char before[64];
    Record record;
    char after[64];
  } memory_;
};

}  // namespace camcfg::tests

#endif
