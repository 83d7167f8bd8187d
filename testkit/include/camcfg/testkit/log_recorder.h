/// @file
/// Records what the library logs.
#ifndef CAMCFG_TESTKIT_LOG_RECORDER_H
#define CAMCFG_TESTKIT_LOG_RECORDER_H

#include <string>
#include <vector>

namespace camcfg {
namespace testkit {

/// One call of UTIL_LOG_Print.
struct LogRecord {
  int level;           ///< 3 error, 4 warning, 6 information
  std::string prefix;  ///< "[FUNCTION:LINE] "
  std::string text;    ///< the record's format with its arguments filled in

  /// The function that the prefix names; empty if the prefix has another form.
  std::string function() const;
  /// The line that the prefix names; 0 if the prefix has another form.
  int line() const;
};

/// Provides the platform's UTIL_LOG_Print to the test program. Records are kept, from all threads,
/// while an object of this class lives; one object at a time.
class LogRecorder {
 public:
  LogRecorder();
  ~LogRecorder();
  LogRecorder(const LogRecorder&) = delete;
  LogRecorder& operator=(const LogRecorder&) = delete;

  /// What was logged so far.
  std::vector<LogRecord> records() const;
  /// Only the texts.
  std::vector<std::string> texts() const;
  /// Forgets what was logged so far.
  void clear();
};

}  // namespace testkit
}  // namespace camcfg

#endif
