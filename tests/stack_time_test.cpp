// Stacking in time: each channel of short records laid end to end into one
// long trace, through three batches of stand-in tools and the panel's own
// header and sample writes.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "operations_desk.h"
#include "stand_in_tools.h"
#include "su_files.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {
float sample(int r, int c, int i) { return static_cast<float>(r * 100000 + c * 1000 + i) * 0.5f; }

struct Folders {
  TempDir app_dir, dir;
};
struct Stacking : Folders, Desk<SyncBatchPlatform> {
  std::vector<uint8_t> records;
  Panel* panel = nullptr;
  Stacking(int records, int channels, int ns, int dt = 1000) : Desk(options(app_dir)) {
    this->records = su_file(records, channels, ns, dt, sample);
    write_bytes(dir.file("line.su"), this->records);
    write_stand_ins(app_dir.str() + "/bin");
    panel = &show("Stack_Time");
    dialog(dir.file("line.su"));
    panel->click("Command3");
  }
  static RunnerOptions options(const TempDir& app_dir) {
    RunnerOptions o;
    o.app_dir = app_dir.str();
    return o;
  }
  std::vector<uint8_t> output() { return read_bytes(dir.file("line_stack.su")); }
};

// The expected output: for each channel the first input header with ns,
// dt, the low half of tracf and fldr overwritten, then for each record K
// samples read at the stride K * 4 + 240 from the channel's traces of S
// samples.
std::vector<uint8_t> stacked(const std::vector<uint8_t>& input, int records, int channels, int ns, int kept, int dt,
                             int32_t fldr) {
  std::vector<uint8_t> out;
  const size_t s_record = 240 + 4 * static_cast<size_t>(ns);
  for (int c = 1; c <= channels; ++c) {
    std::vector<uint8_t> channel;  // the traces of the channel, as suwind gives them
    for (int r = 0; r < records; ++r) {
      const size_t from = (static_cast<size_t>(r) * channels + static_cast<size_t>(c - 1)) * s_record;
      channel.insert(channel.end(), input.begin() + static_cast<long>(from), input.begin() + static_cast<long>(from + s_record));
    }
    std::vector<uint8_t> trace(input.begin(), input.begin() + 240);
    put_at<int16_t>(trace, 114, static_cast<int16_t>(kept * records));
    put_at<int16_t>(trace, 116, static_cast<int16_t>(dt));
    put_at<int16_t>(trace, 12, static_cast<int16_t>(c));
    put_at<int32_t>(trace, 8, fldr);
    for (int r = 0; r < records; ++r)
      for (int i = 0; i < kept; ++i) {
        const size_t at = static_cast<size_t>(r) * (static_cast<size_t>(kept) * 4 + 240) + 240 + 4 * static_cast<size_t>(i);
        put_at<float>(trace, 240 + (static_cast<size_t>(r) * kept + i) * 4, at + 4 <= channel.size() ? value_at<float>(channel, at) : 0.0f);
      }
    out.insert(out.end(), trace.begin(), trace.end());
  }
  return out;
}

std::vector<std::string> calls(const Stacking& s) {
  return split_lines(text_of(s.app_dir.file("calls.log")));
}
}  // namespace

TEST(StackTime, GeometryOfTheInputFillsTheFields) {
  Stacking s(4, 24, 100, 500);
  const std::pair<const char*, const char*> fields[] = {
      {"Text3", "100"}, {"Text4", ".5"}, {"Text5", "50"}, {"Text7", "4"}, {"Text8", "24"}, {"Text9", "1"}};
  for (const auto& [field, value] : fields) EXPECT_EQ(s.panel->text(field), value) << field;
  EXPECT_EQ(s.panel->text("Text2"), s.dir.file("line_stack.su"));
  expect_in(s.lines()[1], {"\"title\":\"SU file selection\"", "\"filter\":\"Record |*.SU*|All files|*.*|\"", "\"file\":\"*.SU*\""});
}

TEST(StackTime, FourRecordsOf24ChannelsGive24LongTraces) {
  Stacking s(4, 24, 1000);
  s.panel->click("Command1");
  auto out = s.output();
  ASSERT_EQ(out.size(), 24u * (240 + 4 * 4000));
  EXPECT_EQ(out, stacked(s.records, 4, 24, 1000, 1000, 1000, 1));
  for (size_t c = 0; c < 24; ++c) {
    EXPECT_EQ(value_at<int16_t>(out, c * (240 + 16000) + 12), static_cast<int16_t>(c + 1));
    EXPECT_EQ(value_at<int16_t>(out, c * (240 + 16000) + 114), 4000);
  }
  auto log = calls(s);
  ASSERT_EQ(log.size(), 2u + 24u);
  EXPECT_EQ(log[0], "suwind tmin=0 tmax=1");
  EXPECT_EQ(log[1], "susort tracf fldr");
  EXPECT_EQ(log[2], "suwind key=tracf min=1 max=1");
  EXPECT_EQ(log[25], "suwind key=tracf min=24 max=24");
  const std::string in = s.dir.file("line.su"), base = s.dir.file("line");
  EXPECT_EQ(text_of(s.app_dir.file("work.bat")),
            s.app_dir.str() + "/bin/suwind <" + in + " >" + base + "_temp.su key=tracf min=24 max=24\r\n");
  EXPECT_EQ(s.messages(), (std::vector<std::string>{
                              box_line("Overlap samples have been removed from then Input file", "information"),
                              box_line("Shortened Input file has been sorted by trace number !"),
                              box_line("Processing OK, Saved as " + s.dir.file("line_stack.su"), "information")}));
  for (const char* work : {"_new.su", "_sort.su", "_temp.su", "_temp2.su"}) EXPECT_FALSE(fs::exists(base + work)) << work;
  EXPECT_EQ(read_bytes(in), s.records);
}

