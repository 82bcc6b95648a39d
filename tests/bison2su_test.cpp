// The Bison 2 panel: the one-line batch file of the outside converter, the
// shell call that gets no file, and its two boxes.
#include <gtest/gtest.h>

#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace {
std::string chosen(const std::string& input) {
  return "click Utility.Option25\ndialog \"" + input + "\"\nclick Bison2su.Command1\n";
}
}  // namespace

// The input's name gives the output's; with or without the swap the line
// ends in ">" and the output without a blank. The tools folder is the
// application folder when the suite's INI names none.
TEST(Bison2su, BatchLineWithAndWithoutSwap) {
  for (bool swap : {false, true}) {
    TempDir dir;
    const std::string input = dir.file("line1.DAT");
    RunnerOptions options;
    options.app_dir = dir.str();
    options.system_dir = dir.str();
    auto r = run(chosen(input) + (swap ? "check Bison2su.Check1 on\n" : "") + "dump Bison2su\nclick Bison2su.Command3\n",
                 options);
    EXPECT_TRUE(r.has({"\"event\":\"dialog\"", "\"title\":\"Bison file selection\"", "\"filter\":\"Bison 2 |*.DAT\""}));
    EXPECT_EQ(texts_in(r.dump("Bison2su"), {"Text1", "Text2"}), (std::vector<std::string>{input, dir.file("line1.SU")}));
    EXPECT_EQ(text_of(dir.file("convert.bat")),
              dir.str() + "/Bison2SU <" + input + (swap ? " swap >" : " >") + dir.file("line1.SU") + "\r\n");
    EXPECT_TRUE(r.has({"\"event\":\"shell\"", "\"file\":\"\"", "\"dir\":\"" + dir.str() + "\""}));
    EXPECT_TRUE(r.has({box_line(" Conversion problem...verify parameters", "stop")}));
  }
}

// The output dialog's answer is not taken; an empty Text2 does nothing; an
// existing output is asked about, and No keeps it.
TEST(Bison2su, OutputNameAndEdgeCases) {
  TempDir dir;
  const std::string input = dir.file("line1.DAT");
  RunnerOptions options;
  options.app_dir = dir.str();
  options.system_dir = dir.str();
  auto named = run(chosen(input) + "dialog \"" + dir.file("other.SU") + "\"\nclick Bison2su.Command2\ndump Bison2su\n"
                   "set Bison2su.Text2 \"\"\nclick Bison2su.Command3\n", options);
  EXPECT_TRUE(named.has({"\"title\":\"SU file selection\"", "\"filter\":\"SU file |*.SU|All files|*.*|\"", "\"file\":\"*.SU\""}));
  EXPECT_EQ(texts_in(named.dump("Bison2su"), {"Text2"}), (std::vector<std::string>{dir.file("line1.SU")}));
  EXPECT_FALSE(named.has({"\"event\":\"msgbox\""}));
  EXPECT_FALSE(named.has({"\"event\":\"shell\""}));
  EXPECT_FALSE(std::filesystem::exists(dir.file("convert.bat")));

  write_text(dir.file("line1.SU"), "old");
  auto kept = run(chosen(input) + "reply no\nclick Bison2su.Command3\n", options);
  EXPECT_TRUE(kept.has({box_line("Outfile name already exists, kill this file ?", "question", "yesno", "no")}));
  EXPECT_EQ(text_of(dir.file("line1.SU")), "old");
  EXPECT_TRUE(std::filesystem::exists(dir.file("convert.bat")));
}

TEST(Bison2su, Help) {
  auto r = run("click Utility.Option25\nclick Bison2su.Command5\n");
  EXPECT_TRUE(r.has({box_line("Bison 2 to SU Translation\r\n This module can convert BISON 2 file to SU format \r\n"
                              " using BISON2SU.EXE \r\nYou must convert files one by one, then add SU files \r\n"
                              "More informations are found in SU modules VEDRA\\SRC\\THIRDPARTY\\BISON2SU \r\n")}));
}

// The whole road in one transcript: dialogs, the question, the shell call
// without a file and its box.
TEST(Bison2su, TranscriptOfTheSwapRoad) {
  TempDir dir;
  write_text(dir.file("LINE7.SU"), "old");
  RunnerOptions options;
  options.app_dir = dir.str();
  options.system_dir = dir.str();
  EXPECT_EQ(run_script_file("bison2su_swap", dir.str(), options).lines, expected_transcript("bison2su_swap"));
  EXPECT_EQ(text_of(dir.file("convert.bat")),
            dir.str() + "/Bison2SU <" + dir.file("LINE7.DAT") + " swap >" + dir.file("LINE7.SU") + "\r\n");
}
