#ifndef CAMCFG_TOOL_DEVICE_CALM_H
#define CAMCFG_TOOL_DEVICE_CALM_H

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/host.h"
#include "base/outcome.h"
#include "device/files.h"

namespace camcfg::tool::device {

// Programs rewrite their files in place: while one saves, its file is half written, and the backup
// is older than the main copy. Nobody may take that for damage.

/// Distinguishes one state of a file from another. Two changes within a tick of the system's clock
/// may look the same, see ageOf.
using Signature = std::array<std::int64_t, 7>;

/// The signature of a file; of its directory if the file does not exist.
Signature signatureOf(const std::string& path);

/// How long ago a file was changed; 0 if its time is in the future.
std::chrono::milliseconds ageOf(const Signature& signature);

/// Whether some program has a regular file open for writing. False also where the kernel or the file
/// system does not say.
bool isOpenForWriting(const std::string& path);

/// The files as they were before somebody began to read them.
class Calm {
 public:
  Calm();

  /// Waits until all main copies and backups have been the same for 300 ms, or are the same as each
  /// other, and nobody has a main copy open for writing; for 3 s at most, all calls together.
  /// @return whether they changed since they were read last, so that it is worth reading them again
  bool lookAgain();

 private:
  using Files = std::map<std::string, Signature>;  // by path

  static Files filesNow();
  static Files& latest();

  Files noted_;
  std::optional<std::chrono::steady_clock::time_point> deadline_;
};

/// Reads files, again for as long as other programs change them and the result is in doubt.
/// @param read   a refusal with the status of unusable files is in doubt, too
/// @param doubt  whether a result may come of a half-written file
template <typename Read, typename Doubt>
auto calmly(Read read, Doubt doubt) {
  for (Calm calm;;) try {
      auto result = read();
      if (!doubt(result) || !calm.lookAgain()) return result;
    } catch (const Refusal& refusal) {
      if (refusal.status() != Status::Unusable || !calm.lookAgain()) throw;
    }
}

/// A main copy, read again as long as another program may be saving it.
Copy loadCalmly(const std::string& path);

/// While this object lives, whoever opens one of the files for writing waits, where the kernel and
/// the file system grant that. The holder itself must not write them either.
class ReadLeases {
 public:
  /// Waits up to 3 s for files that somebody is writing, and goes without them then.
  explicit ReadLeases(const std::vector<std::string>& paths);

 private:
  std::vector<Descriptor> files_;
};

}  // namespace camcfg::tool::device

#endif
