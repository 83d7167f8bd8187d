#ifndef CAMCFG_TOOL_DOCUMENT_TAKEN_BACK_H
#define CAMCFG_TOOL_DOCUMENT_TAKEN_BACK_H

#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool::document {

/// Takes a change of settings back, setting by setting, from what they are now: what the change has
/// set becomes what it was, the rest stays.
class TakenBack {
 public:
  /// @param force  whether a setting that is neither what the change made of it nor what it was
  ///               becomes what it was
  explicit TakenBack(bool force) : force_(force) {}

  /// @param place   of the settings: "live.srt"
  /// @param before  the change, @param after it
  Json from(const std::string& place, const Json& now, const Json& before, const Json& after);

  /// The settings that are neither, by their places.
  const std::vector<std::string>& conflicts() const { return conflicts_; }

 private:
  Json fromObjects(const std::string& place, const Json& now, const Json& before,
                   const Json& after);
  Json fromLists(const char* key, const std::string& place, const Json& now, const Json& before,
                 const Json& after);

  bool force_;
  std::vector<std::string> conflicts_;
};

}  // namespace camcfg::tool::document

#endif
