#ifndef CAMCFG_TOOL_UPGRADE_RULES_H
#define CAMCFG_TOOL_UPGRADE_RULES_H

#include <tinyxml2.h>

#include <string>
#include <utility>
#include <vector>

#include "settings/node.h"
#include "upgrade/report.h"

namespace camcfg::tool::upgrade {

/// What a merge cannot know: that something has another name in a new factory set, is no longer
/// wanted, or has other words for its values.
struct Rule {
  enum Action { Rename, Drop, Map };
  enum Subject {
    Section,    ///< "VideoCh1", at the top of the parameters' file
    Parameter,  ///< "System/Rtsp", "Audio/AudCodec/Profile", "NetWork/Lan0"
    Member,     ///< "PresetCfg/preset/FocusMode": an attribute of all such elements of any file
  };
  int version;  ///< of the factory set that it came with
  Action action;
  Subject subject;
  std::string from;
  std::string to{};                                           ///< of a Rename; a Member's last name
  std::vector<std::pair<std::string, std::string>> values{};  ///< of a Map

  /// "rename System/Rtsp to System/RtspPort"
  std::string text() const;
};

/// The rules of a factory set.
struct Rules {
  int version = 0;  ///< of the set; 0 for one without rules
  std::vector<Rule> all;
};

/// Reads rules from the text of their file; what is wrong with it is a fault.
Rules readRules(const std::string& text, settings::Faults& faults);

/// The rules of a set.
/// @param name  of the file, for a refusal
/// @throws Refusal  it has a fault
Rules requireRules(const std::string& text, const std::string& name);

/// The rules that lead from a set of one version to one of another. Those that lead back are the same
/// the other way round, as far as they can be turned round: what was dropped stays so.
/// @param known  all rules, in their order
std::vector<Rule> rulesBetween(int from, int to, const std::vector<Rule>& known);

/// Applies a rule to a document; one that finds nothing does nothing.
/// @param isParameters  whether it is the file of the parameters
/// @param entries       receives what it did; null: nobody wants to know
void apply(const Rule& rule, tinyxml2::XMLDocument& document, bool isParameters, Entries* entries);

/// The names at which rules lead nowhere: not in the new factory set when all of them are applied.
/// @param factory  documents of that set, that of the parameters first if it has one
settings::Faults faultsOf(const Rules& rules,
                          const std::vector<const tinyxml2::XMLDocument*>& factory);

}  // namespace camcfg::tool::upgrade

#endif
