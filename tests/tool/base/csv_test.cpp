#include "base/csv.h"

#include <gmock/gmock.h>

#include "base/outcome.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using Cells = std::vector<std::string>;

std::vector<Cells> cellsOf(const std::string& text) {
  std::vector<Cells> cells;
  for (const CsvRow& row : readCsv(text)) cells.push_back(row.cells);
  return cells;
}

std::string refusalOf(const std::string& text) {
  try {
    readCsv(text);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "";
}

TEST(CsvTest, CellsAreBetweenCommasAndMayBeEmpty) {
  EXPECT_EQ(cellsOf("a,b,\n,,\n"), (std::vector<Cells>{{"a", "b", ""}, {"", "", ""}}));
}

TEST(CsvTest, LastLineNeedsNoEnd) {
  EXPECT_EQ(cellsOf("a\nb"), (std::vector<Cells>{{"a"}, {"b"}}));
  EXPECT_EQ(cellsOf("a,b\nc,"), (std::vector<Cells>{{"a", "b"}, {"c", ""}}));
}

TEST(CsvTest, CarriageReturnsBelongToTheEndOfTheLineOnly) {
  EXPECT_EQ(cellsOf("a,\"b\"\r\nc\rd,e\r\n"), (std::vector<Cells>{{"a", "b"}, {"c\rd", "e"}}));
}

TEST(CsvTest, QuotedCellsHoldSeparatorsQuotesAndLineEnds) {
  EXPECT_EQ(cellsOf("\"a,\"\"b\"\"\nc\",\"\"\n"), (std::vector<Cells>{{"a,\"b\"\nc", ""}}));
}

TEST(CsvTest, RowsKnowTheLineWhereTheyBegin) {
  const std::vector<CsvRow> rows = readCsv("a\n\n\"b\nc\"\nd\n");
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0].line, 1U);
  EXPECT_EQ(rows[1].line, 3U);
  EXPECT_EQ(rows[2].line, 5U);
}

TEST(CsvTest, SemicolonsSeparateWhereTheFirstLineHasNoComma) {
  EXPECT_EQ(cellsOf("a;b\nc,d;e\n"), (std::vector<Cells>{{"a", "b"}, {"c,d", "e"}}));
  EXPECT_EQ(cellsOf("a,b;c\n"), (std::vector<Cells>{{"a", "b;c"}}));
}

TEST(CsvTest, ByteOrderMarkIsPassedOver) {
  EXPECT_EQ(cellsOf("\xef\xbb\xbfid\n1\n"), (std::vector<Cells>{{"id"}, {"1"}}));
}

TEST(CsvTest, NothingIsNoRows) {
  EXPECT_THAT(cellsOf(""), testing::IsEmpty());
  EXPECT_THAT(cellsOf("\n\r\n\n"), testing::IsEmpty());
}

TEST(CsvTest, QuotesThatMakeNoSenseAreRefusedWithTheirLine) {
  EXPECT_EQ(refusalOf("a\nb\"c\n"), "line 2: a quote is inside a cell that has none around it");
  EXPECT_EQ(refusalOf("a\n\"b\"c\n"), "line 2: a cell goes on after its quote");
  EXPECT_EQ(refusalOf("a\n\"b\nc\n"), "line 2: a quote is not closed");
}

TEST(CsvTest, WrittenLinesQuoteOnlyWhatHasToBeAndAreReadBack) {
  const Cells cells = {"a b", "", "c,d", "e;f", "\"g\"", "h\ni", "j\rk"};
  const std::string line = csvLine(cells);
  EXPECT_EQ(line, "a b,,\"c,d\",\"e;f\",\"\"\"g\"\"\",\"h\ni\",\"j\rk\"\n");
  EXPECT_EQ(cellsOf(line), (std::vector<Cells>{cells}));
}

}  // namespace
}  // namespace camcfg::tests
