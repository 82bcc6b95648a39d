// What a newcomer's mistakes and damaged files meet: the retry box of each
// panel with its own text, the file as word-by-word writes left it when a box
// shows, overflowing counters and huge arrays as run-time errors, bounded
// memory and time, and a runner that always ends with a readable transcript.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>

#include "frame/helpers.h"
#include "process_run.h"
#include "test_support.h"
#include "tools/record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

// The length of the output at the first retry box, as the user could see it
// in a file manager at that moment.
class WatchingPlatform : public ScriptPlatform {
 public:
  using ScriptPlatform::ScriptPlatform;
  std::string watched;
  int64_t length_at_box = -1;

 protected:
  Answer show_message_box(const MessageBoxRequest& r) override {
    if (length_at_box < 0) length_at_box = static_cast<int64_t>(std::filesystem::file_size(watched));
    return ScriptPlatform::show_message_box(r);
  }
};

std::string abem_selected(const std::string& chosen) { return "show abem\ndialog \"" + chosen + "\"\nclick abem.Command4\n"; }

}  // namespace

TEST(RetryBox, AbemShowsTheNumberAlone) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 2, layout.samples = 16;
  gen::write_abem(dir.str(), 1, layout);
  auto r = run(abem_selected(dir.file("rec001.abm")) + "set abem.Text4 \"40000\"\nset abem.Text2 \"" + dir.file("out.su") +
                   "\"\nclick abem.Command1\n",
               {.max_boxes = 3});
  EXPECT_EQ(r.exit_code, exit_run_aborted);
  const auto boxes = r.with({"msgbox"});
  EXPECT_GE(boxes.size(), 2u);
  for (const auto& box : boxes) EXPECT_EQ(box, box_line("File conversion error N°  6"));
}

// 20000 channels a record: the trace index overflows 16 bits at the 32769th
// trace, and the 32768 traces before it (with the float that each lays on
// the next trace's first word) are on disk when the box comes up.
TEST(RetryBox, TracesWrittenBeforeTheBoxAreOnDisk) {
  TempDir dir;
  gen::Es1225Layout layout;
  layout.channels = 20000, layout.samples = 1, layout.header = 64;
  for (int i : {1, 2}) gen::write_es1225(dir.str(), i, layout);
  Recording<WatchingPlatform> rec(RunnerOptions{.max_boxes = 2});
  rec.platform.watched = dir.file("out.su");
  rec.app.panels.show("Utility");
  auto& main = *rec.app.panels.loaded("Utility");
  main.click("Option4");
  auto& panel = *rec.app.panels.loaded("es1225");
  panel.set_text("Text5", "20000");
  panel.set_text("Text4", "1");
  rec.platform.dialog_answers.push_back(several(dir, 1, 2, "dat"));
  panel.click("Command3");
  panel.set_text("Text2", dir.file("out.su"));
  EXPECT_THROW(panel.click("Command1"), RunAborted);
  EXPECT_EQ(rec.platform.length_at_box, 32768 * 244 + 4);
  EXPECT_EQ(rec.platform.length_at_box, 7995396);
  EXPECT_EQ(rec.boxes().front(), box_line("File conversion error N°  6 Check if all files are in the folder !"));
}

// 32767 samples is a legal ABEM record; the sample counter's step past it
// is the overflow error, which the panel's retry box keeps showing.
TEST(LoopCounters, AbemOf32767SamplesEndsWithoutASignal) {
  TempDir dir;
  gen::AbemLayout layout;
  layout.channels = 1, layout.samples = 32767;
  ASSERT_EQ(std::filesystem::file_size(gen::write_abem(dir.str(), 1, layout)), 67582u);
  auto r = run_runner(abem_selected(dir.file("rec001.abm")) + "set abem.Text2 \"" + dir.file("out.su") +
                          "\"\nclick abem.Command1\n",
                      dir.str(), {"--max-boxes", "20"});
  EXPECT_EQ(r.signal, 0);
  EXPECT_TRUE(r.exit_code == 0 || r.exit_code == 3) << r.exit_code;
  EXPECT_NE(std::find(r.lines.begin(), r.lines.end(), box_line("File conversion error N°  6")), r.lines.end());
}

// "999999" typed after the default 1000 asks for arrays of 2 GB and more:
// error 7 in the retry box, and the process stays small.
TEST(Memory, HugeSampleCountIsOutOfMemory) {
  TempDir dir;
  gen::Es1225Layout layout;
  layout.channels = 2, layout.samples = 10, layout.header = 64;
  for (int i : {1, 2}) gen::write_es1225(dir.str(), i, layout);
  auto r = run_runner("click Utility.Option4\ntype es1225.Text4 \"999999\"\ndialog \"" + several(dir, 1, 2, "dat") +
                          "\"\nclick es1225.Command3\nclick es1225.Command1\n",
                      dir.str(), {"--max-boxes", "5"});
  EXPECT_EQ(r.exit_code, 3);
  EXPECT_NE(std::find(r.lines.begin(), r.lines.end(),
                      box_line("File conversion error N°  7 Check if all files are in the folder !")),
            r.lines.end());
  EXPECT_LT(r.peak_kb, 2L * 1024 * 1024);
}

