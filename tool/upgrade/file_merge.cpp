#include "upgrade/file_merge.h"

#include <camcfg/types.h>

#include <algorithm>
#include <map>

#include "base/concat.h"
#include "base/elements.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "lint/lint.h"
#include "upgrade/parameters.h"

namespace camcfg::tool::upgrade {
namespace {

using tinyxml2::XMLNode;

// A finding as it is reported.
struct Finding {
  std::string text;
  bool isError;
};

// By their rule and text, without lines: a merge moves them.
using Found = std::map<std::string, Finding>;

std::string withoutLines(std::string text) {
  constexpr std::string_view kLine = " line ";
  for (std::size_t at = text.find(kLine); at != std::string::npos; at = text.find(kLine, at + 1)) {
    const std::size_t number = at + kLine.size();
    text.erase(number, text.find_first_not_of("0123456789", number) - number);
  }
  return text;
}

Found findingsOf(const std::string& path, const std::string& text) {
  Found found;
  for (const lint::Finding& finding : lint::lint(lint::sourcesOf({HostFile{path, text, ""}}))) {
    const lint::Rule& rule = *finding.rule;
    found[withoutLines(finding.text) + rule.id] = {
        concat(path, ": ", wordFor(rule.severity), ": ", finding.text, " [", rule.id, "]"),
        rule.severity == lint::Severity::Error};
  }
  return found;
}

std::vector<std::string> newIn(const Found& now, const Found& known, bool onlyErrors) {
  std::vector<std::string> fresh;
  for (const auto& [key, finding] : now)
    if (known.count(key) == 0 && (finding.isError || !onlyErrors)) fresh.push_back(finding.text);
  return fresh;
}

void removeComments(XMLNode& node) {
  for (XMLNode* child = node.FirstChild(); child != nullptr;) {
    XMLNode* next = child->NextSibling();
    if (child->ToComment() != nullptr)
      node.DeleteChild(child);
    else
      removeComments(*child);
    child = next;
  }
}

// Whether two files are the same except for comments and spaces.
bool areAlike(const std::string& a, const std::string& b) {
  const auto plain = [](const std::string& text) {
    const device::Document document = device::parsed(text);
    removeComments(*document);
    return written(*document);
  };
  return plain(a) == plain(b);
}

// @return whether any rule found something
bool applyAll(const std::vector<Rule>& rules, const std::string& path, std::string& text,
              Entries& entries) {
  const device::Document document = device::parsed(text);
  const std::string before = written(*document);
  for (const Rule& rule : rules) apply(rule, *document, path == CFG_FILE_BUSINESS, &entries);
  if (written(*document) == before) return false;
  text = written(*document);
  if (device::parsed(text)->Error())
    throw Refusal(path + ": the rules make a file of it that cannot be read");
  return true;
}

class FileMerge {
 public:
  FileMerge(const std::string& path, Sides sides, Ways ways)
      : path_(path), sides_(std::move(sides)), ways_(std::move(ways)) {
    known_ = findingsOf(path, sides_.factory);
    known_.merge(findingsOf(path, sides_.user));
  }

  void carryOut() {
    merge();
    while (!errors_.empty() && holdSome()) continue;
    if (!errors_.empty()) holdAll();
  }

  const std::string& text() const { return text_; }
  std::vector<std::string> findings() const {
    return newIn(findingsOf(path_, text_), known_, false);
  }
  Entries entries() const {
    Entries all = entries_;
    all.insert(all.end(), held_.begin(), held_.end());
    return all;
  }

 private:
  void merge() {
    Merge merge(ways_);
    if (path_ == CFG_FILE_BUSINESS) {
      const device::Document factory = device::parsed(sides_.factory);
      const device::Document base = device::parsed(sides_.base.value_or(""));
      mergeParameters(sides_.base ? base.get() : nullptr, *factory, *device::parsed(sides_.user),
                      merge);
      text_ = written(*factory);
    } else {
      text_ = mergeSections(path_, sides_, merge);
    }
    entries_ = merge.entries();
    errors_ = newIn(findingsOf(path_, text_), known_, true);
  }

  static bool isFromFactory(const Entry& entry) {
    return entry.what == kFactoryValue || entry.what == kAdded || entry.what == kDropped ||
           (entry.what == kConflict && entry.after != entry.before);
  }

  // Goes without each thing of the new set that brings an error in.
  // @return whether there was one
  bool holdSome() {
    bool isAnyHeld = false;
    const Entries offered = entries_;
    for (const Entry& entry : offered) {
      if (errors_.empty()) break;
      if (isFromFactory(entry) && hold(entry)) isAnyHeld = true;
    }
    return isAnyHeld;
  }

  // False if it is no better without it; all is then as before.
  bool hold(const Entry& entry) {
    if (!ways_.held.insert(entry.place).second) return false;
    const Entries entries = entries_;
    const std::string text = text_;
    const std::vector<std::string> errors = errors_;
    merge();
    if (errors_.size() < errors.size()) {
      std::vector<std::string> avoided;
      std::copy_if(errors.begin(), errors.end(), std::back_inserter(avoided),
                   [&](const std::string& error) { return !isAmong(errors_, error); });
      addHeld(entry, avoided);
      return true;
    }
    ways_.held.erase(entry.place);
    entries_ = entries;
    text_ = text;
    errors_ = errors;
    return false;
  }

  void addHeld(const Entry& entry, const std::vector<std::string>& errors) {
    held_.push_back({kHeld, entry.place, entry.base, entry.factory, entry.before, entry.before,
                     "it would bring in " + joined(errors, "; ")});
  }

  void holdAll() {
    const Ways previous = ways_;
    const Entries entries = entries_;
    const std::vector<std::string> errors = errors_;
    for (const Entry& entry : entries)
      if (isFromFactory(entry)) ways_.held.insert(entry.place);
    merge();
    if (errors_.size() >= errors.size()) {
      ways_ = previous;
      return merge();
    }
    for (const Entry& entry : entries)
      if (isFromFactory(entry)) addHeld(entry, errors);
  }

  const std::string& path_;
  const Sides sides_;
  Ways ways_;
  Found known_;
  std::string text_;
  Entries entries_;
  Entries held_;
  std::vector<std::string> errors_;
};

}  // namespace

MergedFile mergeFile(const std::string& path, const Sides& sides, const std::vector<Rule>& rules,
                     bool prefersFactory) {
  MergedFile merged{path, sides.user, sides.user, {}, {}};
  Sides renamed = sides;
  const bool isRenamed = applyAll(rules, path, renamed.user, merged.entries);
  if (renamed.base) {
    Entries unwanted;
    applyAll(rules, path, *renamed.base, unwanted);
  }
  if (sides.base == sides.factory && !isRenamed) return merged;
  FileMerge merge(path, renamed, {sides.base.has_value(), prefersFactory, {}});
  merge.carryOut();
  // Without an old set nobody knows whether comments are new.
  if (!sides.base && areAlike(merge.text(), sides.user)) return merged;
  merged.after = merge.text();
  const Entries entries = merge.entries();
  merged.entries.insert(merged.entries.end(), entries.begin(), entries.end());
  merged.findings = merge.findings();
  return merged;
}

}  // namespace camcfg::tool::upgrade
