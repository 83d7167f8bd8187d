#include "torture/salvage/recovery.h"

#include <unistd.h>

#include "torture/harness/child.h"

namespace camcfg::torture {
namespace {

constexpr char kProgram[] = "/usr/bin/xmllint";
constexpr char kStart[] = "<all>";
constexpr char kEnd[] = "</all>";

}  // namespace

bool Recovery::isThere() {
  return access(kProgram, X_OK) == 0;
}

std::string Recovery::of(const std::string& text) const {
  directory_.write("/in.xml", text);
  directory_.remove("/out.xml");
  const std::string root = directory_.hostPath();
  runProgram({kProgram, "--recover", "--output", root + "/out.xml", root + "/in.xml"});
  return directory_.exists("/out.xml") ? directory_.read("/out.xml") : "";
}

std::string Recovery::inOneElement(const std::string& text) const {
  const std::string all = of(kStart + text);
  const std::size_t start = all.find(kStart);
  const std::size_t end = all.rfind(kEnd);
  if (start == std::string::npos || end == std::string::npos) return "";
  const std::size_t inner = start + sizeof kStart - 1;
  return all.substr(inner, end - inner);
}

}  // namespace camcfg::torture
