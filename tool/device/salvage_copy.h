#ifndef CAMCFG_TOOL_DEVICE_SALVAGE_COPY_H
#define CAMCFG_TOOL_DEVICE_SALVAGE_COPY_H

#include <string>
#include <string_view>
#include <vector>

#include "base/json.h"
#include "base/whole_elements.h"
#include "device/files.h"

namespace camcfg::tool::device {

// What the parts of salvage share.

/// Parses a text with the library's options.
/// @return null if it is not one whole element, or anything else is with it
Document parsedElement(std::string_view text);

/// The attributes of an element that was found, without what is in it; null if they are faulty.
Document parsedTag(const FoundElement& element);

/// The bytes of a copy, of whatever is left of it, and the elements found in them.
struct SalvageCopy {
  /// @param text  must outlive this object
  SalvageCopy(Place where, std::string_view text) : place(where), elements(elementsIn(text)) {}

  /// Whether the outer elements of one may have these names, the innermost first, the last at the
  /// top; as far as they are known, they have them.
  bool isIn(const FoundElement& element, const std::vector<std::string_view>& outer) const;

  Place place;
  std::vector<FoundElement> elements;
};

/// A file's main copy, its backup, and the factory copy.
using SalvageCopies = std::vector<SalvageCopy>;

/// What came out of the copies of a file.
struct SalvageReport {
  Json settings = Json::array();  ///< "place", "source", "value", "backup"
  Json notTaken = Json::array();  ///< "copy", "line", "place", "reason"; the first ones

  /// @param backup  what the backup has where the source is "disputed"
  void add(const std::string& place, const char* source, Json value, Json backup);
  void refuse(const SalvageCopy& copy, const FoundElement& element, const std::string& place,
              const std::string& reason);
};

// A start must not take forever over a damaged file.
constexpr std::size_t kMostEntries = 20000;  ///< tried of one list in one copy
constexpr std::size_t kMostNotTaken = 2000;  ///< named of what is not taken

// Where a value comes from.
constexpr char kFromMain[] = "main";
constexpr char kFromBackup[] = "backup";
constexpr char kFromFactory[] = "factory";
constexpr char kDisputed[] = "disputed";  ///< from the main copy; the backup has another one

// Why something is not taken.
constexpr char kUnknownPlace[] = "its place is not known";
constexpr char kTooMany[] = "there are too many before it";
constexpr char kTwice[] = "it is there more than once, with different values";

/// @param main, backup  what the copies have; null: nothing that can be taken
template <typename Value>
const char* sourceOf(const Value* main, const Value* backup) {
  if (main == nullptr) return backup == nullptr ? kFromFactory : kFromBackup;
  return backup == nullptr || *main == *backup ? kFromMain : kDisputed;
}

/// Why a text cannot be in a file: its bytes, or that it has more than so many; empty if it can.
std::string whyNotStorable(const std::string& text, std::size_t most = std::string::npos);

/// Puts the parameters, cards and host name of the copies into the factory document.
void salvageParameters(tinyxml2::XMLDocument& document, const SalvageCopies& copies,
                       SalvageReport& report);

/// Puts the presets of the copies, or the entries of their media sections, into the factory document.
/// @return whether that is a document of such
bool salvageEntries(tinyxml2::XMLDocument& document, const SalvageCopies& copies,
                    SalvageReport& report);

}  // namespace camcfg::tool::device

#endif
