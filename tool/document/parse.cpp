#include "document/parse.h"

#include <algorithm>

#include "base/json_place.h"
#include "base/json_reader.h"
#include "base/printable.h"
#include "base/refusal.h"

namespace camcfg::tool::document {
namespace {

// "line 3, column 5: " of a byte that is counted from 1.
std::string placeOf(std::size_t position, const std::string& text) {
  const std::size_t byte = std::min(position == 0 ? 0 : position - 1, text.size());
  const std::string before = text.substr(0, byte);
  const std::size_t line = before.rfind('\n');
  const std::string start = line == std::string::npos ? before : before.substr(line + 1);
  return "line " + std::to_string(1 + std::count(before.begin(), before.end(), '\n')) +
         ", column " + std::to_string(1 + characters(start)) + ": ";
}

}  // namespace

Json parseJson(const std::string& text, settings::Faults& faults) {
  JsonText read = readJson(text);
  if (read.fault != 0) throw Refusal(placeOf(read.fault, text) + shortened(read.reason));
  for (const std::string& place : read.repeated) faults.push_back({place, "it stands here twice"});
  return std::move(read.value);
}

}  // namespace camcfg::tool::document
