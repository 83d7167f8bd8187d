#include "fuzz/input.h"

#include <tinyxml2.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace camcfg::fuzz {
namespace {

// What is written of a document that was read; nothing if it cannot be read.
std::string rewritten(const std::string& text) {
  tinyxml2::XMLDocument document;
  if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) return "";
  tinyxml2::XMLPrinter printer;
  document.Print(&printer);
  return printer.CStr();
}

bool isStableXml(const std::string& text) {
  const std::string once = rewritten(text);
  return once.empty() || !rewritten(once).empty();
}

}  // namespace

std::vector<std::string> split(const std::string& input) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t at; (at = input.find(kSeparator, start)) != std::string::npos;) {
    parts.push_back(input.substr(start, at - start));
    start = at + std::strlen(kSeparator);
  }
  parts.push_back(input.substr(start));
  return parts;
}

std::string join(const std::vector<std::string>& parts) {
  std::string input = parts.front();
  for (std::size_t i = 1; i < parts.size(); ++i) input.append(kSeparator).append(parts[i]);
  return input;
}

std::string Input::part(std::size_t index) const {
  return index < parts_.size() ? parts_[index] : "";
}

std::string Input::line(std::size_t index) const {
  std::istringstream lines(parts_.front());
  std::string line;
  for (std::size_t i = 0; i <= index; ++i) {
    line.clear();
    std::getline(lines, line);
  }
  // As long as the callee sees it.
  return line.substr(0, line.find('\0'));
}

int Input::number(std::size_t index) const {
  const long number = std::strtol(line(index).c_str(), nullptr, 10);
  return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

bool Input::isStable() const {
  return std::all_of(parts_.begin(), parts_.end(), isStableXml);
}

}  // namespace camcfg::fuzz