// A 1 GB file without a line end selected as an ABEM record: its header
// lines are read one at a time.
TEST(Memory, AbemHeaderOfAGigabyteWithoutLineEnds) {
  TempDir dir;
  const std::string big = dir.file("big.abm");
  std::filesystem::resize_file((write_text(big, "7"), big), 1000u << 20);
  auto r = run_runner(abem_selected(big), dir.str(), {"--max-seconds", "60"});
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_LT(r.peak_kb, 300L * 1024);
  EXPECT_EQ(std::filesystem::file_size(big), 1000u << 20);
}

// The suite's INI names its file by a pattern that a backtracking matcher
// takes for ever against a long name.
TEST(Time, WildcardFileNamesAreMatchedInLinearTime) {
  TempDir dir;
  write_text(dir.file(std::string(60, 'a')), "");
  write_text(dir.file("Larvex32.INI"), "[PLANTA]\r\nFile=" + dir.str() + "/*a*a*a*a*a*a*a*a*b\r\n");
  const auto start = std::chrono::steady_clock::now();
  auto r = run_runner("click Utility.Option1\n", dir.str(), {"--max-seconds", "10"});
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

// A run that neither shows a box nor waits is still ended by the time limit.
TEST(Time, MaxSecondsEndsARunWhateverItDoes) {
  TempDir dir;
  const std::string big = dir.file("big.abm");
  std::filesystem::resize_file((write_text(big, "7"), big), 4000u << 20);
  const auto start = std::chrono::steady_clock::now();
  auto r = run_runner(abem_selected(big) + abem_selected(big) + abem_selected(big), dir.str(), {"--max-seconds", "0.2"});
  EXPECT_EQ(r.exit_code, 3);
  ASSERT_FALSE(r.lines.empty());
  expect_in(r.lines.back(), {"\"event\":\"aborted\"", "time limit"});
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(Runner, BadOptionValuesEndWithExitTwoAndOneLine) {
  TempDir dir;
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--max-seconds", "abc"}, {"--max-boxes", "99999999999999999999"}, {"--max-seconds", "nan"},
        {"--max-seconds", "inf"}, {"--max-boxes", "-1"}, {"--max-boxes", "2.5"}, {"--max-seconds"}}) {
    auto r = run_program("tracefold-run", [&] { auto o = options; o.push_back("-"); return o; }(), dir.str(), "");
    EXPECT_EQ(r.exit_code, 2) << options[0];
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    EXPECT_TRUE(r.lines.empty());
  }
}

// Names and INI values in the platform's code page come out as UTF-8 text.
TEST(Runner, EveryTranscriptLineIsUtf8) {
  TempDir dir;
  const std::string latin1_name = dir.str() + "/r\xE9" "cepteur \x80\x9F.abm";
  auto r = run_runner("show abem\ndialog \"" + latin1_name + "\"\nclick abem.Command4\ndump abem\ntype abem.Text6 \"12\\b3\"\ndump abem\n",
                      dir.str());
  EXPECT_EQ(r.exit_code, 0);
  for (const auto& line : r.lines) EXPECT_TRUE(is_utf8(line)) << line;
  expect_in(r.lines.at(2), {"r\xC3\xA9" "cepteur \xE2\x82\xAC\xC5\xB8"});
  // The backspace of `type` takes the 2 back out.
  expect_in(r.lines.back(), {"\"Text6\":{\"kind\":\"text\",\"caption\":\"Number of files\",\"text\":\"113\""});
}

TEST(NumberTexts, ValuesThatAreNoNumbersPrintAsThePlatformPrintsThem) {
  const double inf = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(number_text(inf), " 1.#INF");
  EXPECT_EQ(number_text(-inf), "-1.#INF");
  EXPECT_EQ(field_text(nan), "1.#QNAN");
  EXPECT_EQ(number_text(static_cast<float>(-inf)), "-1.#INF");
  double kept = 0;
  Keep_Decimals(1e300, 2, kept);
  EXPECT_EQ(kept, 1e300);  // the whole part's text is all of it
  Keep_Decimals(-9.87654e25, 3, kept);
  EXPECT_TRUE(std::isfinite(kept));
  Keep_Decimals(nan, 1, kept);
  EXPECT_TRUE(std::isfinite(kept));
}

// A join that names its destination among its sources reads each source as
// it stood when the line started.
TEST(BatchCopy, AJoinNeverFeedsAFileIntoItself) {
  struct Case {
    const char* line;
    const char* a_after;
  } cases[] = {
      {"copy /b a.dat+a.dat a.dat", "AAAAAAAA"},
      {"copy /b a.dat+a.dat", "AAAAAAAA"},
      {"copy /b b.dat+a.dat a.dat", "BBAAAA"},
      {"copy /b a.dat+b.dat+a.dat a.dat", "AAAABBAAAA"},
  };
  for (const auto& c : cases) {
    TempDir dir;
    write_text(dir.file("a.dat"), "AAAA");
    write_text(dir.file("b.dat"), "BB");
    write_text(dir.file("t.bat"), std::string(c.line) + "\r\n");
    auto r = run_program("tracefold-batch", {"t.bat"}, dir.str());
    EXPECT_EQ(r.signal, 0) << c.line;
    EXPECT_EQ(text_of(dir.file("a.dat")), c.a_after) << c.line;
    EXPECT_EQ(text_of(dir.file("b.dat")), "BB");
  }
}
