#ifndef CAMCFG_TOOL_CLI_ARGUMENTS_H
#define CAMCFG_TOOL_CLI_ARGUMENTS_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/host_directory.h"
#include "base/host_file.h"

namespace camcfg::tool::cli {

/// What was given to a command, by the names in its options.
class Arguments {
 public:
  void add(const std::string& name, std::vector<std::string> texts) {
    texts_[name] = std::move(texts);
  }
  void add(const std::string& name, std::unique_ptr<HostDirectory> directory) {
    directories_[name] = std::move(directory);
  }
  void add(const std::string& name, std::vector<HostFile> files) {
    files_[name] = std::move(files);
  }

  bool given(const std::string& name) const { return texts_.count(name) != 0; }
  /// The text given, or what was in the file given; empty if none was.
  std::string text(const std::string& name) const { return given(name) ? texts(name).front() : ""; }
  /// All texts given.
  std::vector<std::string> texts(const std::string& name) const {
    const auto found = texts_.find(name);
    return found == texts_.end() ? std::vector<std::string>() : found->second;
  }
  /// The directory given, opened before the device's root was entered; null if none was.
  HostDirectory* directory(const std::string& name) const {
    const auto found = directories_.find(name);
    return found == directories_.end() ? nullptr : found->second.get();
  }
  /// All files given that are read whole.
  std::vector<HostFile> files(const std::string& name) const {
    const auto found = files_.find(name);
    return found == files_.end() ? std::vector<HostFile>() : found->second;
  }

 private:
  std::map<std::string, std::vector<std::string>> texts_;
  std::map<std::string, std::unique_ptr<HostDirectory>> directories_;
  std::map<std::string, std::vector<HostFile>> files_;
};

}  // namespace camcfg::tool::cli

#endif
