#ifndef CAMCFG_TOOL_LINT_SUBJECT_H
#define CAMCFG_TOOL_LINT_SUBJECT_H

#include <optional>
#include <vector>

#include "lint/findings.h"
#include "lint/source.h"

namespace camcfg::tool::lint {

/// Rules of one subject, and the check that finds what they are about.
struct Subject {
  const char* title;
  std::vector<const Rule*> rules;
  std::optional<Kind> kind;  ///< files that are checked, if they are whole; none: all, whole or not
  void (*check)(const Source& source, Findings& findings);  ///< null: other subjects' checks do it
};

// One for each subject, in the file of its name; that of ids is with the values.
Subject structure();
Subject values();
Subject entryIds();
Subject parameterNames();
Subject parameterValues();
Subject systemSettings();
Subject network();
Subject presets();
Subject media();
Subject streamSources();
Subject streamCaches();
Subject whitelists();
Subject liveMedia();
Subject language();
Subject copies();

/// All of them, in the order in which they are listed.
std::vector<Subject> allSubjects();

/// What all rules find in files: by file, then by line.
std::vector<Finding> lint(const std::vector<Source>& sources);

}  // namespace camcfg::tool::lint

#endif
