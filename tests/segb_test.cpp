// The SEG-B panel: the file list and its quirks; Convert only answers.
#include <gtest/gtest.h>

#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

// Two files: listed, counted into the sample rate box (not Text6), and
// my_profil.SU proposed in their folder; Convert writes nothing.
TEST(Segb, SelectionListsAndConvertAnswersOnRequest) {
  TempDir dir;
  auto r = run("click Utility.Option20\ndialog \"" + dir.str() + "/ a.sgb b.sgb\"\nclick SEGB.Command5\ndump SEGB\n"
               "click SEGB.Command1\n");
  EXPECT_TRUE(r.has({"\"title\":\"SEG-B file selection\"", "\"filter\":\"Record |*.sgb|All files|*.*|\"", "\"file\":\"*.sgb\""}));
  EXPECT_EQ(texts_in(r.dump("SEGB"), {"Text5", "Text6", "Text2"}),
            (std::vector<std::string>{"2", "1", dir.str() + "//my_profil.SU"}));
  expect_in(r.dump("SEGB"), {dir.str() + "//a.sgb", dir.str() + "//b.sgb"});
  EXPECT_TRUE(r.has({box_line("Available on request", "stop")}));
  EXPECT_TRUE(std::filesystem::is_empty(dir.str()));
}

// One file lists nothing; Convert without a selection answers the same.
TEST(Segb, SingleSelectionListsNothing) {
  TempDir dir;
  auto r = run("click Utility.Option20\nclick SEGB.Command1\ndialog \"" + dir.file("a.sgb") +
               "\"\nclick SEGB.Command5\ndump SEGB\n");
  EXPECT_TRUE(r.has({box_line("Available on request", "stop")}));
  EXPECT_EQ(texts_in(r.dump("SEGB"), {"Text5"}), (std::vector<std::string>{"0"}));
  EXPECT_EQ(r.dump("SEGB").find("a.sgb\""), std::string::npos);
}
