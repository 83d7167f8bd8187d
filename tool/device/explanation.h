#ifndef CAMCFG_TOOL_DEVICE_EXPLANATION_H
#define CAMCFG_TOOL_DEVICE_EXPLANATION_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/json.h"
#include "device/files.h"

namespace camcfg::tool::device {

/// An element that a lookup finds.
struct Hit {
  tinyxml2::XMLElement* element;
  std::string name;
  bool exact;  ///< its name is the whole of what was asked for, not only begins with it
};

/// A lookup of the library and what it finds, in document order.
struct Lookup {
  std::string asked;      ///< "System/Rtsp"
  std::vector<Hit> hits;  ///< the first one answers and shadows the others; none: nothing is found
  std::string why;        ///< why the first one answers
};

/// What a lookup finds below an element by the beginning of a name.
Lookup lookupByName(tinyxml2::XMLElement& parent, const std::string& name,
                    const std::string& asked);

/// What a lookup without a section finds in the sections of a document.
Lookup lookupInSections(tinyxml2::XMLDocument& document, const std::string& name);

// For lookups of other things.

/// Why the first hit answers.
/// @param what  what is compared: "name"
std::string whyFirst(const std::vector<Hit>& hits, const std::string& what,
                     const std::string& sought);

/// Drops the hits before the library's answer.
void startWith(std::vector<Hit>& hits, const tinyxml2::XMLElement* answer);

/// A value in the three copies; null where a copy has none.
struct ExplainedValue {
  std::string name;
  std::array<Json, 3> in;  ///< as in kPlaces
  std::string permitted;   ///< "1..65535"; empty if nothing is known
};

/// Where a copy has what is explained.
struct ExplainedCopy {
  std::string path;
  State state;
  std::string fault;        ///< "is missing"; empty for a good copy
  std::optional<int> line;  ///< none if it is not in there
};

/// What answers a lookup.
struct ExplainedLookup {
  struct Found {
    std::string name;
    int line;
    bool exact;
  };
  std::string asked;
  std::string path;  ///< the copy that it was tried in
  std::optional<Found> answeredBy;
  std::string why;
  std::vector<Found> shadows;  ///< in document order

  /// Adds a hit: the first one answers, the others are in its shadow.
  void add(const Found& found);
};

/// What is known of a setting.
struct Explanation {
  std::string what;
  std::array<ExplainedCopy, 3> copies;  ///< as in kPlaces
  std::vector<ExplainedValue> values;
  std::vector<ExplainedLookup> lookups;
};

/// Names of elements, each inside the one before.
using ElementPath = std::vector<std::string>;

/// The element of exactly these names; null if there is none.
tinyxml2::XMLElement* elementAt(tinyxml2::XMLDocument& document, const ElementPath& path);

inline auto finderOf(const ElementPath& path) {
  return [path](tinyxml2::XMLDocument& document) { return elementAt(document, path); };
}

/// The three copies of a file, for an explanation of something in it.
class ExplainedFile {
 public:
  /// @throws Refusal if none of them is good
  explicit ExplainedFile(const char* mainPath);

  /// The copy that lookups are tried in: the main copy, or else the next good one.
  tinyxml2::XMLDocument& document() const { return *copies_[tried_].document; }

  /// A lookup in that copy.
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

/// Looks names up one below the other, as the library does, and adds what each finds.
/// @return the path that is explained: of the elements of exactly these names, or else of what
///         answers
/// @throws Refusal if a name finds nothing
ElementPath addLookups(Explanation& explanation, const ExplainedFile& file,
                       const std::string& section, const std::vector<std::string>& names);

}  // namespace camcfg::tool::device

#endif
