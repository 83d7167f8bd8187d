#ifndef CAMCFG_TOOL_BASE_SPELLING_H
#define CAMCFG_TOOL_BASE_SPELLING_H

#include <string>
#include <vector>

namespace camcfg::tool {

/// The word that comes nearest to what was written; empty if none comes near.
std::string nearestWord(const std::string& written, const std::vector<std::string>& words);

/// "; did you mean 'WORD'?" with the word that comes nearest to what was written; empty if none
/// comes near.
std::string didYouMean(const std::string& written, const std::vector<std::string>& words);

}  // namespace camcfg::tool

#endif
