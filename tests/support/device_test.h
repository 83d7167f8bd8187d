#ifndef CAMCFG_TESTS_SUPPORT_DEVICE_TEST_H
#define CAMCFG_TESTS_SUPPORT_DEVICE_TEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "camcfg/store.h"
#include "camcfg/testkit/captured_output.h"
#include "camcfg/testkit/device_root.h"
#include "camcfg/testkit/log_recorder.h"

namespace camcfg::testkit {

inline void PrintTo(const LogRecord& record, std::ostream* out) {
  *out << record.level << ' ' << record.prefix << record.text;
}

}  // namespace camcfg::testkit

namespace camcfg::tests {

using testkit::captureOutput;

/// A test inside an empty scratch device with the library's log recorded.
class DeviceTest : public testing::Test {
 protected:
  testkit::DeviceRoot device;
  testkit::LogRecorder log;
};

/// A text as the interface takes it: the library's `char*` arguments are not written to.
inline char* text(const char* literal) {
  return const_cast<char*>(literal);
}

/// Whether a path is unlocked, found out without waiting. The path must have been named before.
inline bool isUnlocked(const std::string& path) {
  pthread_mutex_lock(&g_lockMapFileLock);
  const tag_CFG_FILE_LOCK record = g_mapFileLock.at(path);
  pthread_mutex_unlock(&g_lockMapFileLock);
  if (pthread_mutex_trylock(record.pstMutex) != 0) return false;
  pthread_mutex_unlock(record.pstMutex);
  return record.s32Locked == 0;
}

/// Matches a log record by its level, the function it names and its text.
MATCHER_P3(Logged, level, function, message, "") {
  return arg.level == level && arg.function() == function && arg.line() > 0 && arg.text == message;
}

}  // namespace camcfg::tests

#endif
