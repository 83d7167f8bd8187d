#ifndef CAMCFG_TOOL_UPGRADE_MERGE_H
#define CAMCFG_TOOL_UPGRADE_MERGE_H

#include <set>
#include <string>

#include "upgrade/report.h"

namespace camcfg::tool::upgrade {

/// How settings are merged.
struct Ways {
  bool hasBase = true;           ///< there is an old factory set
  bool prefersFactory = false;   ///< in conflicts
  std::set<std::string> held{};  ///< places where nothing of the new set is taken
};

/// Merges settings of three sides: the old factory set, the new one and the device. What only one of
/// the two changed is changed; what both changed differently is a conflict. Records in lists are the
/// same if their ids are, or else their names.
class Merge {
 public:
  /// @param ways  must outlive this object
  explicit Merge(const Ways& ways) : ways_(ways) {}

  /// The value that a place is to have; null on any side where there is nothing.
  Json value(const std::string& place, const Json& base, const Json& factory, const Json& user);

  /// Notes that a value that was to stay is not permitted.
  void limit(const std::string& place, const Json& factory, const Json& user, const Json& permitted,
             const std::string& reason);
  /// Notes that a record stays as it is after all, whatever was said of its members.
  void hold(const std::string& place, const Json& user, const std::string& reason);
  void add(Entry entry) { entries_.push_back(std::move(entry)); }
  const Entries& entries() const { return entries_; }

 private:
  Json withoutBase(const std::string& place, const Json& factory, const Json& user);
  Json fromFactory(const std::string& place, const Json& base, const Json& factory,
                   const Json& user);
  Json conflict(const std::string& place, const Json& base, const Json& factory, const Json& user);
  Json members(const std::string& place, const Json& base, const Json& factory, const Json& user);
  Json records(const char* key, const std::string& place, const Json& base, const Json& factory,
               const Json& user);
  Json ids(const std::string& place, const Json& base, const Json& factory, const Json& user);

  const Ways& ways_;
  Entries entries_;
};

}  // namespace camcfg::tool::upgrade

#endif
