#include "base/library_console.h"

#include <cstdio>
#include <exception>

#include "base/library_log.h"
#include "base/memory_file.h"

namespace camcfg::tool {
namespace {

// Stands in for descriptor 1 while the library prints.
class Ear {
 public:
  Ear() : former_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    listening_ = former_ && dup2(printed_.get(), STDOUT_FILENO) == STDOUT_FILENO;
  }
  ~Ear() {
    if (!listening_) return;
    std::fflush(stdout);
    std::clearerr(stdout);
    dup2(former_.get(), STDOUT_FILENO);
    try {
      passOn(printed_.contents());
    } catch (const std::exception&) {
      // Without memory the lines are lost; what the library was doing goes on.
    }
  }
  Ear(const Ear&) = delete;
  Ear& operator=(const Ear&) = delete;

 private:
  static void passOn(const std::string& printed) {
    writeAll(STDOUT_FILENO, printed);
    const std::string complaint = complaintIn(printed);
    if (!complaint.empty()) recordComplaint(complaint);
  }

  MemoryFile printed_;
  Descriptor former_;
  bool listening_ = false;
};

std::string lastOf(const std::string& level, const std::string& printed) {
  const std::size_t line = printed.rfind("[" + level + "][CFG][");
  if (line == std::string::npos) return "";
  const std::size_t frame = printed.find("]: ", line);
  if (frame == std::string::npos) return "";
  std::string text = printed.substr(frame + 3, printed.find('\n', frame) - frame - 3);
  text.erase(text.find_last_not_of(" .") + 1);
  return text;
}

}  // namespace

std::string complaintIn(const std::string& printed) {
  const std::string error = lastOf("Error", printed);
  return error.empty() ? lastOf("Warning", printed) : error;
}

int heard(const std::function<int()>& call) {
  const Ear ear;
  return call();
}

}  // namespace camcfg::tool
