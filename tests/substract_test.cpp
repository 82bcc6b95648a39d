// File subtraction: File 1 and File 2 combined sample by sample with their
// signs, the headers of File 1, the three checks and the overwrite question.
#include <gtest/gtest.h>

#include <filesystem>

#include "operations_desk.h"
#include "su_files.h"

using namespace tf;
using namespace tf::test;

namespace {
constexpr int ns = 20;
float a_value(int r, int c, int i) { return 0.5f * static_cast<float>(r * 100 + c * 10 + i) - 7.25f; }
float b_value(int r, int c, int i) { return 0.1f * static_cast<float>(i * c) + static_cast<float>(r); }

struct Subtraction : Desk<> {
  TempDir dir;
  std::vector<uint8_t> a = su_file(2, 3, ns, 1000, a_value);
  std::vector<uint8_t> b = su_file(2, 3, ns, 500, b_value);
  Panel* panel = nullptr;
  Subtraction() {
    write_bytes(dir.file("a.su"), a);
    write_bytes(dir.file("b.su"), b);
    app.state.current_file = dir.file("a.su");
    panel = &show("substract");
    panel->set_text("Text2", dir.file("b.su"));
  }
  std::vector<uint8_t> output() { return read_bytes(dir.file("a_sub.su")); }
};

// The expected output: File 1's bytes with each sample replaced.
std::vector<uint8_t> combined(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b,
                              float (*op)(float, float)) {
  std::vector<uint8_t> out = a;
  for (size_t t = 0; t < 6; ++t)
    for (size_t i = 0; i < ns; ++i)
      put_at<float>(out, t * (240 + 4 * ns) + 240 + 4 * i, op(sample_of(a, t, i, ns), sample_of(b, t, i, ns)));
  return out;
}
}  // namespace

TEST(Substract, LoadProposesTheOutputBesideFile1) {
  Subtraction s;
  EXPECT_EQ(s.panel->text("Text1"), s.dir.file("a.su"));
  EXPECT_EQ(s.panel->text("Text3"), s.dir.file("a_sub.su"));
  EXPECT_EQ(s.app.state.data_folder, s.dir.str() + "/");
}

