// The splitter: parts of a chosen size named with two-digit numbers, the
// questions, the joining in list order, every box titled "Cleavit".
#include <gtest/gtest.h>

#include <filesystem>

#include "operations/spliter.h"
#include "operations_desk.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {
std::vector<uint8_t> pattern(size_t size) {
  std::vector<uint8_t> bytes(size);
  for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>((i * 7919) >> 3);
  return bytes;
}

std::string cleavit(const std::string& text, const std::string& icon = "none", const std::string& buttons = "ok",
                    const std::string& answer = "ok") {
  return titled_box(text, "Cleavit", icon, buttons, answer);
}

struct Splitter : Desk<> {
  TempDir dir;
  Panel* panel = &show("spliter");
  // Splits `name` in parts of `size` bytes.
  void split(const std::string& name, const std::string& size) {
    dialog(dir.file(name));
    panel->click("Command1");
    panel->set_text("Combo1", size);
    panel->click("Command5");
  }
  // Selects parts 1..count of `stem` and joins them.
  void join(const std::string& stem, int count) {
    std::string selection = dir.str() + "/";
    for (int i = 1; i <= count; ++i) selection += " " + fs::path(part_name(dir.file(stem), i)).filename().string();
    dialog(selection);
    panel->click("Command2");
    panel->click("Command4");
  }
};
}  // namespace

TEST(Spliter, SplitThenJoinGivesTheOriginalBytes) {
  Splitter s;
  const auto original = pattern(1234567);
  write_bytes(s.dir.file("line.dat"), original);
  s.split("line.dat", "600000");
  EXPECT_EQ(s.panel->text("Text1"), s.dir.file("line.dat"));
  const std::string part1 = s.dir.file("line_01_dat.spt");
  EXPECT_EQ(s.panel->find("List2")->items, (std::vector<std::string>{part1, s.dir.file("line_02_dat.spt"), s.dir.file("line_03_dat.spt")}));
  EXPECT_EQ(fs::file_size(part1), 600000u);
  EXPECT_EQ(fs::file_size(s.dir.file("line_03_dat.spt")), 1234567u - 1200000u);
  fs::rename(s.dir.file("line.dat"), s.dir.file("kept.dat"));
  s.join("line.dat", 3);
  EXPECT_EQ(s.panel->text("Text4"), "3");
  EXPECT_EQ(s.panel->text("Text3"), s.dir.file("line.dat"));
  EXPECT_EQ(read_bytes(s.dir.file("line.dat")), original);
  EXPECT_EQ(s.messages(),
            (std::vector<std::string>{
                cleavit(s.dir.file("line.dat") + "  1234567 bytes has been splitted into  3 files", "information"),
                cleavit(s.dir.file("line.dat") + "  1234567 bytes has been recorded from  3 files", "information")}));
}

TEST(Spliter, FileOfTwicePartSizeGivesAnEmptyThirdPart) {
  Splitter s;
  write_bytes(s.dir.file("two.bin"), pattern(1000000));
  s.split("two.bin", "500000");
  EXPECT_EQ(fs::file_size(s.dir.file("two_01_bin.spt")), 500000u);
  EXPECT_EQ(fs::file_size(s.dir.file("two_02_bin.spt")), 500000u);
  EXPECT_EQ(fs::file_size(s.dir.file("two_03_bin.spt")), 0u);
}

TEST(Spliter, QuestionsAndStopsOfTheSplit) {
  struct Case {
    const char* what;
    size_t length;
    const char* size;
    std::vector<Answer> replies;
    std::vector<std::string> boxes;  // texts after the folder is put in
    int parts_written;
  };
  const Case cases[] = {
      {"smaller than a part", 499999, "500000", {}, {"stop:He! This file is smaller than the request file !"}, 0},
      {"small parts refused", 1000, "400", {Answer::no}, {"yesno:He! are you sure to make so small files ?"}, 0},
      {"many parts refused",
       25 * 500000,
       "500000",
       {Answer::no},
       {"yesno:He! are you sure to make  26 files ?"},
       0},
      {"small parts accepted", 1000, "400", {Answer::yes}, {"yesno:He! are you sure to make so small files ?", "info"}, 3},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Splitter s;
    write_bytes(s.dir.file("f.bin"), pattern(c.length));
    for (Answer a : c.replies) s.reply(a);
    s.split("f.bin", c.size);
    auto boxes = s.messages();
    ASSERT_EQ(boxes.size(), c.boxes.size());
    for (size_t i = 0; i < boxes.size(); ++i) {
      expect_in(boxes[i], {"\"title\":\"Cleavit\""});
      const std::string& want = c.boxes[i];
      if (want == "info") continue;
      const std::string kind = want.substr(0, want.find(':')), text = want.substr(want.find(':') + 1);
      expect_in(boxes[i], {"\"text\":" + json(text)});
      expect_in(boxes[i], {kind == "stop" ? "\"icon\":\"stop\"" : "\"buttons\":\"yesno\""});
    }
    int written = 0;
    for (int i = 1; i <= 3; ++i) written += fs::exists(s.dir.file("f_0" + std::to_string(i) + "_bin.spt"));
    EXPECT_EQ(written, c.parts_written);
  }
}

