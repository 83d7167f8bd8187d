#ifndef CAMCFG_TOOL_CLI_ARGUMENTS_H
#define CAMCFG_TOOL_CLI_ARGUMENTS_H

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/host_directory.h"
#include "base/host_file.h"

namespace camcfg::tool::cli {

/// What was given to a command, by the names in its options and in those of the commands above it.
/// Asking for a name that is in none of them throws std::logic_error: it can only be a mistake.
class Arguments {
 public:
  /// Makes a name known; nothing is given for it yet.
  void declare(const std::string& name) { known_[name]; }

  void add(const std::string& name, std::vector<std::string> texts) {
    known_[name].texts = std::move(texts);
  }
  void add(const std::string& name, std::unique_ptr<HostDirectory> directory) {
    known_[name].directory = std::move(directory);
  }
  void add(const std::string& name, std::vector<HostFile> files) {
    known_[name].files = std::move(files);
  }

  bool given(const std::string& name) const { return !texts(name).empty(); }
  /// The text given, or what was in the file given; empty if none was.
  std::string text(const std::string& name) const { return given(name) ? texts(name).front() : ""; }
  /// All texts given.
  const std::vector<std::string>& texts(const std::string& name) const { return at(name).texts; }
  /// The directory given, opened before the device's root was entered; null if none was.
  HostDirectory* directory(const std::string& name) const { return at(name).directory.get(); }
  /// All files given that are read whole.
  const std::vector<HostFile>& files(const std::string& name) const { return at(name).files; }

 private:
  struct Given {
    std::vector<std::string> texts;
    std::unique_ptr<HostDirectory> directory;
    std::vector<HostFile> files;
  };

  const Given& at(const std::string& name) const {
    const auto found = known_.find(name);
    if (found == known_.end()) throw std::logic_error("no argument is named " + name);
    return found->second;
  }

  std::map<std::string, Given> known_;
};

}  // namespace camcfg::tool::cli

#endif