TEST(Substract, SignsOfTheTwoBoxes) {
  struct Case {
    const char* what;
    bool check1, check2;
    const char* button;
    float (*op)(float, float);
  };
  const Case cases[] = {
      {"A - B", false, false, "Command5", [](float x, float y) { return x - y; }},
      {"both ticked: B - A", true, true, "Command5", [](float x, float y) { return -1.0f * x - -1.0f * y; }},
      {"Check2 ticked is the addition", false, true, "Command5", [](float x, float y) { return x + y; }},
      {"A + B", false, false, "Command7", [](float x, float y) { return x + y; }},
      {"-A + B", true, false, "Command7", [](float x, float y) { return y - x; }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Subtraction s;
    if (c.check1) s.panel->click("Check1");
    if (c.check2) s.panel->click("Check2");
    s.panel->click(c.button);
    EXPECT_EQ(s.output(), combined(s.a, s.b, c.op));
    EXPECT_EQ(s.messages(), (std::vector<std::string>{box_line("Copying file, please wait", "exclamation"),
                                                      box_line("Substraction done !", "information")}));
    EXPECT_EQ(read_bytes(s.dir.file("a.su")), s.a);
    EXPECT_EQ(read_bytes(s.dir.file("b.su")), s.b);
    EXPECT_FALSE((*s.panel)["ProgressBar1"].visible);
  }
}

TEST(Substract, FileFromItselfGivesZerosWithItsHeaders) {
  Subtraction s;
  s.panel->set_text("Text2", s.dir.file("a.su"));
  s.panel->click("Command5");
  EXPECT_EQ(s.output(), combined(s.a, s.a, [](float, float) { return 0.0f; }));
}

// Same length, other ns: combined without a word, File 1's layout as guide.
TEST(Substract, OtherGeometryOfTheSameLengthIsCombinedWithoutWarning) {
  Subtraction s;
  write_bytes(s.dir.file("b.su"), su_file(1, 3, 2 * ns + 60, 1000, b_value));
  ASSERT_EQ(std::filesystem::file_size(s.dir.file("b.su")), s.a.size());
  s.panel->click("Command5");
  std::vector<uint8_t> b = read_bytes(s.dir.file("b.su"));
  EXPECT_EQ(s.output(), combined(s.a, b, [](float x, float y) { return x - y; }));
  EXPECT_EQ(s.messages().back(), box_line("Substraction done !", "information"));
}

TEST(Substract, ChecksStopTheRunWithTheirBoxes) {
  struct Case {
    const char* what;
    const char* field;
    const char* value;
    const char* box;
  };
  const Case cases[] = {
      {"empty File 1", "Text1", "", "Input file 1 does not exists"},
      {"missing File 2", "Text2", "/nowhere/b.su", "Input file 2 does not exists"},
      {"other length", "Text2", "short.su", "File1 must have the same size as File2"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Subtraction s;
    write_bytes(s.dir.file("short.su"), su_file(1, 1, ns, 1000, b_value));
    s.panel->set_text(c.field, std::string(c.value).find('/') == 0 || !*c.value ? c.value : s.dir.file(c.value));
    s.panel->click("Command5");
    EXPECT_EQ(s.messages(), std::vector<std::string>{box_line(c.box, "stop")});
    EXPECT_FALSE(std::filesystem::exists(s.dir.file("a_sub.su")));
  }
}

TEST(Substract, ExistingOutputIsKeptOnNo) {
  Subtraction s;
  write_text(s.dir.file("a_sub.su"), "keep");
  s.reply(Answer::no);
  s.panel->click("Command5");
  EXPECT_EQ(s.messages(), std::vector<std::string>{box_line(s.dir.file("a_sub.su") + " This file already exists, overwrite ?",
                                                            "none", "yesno", "no")});
  EXPECT_EQ(text_of(s.dir.file("a_sub.su")), "keep");
  s.reply(Answer::yes);
  s.panel->click("Command5");
  EXPECT_EQ(s.output(), combined(s.a, s.b, [](float x, float y) { return x - y; }));
}

TEST(Substract, InfoBox) {
  Subtraction s;
  s.panel->click("Command4");
  EXPECT_EQ(s.messages(),
            std::vector<std::string>{box_line(
                " How to use SUBSTRACTION MODULE\r\n\r\nYou can use this module to substract 2 files  \r\nAmplitudes of all "
                "samples of File2  will be subsbtract or added from File1 \r\nYou can check what has been removed during "
                "any filtering or processing.\r\nThis module can also be used to enhance S waves \r\n",
                "information")});
}

TEST(Substract, ScriptOfTheChecksAndTheOverwriteQuestion) {
  TempDir dir;
  write_bytes(dir.file("a.su"), su_file(1, 2, ns, 1000, a_value));
  write_bytes(dir.file("b.su"), su_file(1, 2, ns, 1000, b_value));
  write_bytes(dir.file("short.su"), su_file(1, 1, ns, 1000, b_value));
  write_text(dir.file("a_sub.su"), "keep");
  expect_script_in("substract_checks", dir);
  EXPECT_EQ(text_of(dir.file("a_sub.su")), "keep");
}

// The count is rounded: a third record cut at 85 % is read as far as the
// files go, the second trace's samples standing in for the rest, and the
// output grows to three whole records.
TEST(Substract, LastRecordCutShortIsCombinedFromWhatTheBuffersHold) {
  Subtraction s;
  const size_t record = 240 + 4 * ns, kept = record * 85 / 100;
  auto a = su_file(1, 3, ns, 1000, a_value), b = su_file(1, 3, ns, 1000, b_value);
  a.resize(2 * record + kept);
  b.resize(2 * record + kept);
  write_bytes(s.dir.file("a.su"), a);
  write_bytes(s.dir.file("b.su"), b);
  s.panel->click("Command5");
  std::vector<uint8_t> want = a;
  want.resize(3 * record, 0);
  for (size_t t = 0; t < 3; ++t)
    for (size_t i = 0; i < ns; ++i) {
      const size_t at = t * record + 240 + 4 * i;
      const size_t from = at < a.size() ? at : at - record;  // past the end: the trace before
      put_at<float>(want, at, value_at<float>(a, from) - value_at<float>(b, from));
    }
  EXPECT_EQ(s.output(), want);
}
