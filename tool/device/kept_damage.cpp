#include "device/kept_damage.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/history.h"
#include "device/state_contents.h"
#include "device/state_folder.h"

namespace camcfg::tool::device {
namespace {

constexpr char kDamaged[] = "damaged";
constexpr std::size_t kMostKept = 4;  // of one copy

[[noreturn]] void notKept(const std::string& path, const std::string& why) {
  throw Refusal(concat(path, " cannot be kept: ", why));
}

// The numbers of what is kept under a name.
std::set<int> numbersOf(const StateFolder& folder, const std::string& name) {
  std::set<int> numbers;
  for (const std::string& each : folder.names()) {
    if (!beginsWith(each, name + ".")) continue;
    const auto number = decimal32(each.substr(name.size() + 1));
    if (number && *number > 0) numbers.insert(*number);
  }
  return numbers;
}

}  // namespace

std::string keepDamaged(const std::string& path) {
  const std::optional<std::string> bytes = readFile(path);
  if (!bytes) notKept(path, std::strerror(errno));
  std::string name = path.substr(1);
  std::replace(name.begin(), name.end(), '/', '-');
  const StateFolder folder = StateFolder::made().madeFolder(kDamaged);
  if (!folder) notKept(path, concat(kStateDirectory, "/", kDamaged, ": ", std::strerror(errno)));
  const auto pathOf = [&](const std::string& kept) {
    return concat(kStateDirectory, "/", kDamaged, "/", kept);
  };
  std::set<int> numbers = numbersOf(folder, name);
  for (const int number : numbers) {
    const std::string kept = concat(name, ".", number);
    if (folder.read(kept, kMostBytes).bytes == *bytes) return pathOf(kept);
  }
  const std::string kept = concat(name, ".", numbers.empty() ? 1 : *numbers.rbegin() + 1);
  while (!folder.write(kept, *bytes))
    if (errno != ENOSPC || !forgetOldest()) notKept(path, std::strerror(errno));
  if (!folder.flush()) notKept(path, std::strerror(errno));
  for (; numbers.size() >= kMostKept; numbers.erase(numbers.begin()))
    folder.remove(concat(name, ".", *numbers.begin()));
  return pathOf(kept);
}

}  // namespace camcfg::tool::device
