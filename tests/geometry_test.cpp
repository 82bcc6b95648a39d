// Record geometry read out of the trace headers: the stack scan, the channel
// scan, the name test, the channel question and the renumbering.
#include <gtest/gtest.h>

#include <functional>

#include "frame/panel.h"
#include "su/geometry.h"
#include "test_support.h"
#include "ui/headless/script_platform.h"

using namespace tf;
using namespace tf::test;

namespace {

constexpr int16_t kNs = 1;
constexpr size_t kRecord = 240 + 4 * kNs;

struct Words {
  int32_t fldr = 1;
  int32_t tracf = 1;
  int16_t nhs = 1;
};

// An SU file of `traces` records of one sample, dt 250; fldr, tracf and nhs
// of trace k (from 1) given by `words`, every other header byte a pattern
// of its own so that a stray write shows.
std::vector<uint8_t> su_file(int traces, const std::function<Words(int)>& words) {
  std::vector<uint8_t> bytes(kRecord * static_cast<size_t>(traces));
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i % 251 ? 0 : 7);
  for (int k = 1; k <= traces; ++k) {
    size_t at = kRecord * static_cast<size_t>(k - 1);
    Words w = words(k);
    put_at<int32_t>(bytes, at + 8, w.fldr);
    put_at<int32_t>(bytes, at + 12, w.tracf);
    put_at<int16_t>(bytes, at + 32, w.nhs);
    put_at<int16_t>(bytes, at + 114, kNs);
    put_at<int16_t>(bytes, at + 116, 250);
  }
  return bytes;
}

// Records of `channels` traces numbered from 1, fldr from 1.
std::function<Words(int)> gather(int channels) {
  return [channels](int k) { return Words{(k - 1) / channels + 1, (k - 1) % channels + 1, 1}; };
}

// A running program on the headless platform; boxes are answered from the
// queues and recorded.
struct Program {
  std::ostringstream out;
  ScriptPlatform platform{[] {
                            RunnerOptions o;
                            o.max_boxes = 50;
                            return o;
                          }(),
                          out};
  App app{platform};
  int32_t traces = -1;
  int16_t channels = -1;
  int16_t flag = -1;

  void detect(const std::string& file) { Detect_Geometry(app, file, traces, channels, flag); }
  std::vector<std::string> lines() const {
    std::vector<std::string> v;
    std::istringstream in(out.str());
    for (std::string l; std::getline(in, l);) v.push_back(l);
    return v;
  }
  std::vector<std::string> boxes() const {
    std::vector<std::string> v;
    for (const auto& l : lines())
      if (l.find("\"event\":\"msgbox\"") != std::string::npos || l.find("\"event\":\"inputbox\"") != std::string::npos)
        v.push_back(l);
    return v;
  }
};

const std::string question_box =
    "{\"event\":\"inputbox\",\"prompt\":\"Confirm the number of channels per record\",\"title\":\"Tracefold 1.0\",";
const std::string update_box =
    "{\"event\":\"msgbox\",\"text\":\"Would you update header values with channel numbers ?\",\"title\":\"Tracefold "
    "1.0\",\"icon\":\"none\",\"buttons\":\"yesno\",";

}  // namespace

// The stack scan reads nhs of the first traces / step traces, one by one:
// a fold of 2 on the last scanned trace marks the file stacked, one trace
// further it is not seen and the channel scan runs.
TEST(DetectGeometry, StackScanCoversTracesOverStep) {
  struct Case {
    int traces;
    int scanned;
  };
  const Case cases[] = {{999, 999},   {1000, 200},  {2000, 400},   {4999, 1000},
                        {5000, 100},  {19999, 400}, {20000, 200}};
  TempDir dir;
  for (const auto& c : cases) {
    for (int stacked_at : {c.scanned, c.scanned + 1}) {
      SCOPED_TRACE("traces " + std::to_string(c.traces) + ", nhs 2 at trace " + std::to_string(stacked_at));
      const std::string file = dir.file("line.su");
      write_bytes(file, su_file(c.traces, [&](int k) {
                    Words w = gather(24)(k);
                    if (k >= stacked_at) w.nhs = 2;
                    return w;
                  }));
      Program p;
      p.detect(file);
      EXPECT_EQ(p.traces, c.traces);
      EXPECT_EQ(p.app.state.ns, kNs);
      if (stacked_at == c.scanned) {
        EXPECT_EQ(p.flag, 2);
        EXPECT_EQ(p.channels, 0);
      } else {
        EXPECT_EQ(p.flag, 0);
        EXPECT_EQ(p.channels, 24);
      }
      EXPECT_TRUE(p.boxes().empty());
    }
  }
}