TEST(Spliter, ExistingPartIsAskedAboutAndKeptOnNo) {
  Splitter s;
  write_bytes(s.dir.file("f.bin"), pattern(1000001));
  write_text(s.dir.file("f_01_bin.spt"), "mine");
  s.reply(Answer::no);
  s.split("f.bin", "500000");
  EXPECT_EQ(s.messages(), std::vector<std::string>{cleavit(s.dir.file("f_01_bin.spt") + "file already exists, overwrite ?",
                                                           "question", "yesno", "no")});
  EXPECT_EQ(text_of(s.dir.file("f_01_bin.spt")), "mine");
}

TEST(Spliter, PartNamesTakeTwoDigitsAndTheExtensionAfterTheFirstDot) {
  EXPECT_EQ(part_name("/d/MyFile.doc", 1), "/d/MyFile_01_doc.spt");
  EXPECT_EQ(part_name("/d/MyFile.doc", 99), "/d/MyFile_99_doc.spt");
  EXPECT_EQ(part_name("/d/MyFile.doc", 100), "/d/MyFile_100_doc.spt");
  EXPECT_EQ(part_name("/d.v2/line.su", 2), "/d.v2/lin_02_v2/line.su.spt");
}

TEST(Spliter, JoiningStopsAtOnePartAndAtAMissingPart) {
  Splitter s;
  s.dialog(s.dir.file("a_01_bin.spt"));
  s.panel->click("Command2");
  EXPECT_EQ(s.messages(), std::vector<std::string>{cleavit("Impossible...", "stop")});

  Splitter t;
  write_text(t.dir.file("a_01_bin.spt"), "abc");
  t.join("a.bin", 2);
  EXPECT_EQ(t.messages(), std::vector<std::string>{cleavit(t.dir.file("a_02_bin.spt") + " does not exists !", "stop")});
  EXPECT_EQ(text_of(t.dir.file("a.bin")), "abc");  // what has been written stays
}

TEST(Spliter, ExistingOutputIsAskedAboutAndKeptOnNo) {
  Splitter s;
  write_text(s.dir.file("a_01_bin.spt"), "abc");
  write_text(s.dir.file("a.bin"), "old");
  s.reply(Answer::no);
  s.join("a.bin", 1);
  EXPECT_EQ(s.messages(), std::vector<std::string>{cleavit("This file already exists, overwrite ?", "none", "yesno", "no")});
  EXPECT_EQ(text_of(s.dir.file("a.bin")), "old");
}

TEST(Spliter, HelpLinesAndSizesAtLoad) {
  Splitter s;
  EXPECT_EQ(s.panel->find("Combo1")->items, (std::vector<std::string>{"1440000", "720000", "360000"}));
  expect_in(s.panel->text("Text2"),
            {" Use this small program to divide a large file into smaller files and then rebuild the original one easily.\r\n",
             "     Example: MyFile.doc will be divided into MyFile_1_doc.spt + MyFile_2_doc.spt\r\n"});
}

TEST(Spliter, ScriptOfSplitAndJoin) {
  TempDir dir;
  const auto original = pattern(1000000);
  write_bytes(dir.file("line.dat"), original);
  expect_script_in("spliter_split_join", dir);
  EXPECT_EQ(read_bytes(dir.file("joined.dat")), original);
  EXPECT_EQ(read_bytes(dir.file("line.dat")), original);
}
