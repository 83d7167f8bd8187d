#ifndef CAMCFG_TOOL_BASE_CSV_H
#define CAMCFG_TOOL_BASE_CSV_H

#include <string>
#include <vector>

namespace camcfg::tool {

/// A row of a table in CSV, and the line where it begins.
struct CsvRow {
  std::size_t line;
  std::vector<std::string> cells;
};

/// Reads a table. Cells may be quoted, quotes in them are doubled; lines end with or without a
/// carriage return; the cells are between commas, or between semicolons where the first line has
/// no comma. Empty lines and a byte order mark at the beginning are skipped.
/// @throws Refusal  with the line, where quotes make no sense
std::vector<CsvRow> readCsv(const std::string& text);

/// One line of a table, with its end. Cells are quoted where they have to be.
std::string csvLine(const std::vector<std::string>& cells);

}  // namespace camcfg::tool

#endif