// What the channel scan finds for records of n channels: three and more are
// taken, fewer lead to the question, and so do four, whose fifth trace is
// numbered as the first.
TEST(DetectGeometry, ChannelScanAndTheQuestion) {
  struct Case {
    int per_record;
    int16_t channels;
    bool asked;
  };
  const Case cases[] = {{1, 0, true}, {2, 0, true}, {3, 3, false}, {4, 0, true}, {5, 5, false}, {24, 24, false}, {200, 150, false}};
  TempDir dir;
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.per_record) + " channels a record");
    const std::string file = dir.file("line.su");
    write_bytes(file, su_file(600, gather(c.per_record)));
    Program p;
    p.platform.input_answers.push_back("0");
    p.detect(file);
    EXPECT_EQ(p.flag, 0);
    EXPECT_EQ(p.channels, c.channels);
    auto boxes = p.boxes();
    ASSERT_EQ(boxes.size(), c.asked ? 1u : 0u);
    if (c.asked) EXPECT_EQ(boxes[0].rfind(question_box, 0), 0u) << boxes[0];
  }
}

TEST(DetectGeometry, SortedOrNmoNamesGiveHundredChannels) {
  TempDir dir;
  for (const std::string name : {"line_sort.su", "LINE_SORTED.SU", "shot_NMO.su"}) {
    SCOPED_TRACE(name);
    for (int per_record : {48, 1}) {
      write_bytes(dir.file(name), su_file(300, gather(per_record)));
      Program p;
      p.detect(dir.file(name));
      EXPECT_EQ(p.channels, 100);
      EXPECT_TRUE(p.boxes().empty());  // no question for a reordered file
    }
  }
}

// tracf always 1: the question takes Text5 of the calling panel as its
// default, and a yes renumbers fldr and tracf by the answer, nothing else.
TEST(DetectGeometry, ConfirmedChannelsRewriteFldrAndTracf) {
  TempDir dir;
  const std::string file = dir.file("line.su");
  const auto before = su_file(50, [](int) { return Words{1, 1, 1}; });
  write_bytes(file, before);

  Program p;
  p.app.panels.show("es1225");  // its Text5 holds "12"
  p.platform.input_answers.push_back("6");
  p.platform.replies.push_back(Answer::yes);
  p.detect(file);
  EXPECT_EQ(p.channels, 6);
  auto boxes = p.boxes();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0], question_box + "\"default\":\"12\",\"answer\":\"6\"}");
  EXPECT_EQ(boxes[1], update_box + "\"answer\":\"yes\"}");

  auto expected = before;
  for (int k = 1; k <= 50; ++k) {
    put_at<int32_t>(expected, kRecord * (k - 1) + 8, (k - 1) / 6 + 1);
    put_at<int32_t>(expected, kRecord * (k - 1) + 12, (k - 1) % 6 + 1);
  }
  EXPECT_EQ(read_bytes(file), expected);
}

