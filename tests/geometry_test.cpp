// Record geometry read out of the trace headers: the stack scan, the channel
// scan, the name test, the channel question and the renumbering.
#include <gtest/gtest.h>

#include <functional>
#include <optional>

#include "su/geometry.h"
#include "test_support.h"

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
    put_trace_words(bytes, at, w.fldr, w.tracf, kNs, 250);
    put_at<int16_t>(bytes, at + 32, w.nhs);
  }
  return bytes;
}

// Records of `channels` traces numbered from 1, fldr from 1; nhs 2 from
// trace `stacked_at` on (0: never).
std::function<Words(int)> gather(int channels, int stacked_at = 0) {
  return [=](int k) {
    return Words{(k - 1) / channels + 1, (k - 1) % channels + 1, int16_t(stacked_at && k >= stacked_at ? 2 : 1)};
  };
}

// A program on the recording platform, its boxes answered from the queues.
struct Program : Recording<> {
  int32_t traces = -1;
  int16_t channels = -1;
  int16_t flag = -1;
  void detect(const std::string& file) { Detect_Geometry(app, file, traces, channels, flag); }
};

const std::string question_box =
    "{\"event\":\"inputbox\",\"prompt\":\"Confirm the number of channels per record\",\"title\":\"Tracefold 1.0\",";

}  // namespace

// The stack scan reads nhs of the first traces / step traces, one by one:
// a fold of 2 on the last scanned trace marks the file stacked, one trace
// further it is not seen and the channel scan runs.
TEST(DetectGeometry, StackScanCoversTracesOverStep) {
  const std::pair<int, int> cases[] = {{999, 999},   {1000, 200},  {2000, 400},  {4999, 1000},
                                       {5000, 100},  {19999, 400}, {20000, 200}};
  TempDir dir;
  for (const auto& [traces, scanned] : cases)
    for (int stacked_at : {scanned, scanned + 1}) {
      SCOPED_TRACE("traces " + std::to_string(traces) + ", nhs 2 at trace " + std::to_string(stacked_at));
      write_bytes(dir.file("line.su"), su_file(traces, gather(24, stacked_at)));
      Program p;
      p.detect(dir.file("line.su"));
      EXPECT_EQ(p.traces, traces);
      EXPECT_EQ(p.app.state.ns, kNs);
      EXPECT_EQ(p.flag, stacked_at == scanned ? 2 : 0);
      EXPECT_EQ(p.channels, stacked_at == scanned ? 0 : 24);
      EXPECT_TRUE(p.boxes().empty());
    }
}

// The channel scan takes three channels and more (up to the 150 traces it
// reads); fewer, and four (its fifth trace numbered as the first), lead to
// the question. Names of sorted or NMO files give 100 with no question.
TEST(DetectGeometry, ChannelScanNameTestAndTheQuestion) {
  const struct {
    const char* name;
    int per_record;
    int16_t channels;
    bool asked;
  } cases[] = {{"line.su", 1, 0, true},         {"line.su", 2, 0, true},         {"line.su", 3, 3, false},
               {"line.su", 4, 0, true},         {"line.su", 5, 5, false},        {"line.su", 24, 24, false},
               {"line.su", 200, 150, false},    {"line_sort.su", 48, 100, false}, {"LINE_SORTED.SU", 1, 100, false},
               {"shot_NMO.su", 1, 100, false}};
  TempDir dir;
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.name) + ", " + std::to_string(c.per_record) + " channels a record");
    write_bytes(dir.file(c.name), su_file(600, gather(c.per_record)));
    Program p;
    p.platform.input_answers.push_back("0");
    p.detect(dir.file(c.name));
    EXPECT_EQ(p.flag, 0);
    EXPECT_EQ(p.channels, c.channels);
    auto boxes = p.boxes();
    ASSERT_EQ(boxes.size(), c.asked ? 1u : 0u);
    if (c.asked) EXPECT_EQ(boxes[0].rfind(question_box, 0), 0u) << boxes[0];
  }
}

