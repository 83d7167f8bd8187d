#include "device/former_files.h"

#include "base/refusal.h"
#include "device/change.h"
#include "device/room.h"

namespace camcfg::tool::device {

FormerFiles::FormerFiles(const std::map<std::string, std::size_t>& growth) {
  std::vector<Writing> writings;
  for (const auto& [path, bytes] : growth) {
    Document& document = documents_[path];
    document = requireDocument(path);
    const std::uintmax_t size = written(*document).size() + bytes;
    writings.push_back({path, size});
    writings.push_back({backupOf(path), size});
  }
  const std::string fault = whyNotWritable(writings);
  if (!fault.empty()) throw Refusal(fault);
}

std::vector<std::string> FormerFiles::putBack() {
  std::vector<std::string> faults;
  for (const auto& [path, document] : documents_) {
    const Left left = device::putBack(path, *document);
    if (!left.asItWas) faults.push_back(path + ": " + left.text);
  }
  return faults;
}

}  // namespace camcfg::tool::device
