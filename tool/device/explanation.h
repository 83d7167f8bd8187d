#ifndef CAMCFG_TOOL_DEVICE_EXPLANATION_H
#define CAMCFG_TOOL_DEVICE_EXPLANATION_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/json.h"
#include "device/files.h"

namespace camcfg::tool::device {

/// What a lookup finds.
struct Hit {
  std::string name;
  int line;
  bool exact;  ///< its name is the whole of what was asked for, not only begins with it
  tinyxml2::XMLElement* element = nullptr;
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

// Parts of an explanation, as the answer has them.

/// @param path  the copy that the lookup was tried in
Json jsonOf(const Lookup& lookup, const std::string& path);

/// A copy that what is explained may be in.
/// @param fault  "is missing"; empty for a good copy
/// @param line   where it is; none if it is not in there
Json copyRow(Place place, const std::string& path, State state, const std::string& fault,
             std::optional<int> line);

/// A value in the three copies, a member each: null, until it is set.
/// @param permitted  "1..65535"; empty if nothing is known
Json valueRow(const std::string& name, const std::string& permitted);

/// What is known of a setting.
struct Explanation {
  std::string what;
  Json copies = Json::array();  ///< as in kPlaces
  Json values = Json::array();
  Json lookups = Json::array();
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
  Json told(const Lookup& lookup) const { return jsonOf(lookup, paths_[tried_]); }

  /// The copies, each with the line of what is explained.
  /// @param find  finds it in a document; null if it is not there
  template <typename Find>
  Json copies(Find find) const {
    Json told = Json::array();
    for (std::size_t i = 0; i < kPlaces.size(); ++i) {
      const tinyxml2::XMLElement* element = elementIn(i, find);
      told.push_back(
          copyRow(kPlaces[i], paths_[i], copies_[i].state, copies_[i].fault,
                  element == nullptr ? std::nullopt : std::optional(element->GetLineNum())));
    }
    return told;
  }

  /// One value of it in each copy.
  template <typename Find, typename Take>
  Json value(const std::string& name, const std::string& permitted, Find find, Take take) const {
    Json row = valueRow(name, permitted);
    for (std::size_t i = 0; i < kPlaces.size(); ++i)
      if (tinyxml2::XMLElement* element = elementIn(i, find))
        row[wordFor(kPlaces[i])] = take(*element);
    return row;
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
