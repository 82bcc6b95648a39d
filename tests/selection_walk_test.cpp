// The second walk of a selection text, which keeps the text behind the last
// blank as a piece and consumes what it takes; and names found whatever
// the case of their letters.
#include <gtest/gtest.h>

#include "frame/file_selection.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

TEST(TakePieces, KeepsTheLastPieceAndLeavesItInTheText) {
  const struct {
    std::string text;
    int capacity;
    std::vector<std::string> pieces;
    std::string left;
  } cases[] = {
      {"/data/ a.bin b.bin", 900, {"/data/", "a.bin", "b.bin"}, "b.bin"},
      {"/data/a.bin", 900, {"/data/a.bin"}, "/data/a.bin"},
      {"/data/ a.bin ", 900, {"/data/", "a.bin"}, ""},     // a closing blank adds no piece
      {"a  b", 900, {"a", "", "b"}, "b"},                  // two blanks: an empty piece
      {"", 900, {}, ""},
      {"f/ a b c d", 3, {"f/", "a", "b"}, "c d"},          // the table is full: the rest stays
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    std::string text = c.text;
    const Selection s = take_pieces(text, c.capacity);
    EXPECT_EQ(s.items, c.pieces);
    EXPECT_EQ(s.count, static_cast<int>(c.pieces.size()));
    EXPECT_EQ(text, c.left);
  }
}

TEST(CaseBlindName, FindsTheFileWhateverTheCaseOfItsName) {
  TempDir dir;
  write_text(dir.file("Line1/SHOT001.A01"), "1");
  EXPECT_EQ(case_blind_name(dir.str() + "/line1/shot001.a01"), dir.file("Line1/SHOT001.A01"));
  EXPECT_EQ(case_blind_name(dir.file("Line1/SHOT001.A01")), dir.file("Line1/SHOT001.A01"));
  EXPECT_EQ(case_blind_name(dir.str() + "/line1/shot002.a01"), dir.str() + "/line1/shot002.a01");  // none: as written
  EXPECT_EQ(case_blind_name(""), "");
}
