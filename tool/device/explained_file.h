#ifndef CAMCFG_TOOL_DEVICE_EXPLAINED_FILE_H
#define CAMCFG_TOOL_DEVICE_EXPLAINED_FILE_H

#include "device/explanation.h"
#include "device/lookup.h"

namespace camcfg::tool::device {

/// The three copies of a file, for an explanation of something in it.
class ExplainedFile {
 public:
  /// @throws Refusal if none of them is good
  explicit ExplainedFile(const char* mainPath);

  /// The copy that lookups are tried in: the main copy, or else the next good one.
  tinyxml2::XMLDocument& document() const { return *copies_[tried_].document; }

  /// A lookup in that copy, as it is told.
  ExplainedLookup told(const Lookup& lookup) const;

  /// The copies, each with the line of what is explained.
  /// @param find  finds it in a document; null if it is not there
  template <typename Find>
  std::array<ExplainedCopy, 3> copies(Find find) const {
    std::array<ExplainedCopy, 3> told;
    for (std::size_t i = 0; i < kPlaces.size(); ++i) {
      told[i] = {paths_[i], copies_[i].state, copies_[i].fault, std::nullopt};
      const tinyxml2::XMLElement* element = elementIn(i, find);
      if (element != nullptr) told[i].line = element->GetLineNum();
    }
    return told;
  }

  /// One value of it in each copy.
  template <typename Find, typename Take>
  ExplainedValue value(const std::string& name, Find find, Take take) const {
    ExplainedValue value{name, {}, ""};
    for (std::size_t i = 0; i < kPlaces.size(); ++i)
      if (tinyxml2::XMLElement* element = elementIn(i, find)) value.in[i] = take(*element);
    return value;
  }

 private:
  template <typename Find>
  tinyxml2::XMLElement* elementIn(std::size_t copy, Find find) const {
    return copies_[copy].state == State::Good ? find(*copies_[copy].document) : nullptr;
  }

  std::array<std::string, 3> paths_;
  std::array<Copy, 3> copies_;
  std::size_t tried_ = 0;
};

}  // namespace camcfg::tool::device

#endif
