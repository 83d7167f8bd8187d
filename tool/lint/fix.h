#ifndef CAMCFG_TOOL_LINT_FIX_H
#define CAMCFG_TOOL_LINT_FIX_H

#include <string>
#include <vector>

#include "lint/lint.h"

namespace camcfg::tool::lint {

/// Something that was put right, at the line where it was found.
struct Fix {
  int line;
  const Rule* rule;
  std::string text;
};

/// A file with what has one right answer put right, and no other byte changed.
struct FixedFile {
  std::string bytes;
  std::vector<Fix> fixes;  ///< by their lines
};

/// @param findings  those to be put right among them; that of other files and rules is passed by. What
///                  has several answers is left
FixedFile fixed(const Source& source, const std::vector<Finding>& findings);

/// The same file with other bytes.
void setBytes(Source& source, std::string bytes);

}  // namespace camcfg::tool::lint

#endif
