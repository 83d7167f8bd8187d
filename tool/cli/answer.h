#ifndef CAMCFG_TOOL_CLI_ANSWER_H
#define CAMCFG_TOOL_CLI_ANSWER_H

#include <string>
#include <variant>
#include <vector>

#include "base/outcome.h"

namespace camcfg::tool::cli {

/// Text with places for values: "{section}/{name}" takes the members "section" and "name" of the
/// value at hand, "{found/main}" the member "main" of its member "found". "{channels:{id} {name}}"
/// fills "{id} {name}" for each element of an array; "{default?, default}" is ", default" where
/// the member is true and nothing where it is false.
/// "{state!}" is the word for a state and coloured by what it means, "{before-}" a value that was
/// and "{after+}" one that took its place; so are those in "{before} -> {after}" without a mark.
using Template = std::string;

/// A column of a table.
struct Column {
  const char* heading;
  Template cell;
  Template becomes{};  ///< if it gives another text than `cell`, both are shown: "CELL -> THIS"
};

/// An aligned table with one line for each element of an array.
struct Table {
  std::string rows;  ///< member of the answer that holds the array; empty: the answer itself
  std::vector<Column> columns;
};

/// One line of a list of fields.
struct LabelledText {
  const char* label;
  Template text;
};

/// An aligned list of labels and texts.
struct Fields {
  std::vector<LabelledText> fields;
};

/// A line of its own.
struct Line {
  Template text;
};

/// A line, or a few, for each element of an array.
struct Lines {
  std::string rows;  ///< as in Table
  Template text;
};

/// A text of many lines that is printed as it is, such as a picture or a table for a program.
struct Verbatim {
  std::string text;
};

/// The whole value in JSON, for a command that is asked for that format.
struct WholeValue {};

using Block = std::variant<Table, Fields, Line, Lines, Verbatim, WholeValue>;

/// What a command has to say: an outcome, and how a person would want to see it. Commands fill this
/// and know nothing of printing.
struct Answer : Outcome {  // NOLINT(bugprone-exception-escape): moving a Json throws none
  Answer() = default;
  explicit Answer(Outcome outcome, std::vector<Block> blocks = {})
      : Outcome(std::move(outcome)), layout(std::move(blocks)) {}
  Answer(Json answer, std::vector<Block> blocks) : layout(std::move(blocks)) {
    value = std::move(answer);
  }

  std::vector<Block> layout;  ///< what is shown of the value as text, block by block
};

/// Where an answer is going to be read.
struct Look {
  bool isTerminal = false;  ///< control characters are written out everywhere
  bool colours = false;
};

/// The answer as a person reads it: its layout, block by block.
std::string renderText(const Answer& answer, const Look& look = {});

/// The answer as a program reads it: its value, with so many spaces for each level, or on one line
/// if that is below 0. Control characters are escaped, those beyond ASCII
/// too; bytes that are not UTF-8 become U+FFFD.
std::string renderJson(const Answer& answer, int indent = 2);

}  // namespace camcfg::tool::cli

#endif
