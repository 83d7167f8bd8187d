#ifndef CAMCFG_TOOL_DEVICE_COPY_H
#define CAMCFG_TOOL_DEVICE_COPY_H

#include <tinyxml2.h>

#include <memory>
#include <string>

namespace camcfg::tool::device {

using Document = std::unique_ptr<tinyxml2::XMLDocument>;

/// What a copy of a configuration file is found to be.
enum class State {
  Good,
  Missing,
  Damaged,     ///< not well-formed
  NoElement,   ///< well-formed, but it holds nothing
  Unreadable,  ///< not for the one who runs the tool
  NotAFile,    ///< a directory or something else of that name
  OutOfStep,   ///< a good backup copy with other contents than its main copy
  CutShort,    ///< a main copy that ends before a top-level element that its good backup still has
};

/// The word for a state in answers.
const char* wordFor(State state);

/// A copy as the library loads it.
struct Copy {
  State state = State::Missing;
  std::string fault;    ///< what is wrong: "is missing"; empty for a good copy
  Document document;    ///< what was loaded; null if the library cannot load it
  bool isPipe = false;  ///< whoever opens it waits until somebody writes into it

  /// Whether the library loads it, which is all that start-up verification asks for.
  bool loads() const { return document != nullptr; }
};

/// Loads a copy of a file through the library.
Copy loadCopy(const std::string& path);

/// Loads a main copy for a command that cannot do without it.
/// @throws Refusal that names the file, its fault and what repairs it
Document requireDocument(const std::string& path);

/// Whether two documents are the same to the library.
bool sameContents(const Copy& a, const Copy& b);

/// "/cfg1/NAME" for "/cfg0/NAME".
std::string backupOf(const std::string& mainPath);

/// The name of a file without its directory.
std::string nameOf(const std::string& path);

/// A text as the interface takes it: the library's `char*` arguments are not written to.
inline char* argument(const std::string& text) {
  return const_cast<char*>(text.c_str());
}

}  // namespace camcfg::tool::device

#endif