TEST(StackTime, OverlapReadsAtTheShortenedStride) {
  Stacking s(3, 4, 50);
  s.panel->set_text("Text10", "10");
  EXPECT_EQ(s.panel->text("Text6"), "10");
  s.panel->set_text("Text9", "77");
  s.panel->click("Command1");
  EXPECT_EQ(s.output(), stacked(s.records, 3, 4, 50, 40, 1000, 77));
  EXPECT_EQ(calls(s)[0], "suwind tmin=0 tmax=.04");
}

// tracf is written in its lower half only: the upper half stays as the
// input's first trace has it (its numbering then needs the fields by hand).
TEST(StackTime, UpperHalfOfTracfComesFromTheFirstTrace) {
  Stacking s(2, 3, 20);
  put_at<int32_t>(s.records, 12, 1 + (7 << 16));
  write_bytes(s.dir.file("line.su"), s.records);
  s.panel->click("Command1");
  auto out = s.output();
  ASSERT_EQ(out.size(), 3u * (240 + 4 * 40));
  for (int c = 1; c <= 3; ++c) EXPECT_EQ(value_at<int32_t>(out, static_cast<size_t>(c - 1) * (240 + 4 * 40) + 12), c + (7 << 16));
}

TEST(StackTime, OneRecordKeepsItsTraceCount) {
  Stacking s(1, 6, 30);
  EXPECT_EQ(s.panel->text("Text7"), "1");
  EXPECT_EQ(s.panel->text("Text8"), "6");
  s.panel->click("Command1");
  EXPECT_EQ(s.output(), stacked(s.records, 1, 6, 30, 30, 1000, 1));
}

TEST(StackTime, LongOutputsAreAskedAboutAndRefused) {
  const std::string prompt =
      "You have more then 36'000 traces, Impossible for a SEG-Y or SU file. 0=exit 1=Record ASCII File 3= Record a "
      "Unstandard SU (Sample number in LONG INTEGER instead SHORT)";
  struct Case {
    const char* what;
    const char* samples;
    std::optional<std::string> answer;  // nullopt: no question
    bool refused;                       // the stop box at the first channel
  };
  const Case cases[] = {
      {"exactly 36000: no question, refused", "9000", std::nullopt, true},
      {"above, answer 0: ends", "9001", std::string("0"), false},
      {"above, empty answer: ends", "9001", std::string(""), false},
      {"above, answer 1: refused", "9001", std::string("1"), true},
      {"above, answer 3: refused", "9001", std::string("3"), true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Stacking s(4, 2, 10);
    s.panel->set_text("Text3", c.samples);
    if (c.answer) s.input(*c.answer);
    s.panel->click("Command1");
    std::vector<std::string> asked;
    for (const auto& l : s.boxes())
      if (l.find("\"inputbox\"") != std::string::npos) asked.push_back(l);
    EXPECT_EQ(asked.size(), c.answer ? 1u : 0u);
    if (c.answer) expect_in(asked[0], {"\"prompt\":" + json(prompt), "\"default\":\"0\""});
    const auto boxes = s.messages();
    EXPECT_EQ(!boxes.empty() && boxes.back() == box_line("Impossible > 36000samples!", "stop"), c.refused);
    EXPECT_FALSE(fs::exists(s.dir.file("line_stack.su")));
    if (c.refused) EXPECT_TRUE(fs::exists(s.dir.file("line_temp2.su")));  // no clean-up
  }
}

TEST(StackTime, OverlapFieldsFollowEachOther) {
  Stacking s(1, 2, 10, 2000);
  s.panel->set_text("Text6", "10");
  EXPECT_EQ(s.panel->text("Text10"), "5");
  s.panel->set_text("Text10", "3");
  EXPECT_EQ(s.panel->text("Text6"), "6");
  s.panel->set_text("Text4", "0");
  s.panel->set_text("Text6", "8");
  EXPECT_EQ(s.panel->text("Text10"), "3");
}

TEST(StackTime, InfoBox) {
  Stacking s(1, 2, 10);
  s.panel->click("Command2");
  EXPECT_EQ(s.messages(), std::vector<std::string>{box_line(
                              " How to use STACK TIME MODULE\r\nYou can use this module to add all traces 1,2,xxx of "
                              "different record   \r\nto produce a long time record\r\nThis module is usefull to produce "
                              "long record from small time records.\r\nYou can have or not a time overlap\r\n",
                              "information")});
}

TEST(StackTime, ScriptOfTheBatchesAsStarted) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_file(1, 2, 10, 1000, sample));
  expect_script_in("stack_time_process", dir);
  EXPECT_EQ(text_of(dir.file("batch.bat")),
            dir.str() + "/bin/suwind <" + dir.file("line.su") + " >" + dir.file("line") + "_temp.su key=tracf min=2 max=2\r\n");
}
