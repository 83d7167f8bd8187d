#include <gtest/gtest.h>

#include <algorithm>

#include "lint/lint.h"
#include "lint/rules.h"
#include "tool/lint/corpus_table.h"

namespace camcfg::tests {
namespace {

using namespace tool;

CorpusFiles bases() {
  CorpusFiles files;
  for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml", "English.xml",
                           "German.xml", "French.xml"})
    files[name] = corpusFile(std::string("base/") + name);
  return files;
}

std::vector<lint::Finding> findingsIn(const CorpusFiles& files) {
  std::vector<HostFile> texts;
  for (const auto& [name, contents] : files) texts.push_back({name, contents, ""});
  return lint::lint(lint::sourcesOf(texts));
}

std::string shown(const std::vector<lint::Finding>& findings) {
  std::string lines;
  for (const lint::Finding& finding : findings)
    lines += "    " + finding.file + ":" + std::to_string(finding.line) + ": " +
             wordFor(finding.rule->severity) + ": " + finding.text + " [" + finding.rule->id +
             "]\n";
  return lines;
}

/// Whether a finding is on the first line of its file that holds a text.
bool isAt(const lint::Finding& finding, const std::string& place, const CorpusFiles& files) {
  const std::string& contents = files.at(finding.file);
  const std::size_t at = contents.find(place);
  return at != std::string::npos && finding.line == lineAt(contents, at);
}

/// An entry of a table, applied to its base and given to lint together with the other bases.
struct Linted {
  CorpusEntry entry;
  ChangedFile file;
  CorpusFiles files;
  std::vector<lint::Finding> findings;
};

Linted lintedAs(const CorpusEntry& entry) {
  CorpusFiles files = bases();
  ChangedFile file = changed(files.at(entry.base), entry);
  files[entry.base] = file.contents;
  return {entry, file, files, findingsIn(files)};
}

bool isExpected(const lint::Finding& finding, const Linted& linted) {
  const CorpusEntry& entry = linted.entry;
  const ChangedFile& file = linted.file;
  if (finding.file == entry.base && finding.line >= file.firstLine && finding.line <= file.lastLine)
    return true;
  return std::any_of(entry.places.begin(), entry.places.end(),
                     [&](const std::string& place) { return isAt(finding, place, linted.files); });
}

std::string markOfHazard(const Linted& linted) {
  for (const lint::Finding& finding : linted.findings)
    if (isExpected(finding, linted)) return "found";
  return "missed";
}

std::string markOfSoundFile(const Linted& linted) {
  for (const lint::Finding& finding : linted.findings)
    if (finding.rule->severity == lint::Severity::Error) return "alarmed";
  return linted.findings.empty() ? "clean" : "passed";
}

/// What is wrong with an entry; empty if nothing.
std::string faultIn(const Linted& linted, const std::string& rightMark) {
  const CorpusEntry& entry = linted.entry;
  if (!linted.file.fault.empty()) return "  " + entry.name + ": " + linted.file.fault + "\n";
  if (entry.mark == rightMark) return "";
  return "  " + entry.name + ": marked \"" + entry.mark + "\", and it is " + rightMark + "\n" +
         shown(linted.findings);
}

void expectRightMarks(const std::string& table, std::size_t atLeast,
                      std::string (*markOf)(const Linted&)) {
  const auto entries = corpusTable(table);
  EXPECT_GE(entries.size(), atLeast);
  std::string faults;
  for (const CorpusEntry& entry : entries) {
    const Linted linted = lintedAs(entry);
    faults += faultIn(linted, markOf(linted));
  }
  EXPECT_TRUE(faults.empty()) << "Change these in tests/tool/lint/corpus/" << table << ":\n"
                              << faults;
}

TEST(LintCorpusTest, BaseFilesHaveNoFindings) {
  EXPECT_EQ(shown(findingsIn(bases())), "");
}

TEST(LintCorpusTest, HazardsAreFoundOrMissedAsTheirMarksSay) {
  expectRightMarks("hazards.txt", 200, markOfHazard);
}

TEST(LintCorpusTest, SoundFilesPassOrAlarmAsTheirMarksSay) {
  expectRightMarks("sound.txt", 50, markOfSoundFile);
}

}  // namespace
}  // namespace camcfg::tests
