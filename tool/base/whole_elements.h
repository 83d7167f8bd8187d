#ifndef CAMCFG_TOOL_BASE_WHOLE_ELEMENTS_H
#define CAMCFG_TOOL_BASE_WHOLE_ELEMENTS_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace camcfg::tool {

/// An element that is found in bytes of which a part is damaged.
struct FoundElement {
  /// Where an element is that is in no other one.
  enum Place : int {
    AtTop = -1,   ///< at the top of the document
    Unknown = -2  ///< the bytes that would say it are damaged
  };

  std::string_view name;
  std::string_view tag;  ///< its start tag, which is whole; empty if only the end tag was found
  std::string_view all;  ///< from its start tag to its end; empty if it is not whole
  int parent = Unknown;  ///< the index of the element that it is in, or a Place
  int line = 0;

  bool isWhole() const { return !all.empty(); }
  /// The index of the element that it is in; there must be one.
  std::size_t outer() const { return static_cast<std::size_t>(parent); }
};

/// The elements of an XML document whose tags are whole, whatever the bytes between them hold. Nothing
/// is repaired or guessed: after a damage, what an element is in is known only if an end tag says it.
/// A tag with a NUL or a bare "<" in it counts as damaged, and so does text between tags; what may
/// have been in a comment, or in a CDATA section, is left out.
/// @param bytes  must outlive the result
std::vector<FoundElement> elementsIn(std::string_view bytes);

}  // namespace camcfg::tool

#endif
