#ifndef CAMCFG_TOOL_LINT_MARKED_TEXT_H
#define CAMCFG_TOOL_LINT_MARKED_TEXT_H

#include <optional>
#include <string_view>
#include <vector>

#include "base/markup.h"
#include "lint/lint.h"

namespace camcfg::tool::lint {

/// A file's bytes and what they consist of, with what finds the line of a part. Asked from the beginning
/// to the end, it goes through the bytes once.
class MarkedText {
 public:
  explicit MarkedText(const Source& source);

  int lineOf(std::size_t at) const;
  int lineOf(std::string_view part) const { return lineOf(offsetOf(part, bytes)); }

  FileKind kind;
  std::string_view bytes;
  std::vector<Markup> pieces;  ///< what readers get
  /// A closing tag that has no opening one, where the library ends reading without a message.
  std::optional<Markup> surplus{};
  bool isCutOff = false;  ///< there is more than comments after it

 private:
  void endAtSurplus();

  mutable std::size_t counted_ = 0;
  mutable int line_ = 1;
};

/// Finds what the library reads, but XML does not allow, and where it ends reading too early.
void checkStrictness(const MarkedText& text, Findings& findings);

/// Finds characters that a wrong conversion or an invisible one leaves in names and values.
void checkCharacters(const MarkedText& text, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
