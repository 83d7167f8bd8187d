#ifndef CAMCFG_TOOL_REPORT_ANONYMOUS_H
#define CAMCFG_TOOL_REPORT_ANONYMOUS_H

#include <map>
#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool::report {

/// Puts placeholders for what shows whose device it is: addresses, urls, names of hosts and of the device.
/// "[address 1]" is the same address wherever it is.
class Anonymizer {
 public:
  /// @param facts  see factsOf; what is a name is found out by its settings
  explicit Anonymizer(const Json& facts);

  /// The facts with placeholders in all texts.
  Json hidden(const Json& value);
  std::string hidden(const std::string& text);

  /// What the placeholders replace: {"[address 1]": "192.0.2.7"}.
  Json key() const;

 private:
  void addName(const char* kind, const Json& value);
  void addNamesIn(const Json& section);
  std::string placeholder(const char* kind, const std::string& original);
  std::string withoutNames(const std::string& text) const;

  std::map<std::string, std::string> placeholders_;  // by what they replace
  std::map<std::string, int> counts_;                // by kind
  std::vector<std::string> names_;                   // the longest first
  std::vector<std::string> order_;
};

/// Facts with placeholders in them.
/// @param key  becomes what they replace
Json anonymous(const Json& facts, Json& key);

}  // namespace camcfg::tool::report

#endif