TEST(DetectGeometry, NoOrZeroLeavesTheHeaders) {
  TempDir dir;
  const std::string file = dir.file("line.su");
  const auto before = su_file(40, gather(2));
  write_bytes(file, before);
  {
    Program p;
    p.app.panels.show("abem");  // Text5 "480"
    p.platform.input_answers.push_back("4");
    p.platform.replies.push_back(Answer::no);
    p.detect(file);
    EXPECT_EQ(p.channels, 4);
    auto boxes = p.boxes();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0], question_box + "\"default\":\"480\",\"answer\":\"4\"}");
    EXPECT_EQ(boxes[1], update_box + "\"answer\":\"no\"}");
  }
  {
    Program p;  // the main panel has no Text5: no default
    p.platform.input_answers.push_back(std::nullopt);
    p.detect(file);
    EXPECT_EQ(p.channels, 0);
    auto boxes = p.boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0], question_box + "\"default\":\"\",\"answer\":\"\",\"cancelled\":true}");
  }
  EXPECT_EQ(read_bytes(file), before);
}

TEST(DetectGeometry, MissingFldrIsReportedAndTheScanGoesOn) {
  TempDir dir;
  const std::string file = dir.file("line.su");
  write_bytes(file, su_file(96, [](int k) { return Words{0, (k - 1) % 24 + 1, 1}; }));
  Program p;
  p.detect(file);
  EXPECT_EQ(p.channels, 24);
  auto boxes = p.boxes();
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0],
            "{\"event\":\"msgbox\",\"text\":\"You must verify the Field Record Number (FLDR), this value is missing. Use "
            "HEADER UTILITY to renumber files\",\"title\":\"Tracefold 1.0\",\"icon\":\"stop\",\"buttons\":\"ok\","
            "\"answer\":\"ok\"}");
}

// The main panel's scan: nhs over the first quarter, tracf over the whole
// file until the numbering falls back; fewer than two channels count as none.
TEST(CalculChannel, QuarterStackScanAndChannelCount) {
  TempDir dir;
  const std::string file = dir.file("line_sort.su");  // the name plays no part here
  struct Case {
    int per_record;
    int stacked_at;  // 0: none
    int16_t channels;
    int16_t flag;
  };
  const Case cases[] = {{24, 0, 24, 0}, {24, 24, 0, 2}, {24, 25, 24, 0}, {1, 0, 0, 0}, {2, 0, 2, 0}, {4, 0, 4, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.per_record) + " channels, nhs 2 from " + std::to_string(c.stacked_at));
    write_bytes(file, su_file(96, [&](int k) {
                  Words w = gather(c.per_record)(k);
                  if (c.stacked_at && k >= c.stacked_at) w.nhs = 2;
                  return w;
                }));
    Program p;
    p.app.state.dt = 0;
    p.app.files.close_all();
    Calcul_Channel(p.app, file, p.traces, p.channels, p.flag);
    EXPECT_EQ(p.traces, 96);
    EXPECT_EQ(p.channels, c.channels);
    EXPECT_EQ(p.flag, c.flag);
    EXPECT_EQ(p.app.state.ns, kNs);
    EXPECT_EQ(p.app.state.dt, 250);
    if (c.flag == 0 && c.per_record > 1)  // the header it read last: the first of the second record
      EXPECT_EQ(p.app.state.trace_pos, static_cast<int32_t>(kRecord) * c.per_record);
    EXPECT_TRUE(p.boxes().empty());
  }
}

TEST(ReadFileGeometry, SetsTheSessionAndDtZeroIsThousand) {
  TempDir dir;
  const std::string file = dir.file("line.su");
  auto bytes = su_file(120, gather(12));
  for (int k = 0; k < 120; ++k) put_at<int16_t>(bytes, kRecord * k + 116, 0);
  write_bytes(file, bytes);
  Program p;
  Read_File_Geometry(p.app, file);
  EXPECT_EQ(p.app.state.ns, kNs);
  EXPECT_EQ(p.app.state.dt, 1000);
  EXPECT_EQ(p.app.state.nb_traces, 120);
  EXPECT_EQ(p.app.state.nb_channels, 12);
  EXPECT_TRUE(p.boxes().empty());
}
