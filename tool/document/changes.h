#ifndef CAMCFG_TOOL_DOCUMENT_CHANGES_H
#define CAMCFG_TOOL_DOCUMENT_CHANGES_H

#include <map>
#include <string>
#include <vector>

#include "device/calm.h"
#include "document/document.h"

namespace camcfg::tool::document {

/// The places that somebody wants to know of. A place is that of a setting in a document,
/// "live.srt[1].port", or of anything that it is in; "[]" stands for every entry. Parameters may be
/// named without "parameters.": "System", and "System/Rtsp" or the two words "System" "Rtsp".
class Places {
 public:
  /// @param given  words of a command line; none: all places
  /// @throws Refusal  there is no such section or parameter
  explicit Places(const std::vector<std::string>& given);

  /// Whether a difference at a place is of interest: below one of these, or with one of them in it.
  bool include(const std::string& place) const;

 private:
  std::vector<std::string> places_;
};

/// A device's settings as they were when they could be read last, and what changed since.
class Changes {
 public:
  /// Reads the files that are not as they were. A file that cannot be read, or is being written,
  /// counts once it can be read again.
  /// @return the sections that differ from the last time
  std::vector<Transition> look();

  /// What keeps files from being read now, by their paths.
  const std::map<std::string, std::string>& faults() const { return faults_; }
  /// The files that are looked at.
  static std::vector<std::string> files();
  /// Whether one of them could be read before and cannot now, or is being written, or none can be read.
  bool isUneasy() const;

 private:
  struct FileState {
    device::Signature main{-1};
    device::Signature backup{};
    bool wasRead = false;
    bool isBeingWritten = false;
  };

  void lookAt(const std::string& path, std::vector<Transition>& found);

  std::map<std::string, FileState> states_;  // by path
  std::map<const device::Section*, Json> sections_;
  std::map<std::string, std::string> faults_;
};

}  // namespace camcfg::tool::document

#endif
