#ifndef CAMCFG_TOOL_REPORT_ANONYMOUS_H
#define CAMCFG_TOOL_REPORT_ANONYMOUS_H

#include <map>
#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool::report {

/// Puts placeholders for what shows whose device it is: addresses, urls, names of hosts, users and of the device.
/// "[address 1]" is the same address wherever it is.
class Anonymizer {
 public:
  /// @param facts  what a page is made from; what is a name is found out by its settings
  /// @param names  other names
  Anonymizer(const Json& facts, const std::vector<std::string>& names);

  /// The facts with placeholders in all texts except the tool's own.
  Json hidden(const Json& value);
  std::string hidden(const std::string& text);
  /// A command line: its paths get placeholders, too.
  /// @param isOfFiles  whether all of its arguments are files
  std::string hiddenCommand(const std::string& command, bool isOfFiles);

  /// What the placeholders replace: {"[address 1]": "192.0.2.7"}.
  Json key() const;

 private:
  struct Name {
    std::string lower;  // what is looked for
    std::string placeholder;
  };

  void addName(const std::string& text);
  void addNamesIn(const std::string& setting, const Json& value);
  const Name* nameAt(const std::string& lower, std::size_t at) const;
  std::string placeholder(const char* kind, const std::string& original);

  std::map<std::string, std::string> placeholders_;  // by what they replace
  std::map<std::string, int> counts_;                // by kind
  std::vector<Name> names_;                          // the longest first
  std::vector<std::pair<std::string, std::string>> order_;
};

/// Facts of a report with placeholders in them.
/// @param key  becomes what they replace
Json anonymous(const Json& facts, Json& key);

/// The same of a comparison or a fleet.
/// @param names  what the devices are called
Json anonymous(const Json& facts, const std::vector<std::string>& names, Json& key);

/// What readers of an anonymous page should know.
extern const char* const kWhatIsHidden;

}  // namespace camcfg::tool::report

#endif