// tracf always 1: the question takes Text5 of the calling panel as its
// default (none without one); a yes renumbers fldr and tracf by the
// answer, nothing else; no, or a cancelled question, leaves the headers.
TEST(DetectGeometry, ConfirmedChannelsRewriteFldrAndTracf) {
  const struct {
    const char* caller;  // the panel shown, "" for the main panel alone
    std::optional<std::string> answer;
    const char* reply;  // the update question's answer, "" when not asked
    int16_t channels;
    const char* default_text;
  } cases[] = {{"es1225", "6", "yes", 6, "12"}, {"abem", "4", "no", 4, "480"}, {"", std::nullopt, "", 0, ""}};
  TempDir dir;
  const std::string file = dir.file("line.su");
  const auto before = su_file(50, [](int) { return Words{}; });
  for (const auto& c : cases) {
    SCOPED_TRACE(c.caller);
    write_bytes(file, before);
    Program p;
    if (*c.caller) p.app.panels.show(c.caller);
    p.platform.input_answers.push_back(c.answer);
    if (*c.reply) p.platform.replies.push_back(*answer_by_name(c.reply));
    p.detect(file);
    EXPECT_EQ(p.channels, c.channels);
    std::vector<std::string> boxes{question_box + "\"default\":" + json(c.default_text) + ",\"answer\":" +
                                   json(c.answer.value_or("")) + (c.answer ? "}" : ",\"cancelled\":true}")};
    const std::string update = "Would you update header values with channel numbers ?";
    if (*c.reply) boxes.push_back(box_line(update, "none", "yesno", c.reply));
    EXPECT_EQ(p.boxes(), boxes);
    auto expected = before;
    for (size_t k = 0; c.reply == std::string("yes") && k < 50; ++k) {
      put_at<int32_t>(expected, kRecord * k + 8, static_cast<int32_t>(k / 6 + 1));
      put_at<int32_t>(expected, kRecord * k + 12, static_cast<int32_t>(k % 6 + 1));
    }
    EXPECT_EQ(read_bytes(file), expected);
  }
}

TEST(DetectGeometry, MissingFldrIsReportedAndTheScanGoesOn) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_file(96, [](int k) { return Words{0, (k - 1) % 24 + 1, 1}; }));
  Program p;
  p.detect(dir.file("line.su"));
  EXPECT_EQ(p.channels, 24);
  const std::string text = "You must verify the Field Record Number (FLDR), this value is missing. Use HEADER UTILITY "
                           "to renumber files";
  EXPECT_EQ(p.boxes(), std::vector<std::string>{box_line(text, "stop")});
}

// The main panel's scan: nhs over the first quarter, tracf over the whole
// file until the numbering falls back; fewer than two channels count as none.
TEST(CalculChannel, QuarterStackScanAndChannelCount) {
  TempDir dir;
  const std::string file = dir.file("line_sort.su");  // the name plays no part here
  const struct {
    int per_record;
    int stacked_at;  // 0: none
    int16_t channels;
    int16_t flag;
  } cases[] = {{24, 0, 24, 0}, {24, 24, 0, 2}, {24, 25, 24, 0}, {1, 0, 0, 0}, {2, 0, 2, 0}, {4, 0, 4, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.per_record) + " channels, nhs 2 from " + std::to_string(c.stacked_at));
    write_bytes(file, su_file(96, gather(c.per_record, c.stacked_at)));
    Program p;
    p.app.state.dt = 0;
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
  auto bytes = su_file(120, gather(12));
  for (size_t k = 0; k < 120; ++k) put_at<int16_t>(bytes, kRecord * k + 116, 0);
  write_bytes(dir.file("line.su"), bytes);
  Program p;
  Read_File_Geometry(p.app, dir.file("line.su"));
  EXPECT_EQ(p.app.state.ns, kNs);
  EXPECT_EQ(p.app.state.dt, 1000);
  EXPECT_EQ(p.app.state.nb_traces, 120);
  EXPECT_EQ(p.app.state.nb_channels, 12);
  EXPECT_TRUE(p.boxes().empty());
}
