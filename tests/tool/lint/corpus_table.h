#ifndef CAMCFG_TESTS_TOOL_LINT_CORPUS_TABLE_H
#define CAMCFG_TESTS_TOOL_LINT_CORPUS_TABLE_H

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace camcfg::tests {

/// An entry of a table of the corpus; corpus/hazards.txt explains the form.
struct CorpusEntry {
  std::string mark;
  std::string name;
  std::string base;
  std::vector<std::pair<std::string, std::string>> replacements;
  std::string edit;
  std::vector<std::string> places;
};

/// Contents by name.
using CorpusFiles = std::map<std::string, std::string>;

/// The contents of a file of the corpus; a failed check of the test if there is none.
std::string corpusFile(const std::string& name);

std::vector<CorpusEntry> corpusTable(const std::string& name);

/// A base file as an entry changes it, and the lines changed.
struct ChangedFile {
  std::string contents;
  int firstLine;
  int lastLine;
  /// What keeps the entry from being applied; empty if nothing.
  std::string fault;
};

ChangedFile changed(const std::string& base, const CorpusEntry& entry);

int lineAt(const std::string& contents, std::size_t offset);

}  // namespace camcfg::tests

#endif
