#include "device/directory.h"

#include <algorithm>
#include <filesystem>

namespace camcfg::tool::device {
namespace {

namespace fs = std::filesystem;

template <typename Wanted>
std::vector<std::string> entriesOf(const std::string& directory, Wanted wanted) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end;
       entry.increment(error))
    if (wanted(*entry)) names.push_back(entry->path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

std::vector<std::string> filesIn(const std::string& directory) {
  return entriesOf(directory, [](const fs::directory_entry& entry) {
    std::error_code ignored;
    return entry.symlink_status(ignored).type() == fs::file_type::regular;
  });
}

std::vector<std::string> namesIn(const std::string& directory) {
  return entriesOf(directory, [](const fs::directory_entry&) { return true; });
}

bool isXmlName(const std::string& name) {
  return fs::path(name).extension() == ".xml";
}

}  // namespace camcfg::tool::device
