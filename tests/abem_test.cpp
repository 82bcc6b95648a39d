// The ABEM Mark 3 panel: the selection, the header's geometry, and the SU
// traces it writes, checked byte for byte against records built here.
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

// The SU file the records must give: for file F and channel C a zero header
// but the words every importer writes (fldr F, tracf C), then the channel's
// int16 samples from 2048 + 2 x ns x (C - 1) as floats.
std::vector<uint8_t> expected_su(const std::vector<std::vector<uint8_t>>& records, int channels, int ns, int dt) {
  std::vector<uint8_t> out;
  for (size_t f = 0; f < records.size(); ++f)
    for (int c = 1; c <= channels; ++c) {
      std::vector<uint8_t> trace(240 + 4 * static_cast<size_t>(ns), 0);
      put_trace_words(trace, 0, static_cast<int32_t>(f + 1), c, ns, dt);
      for (int s = 0; s < ns; ++s) {
        size_t at = 2048 + 2 * (static_cast<size_t>(c - 1) * ns + s);
        int16_t v = at + 2 <= records[f].size() ? value_at<int16_t>(records[f], at) : 0;
        put_at<float>(trace, 240 + 4 * static_cast<size_t>(s), static_cast<float>(v));
      }
      out.insert(out.end(), trace.begin(), trace.end());
    }
  return out;
}

// Writes records first..last of one layout and gives their bytes.
std::vector<std::vector<uint8_t>> records(const TempDir& dir, int first, int last, int channels = 24, int ns = 1024,
                                          int rate_code = 4) {
  gen::AbemLayout layout;
  layout.channels = channels, layout.samples = ns, layout.rate_code = rate_code;
  std::vector<std::vector<uint8_t>> out;
  for (int i = first; i <= last; ++i) out.push_back(read_bytes(gen::write_abem(dir.str(), i, layout)));
  return out;
}

// The panel shown and the selection dialog answered with `chosen`.
std::string select(const std::string& chosen) { return "show abem\ndialog \"" + chosen + "\"\nclick abem.Command4\n"; }

std::string several(const TempDir& dir, int first, int last) { return test::several(dir, first, last, "abm"); }

// Number of files, sample rate, number of samples and trace number as the
// panel's last dump shows them.
std::vector<std::string> geometry(const RunResult& r) {
  return texts_in(r.dump("abem"), {"Text6", "Text5", "Text4", "Text3"});
}
using Texts = std::vector<std::string>;

const std::string done_box = box_line("OK, Conversion done");

}  // namespace

// Two records of 24 channels x 1024 samples, code 4: 48 traces, fldr the
// file's ordinal, tracf the channel, dt 500.
TEST(Abem, TwoRecordsGiveFortyEightTracesByteExact) {
  TempDir dir;
  auto recs = records(dir, 1, 2);
  auto r = run(select(several(dir, 1, 2)) + "dump abem\nclick abem.Command1\n");
  EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"ABEM file selection\","
                     "\"filter\":\"Record |*.abm|All files|*.*|\",\"file\":\"*.abm\",\"dir\":\"\",\"flags\":512"}));
  const std::string out = dir.str() + "//rec001.SU";
  const std::string first = json(dir.str() + "//rec001.abm"), second = json(dir.str() + "//rec002.abm");
  expect_in(r.dump("abem"), {"\"items\":[" + first + "," + second + "]"});
  EXPECT_EQ(geometry(r), (Texts{"2", "500", "1024", "24"}));
  EXPECT_EQ(text_in(r.dump("abem"), "Text2"), out);
  EXPECT_TRUE(r.has({done_box}));
  EXPECT_TRUE(r.has({"\"event\":\"unload\",\"panel\":\"abem\""}));
  EXPECT_EQ(read_bytes(out).size(), 48u * (240 + 4 * 1024));
  EXPECT_EQ(read_bytes(out), expected_su(recs, 24, 1024, 500));
}

// With several files the header of the second list entry sets channels, ns
// and dt, and every file is then read with them. A second selection leaves
// the first one's entries ahead, so entry 1 may be an older file.
TEST(Abem, SecondListEntrySetsTheGeometry) {
  TempDir dir;
  auto recs = records(dir, 1, 1);
  recs.push_back(records(dir, 2, 2, 12, 512, 5)[0]);  // code 5: 1000 microseconds
  auto r = run(select(several(dir, 1, 2)) + "dump abem\nclick abem.Command1\n");
  EXPECT_EQ(geometry(r), (Texts{"2", "1000", "512", "12"}));
  EXPECT_EQ(read_bytes(dir.str() + "/rec001.SU"), expected_su(recs, 12, 512, 1000));
  // rec003 chosen alone first: entry 1 is then rec001, not the second of the new pair.
  records(dir, 3, 3, 6, 100, 2);
  auto again = run(select(dir.str() + "/rec003.abm") + "dialog \"" + several(dir, 1, 2) + "\"\n"
                   "click abem.Command4\ndump abem\n");
  const std::string first = json(dir.str() + "//rec001.abm"), second = json(dir.str() + "//rec002.abm");
  expect_in(again.dump("abem"), {"\"items\":[" + json(dir.str() + "/rec003.abm ") + "," + first + "," + second + "]"});
  EXPECT_EQ(geometry(again), (Texts{"2", "500", "1024", "24"}));
}

// One path keeps a trailing blank; an unknown code leaves dt as it stood (0
// becomes 100). A cancel gives back "*.abm": nothing is read, code 0 gives
// 24. A path with a blank is cut like several and joined by the separator.
TEST(Abem, SelectionOfOnePath) {
  TempDir dir;
  auto recs = records(dir, 1, 1, 3, 64, 8);
  const std::string f = dir.str() + "/rec001.abm", su = dir.str() + "/rec001.SU";
  const struct {
    std::string script, item, output;
    Texts geometry;
  } cases[] = {
      {select(f), f + " ", su, {"1", "100", "64", "3"}},
      {"session dt 500\n" + select(f), f + " ", su, {"1", "500", "64", "3"}},
      {"show abem\ndialog-cancel\nclick abem.Command4\n", "*.abm ", "*.SU", {"1", "24", "0", "0"}},
      {select("/data/line 1/rec001.abm"), "/data/line/1/rec001.abm", "/data/line/1/rec001.SU", {"1", "24", "0", "0"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    auto r = run(c.script + "dump abem\n");
    expect_in(r.dump("abem"), {"\"items\":[" + json(c.item) + "]"});
    EXPECT_EQ(geometry(r), c.geometry);
    EXPECT_EQ(text_in(r.dump("abem"), "Text2"), c.output);
    EXPECT_FALSE(r.has({"\"event\":\"msgbox\""}));
  }
  EXPECT_FALSE(std::filesystem::exists("*.abm") || std::filesystem::exists("*.abm "));
  run(select(f) + "click abem.Command1\n");
  EXPECT_EQ(read_bytes(su), expected_su(recs, 3, 64, 100));
}

// dt 0 cannot pass: the input box comes back until a number other than 0.
TEST(Abem, ZeroSampleRateAsksAgain) {
  TempDir dir;
  auto recs = records(dir, 1, 1, 2, 16);
  auto r = run(select(dir.str() + "/rec001.abm") + "set abem.Text5 \"0\"\ninput \"0\"\ninput \"none\"\ninput \"250\"\n"
               "click abem.Command1\n");
  EXPECT_EQ(r.with({"{\"event\":\"inputbox\",\"prompt\":\"Enter the samplerate in microS\",\"title\":\"Tracefold 1.0\","
                    "\"default\":\"\""}).size(), 3u);
  EXPECT_EQ(read_bytes(dir.str() + "/rec001.SU"), expected_su(recs, 2, 16, 250));
}

// A hundred files selected: 99 reach the list, the count of 100 is cut to
// 99 with a message, and 99 records are converted.
TEST(Abem, HundredFilesConvertNinetyNine) {
  TempDir dir;
  auto recs = records(dir, 1, 100, 2, 8);
  auto r = run(select(several(dir, 1, 100)) + "dump abem\nclick abem.Command1\n");
  expect_in(r.dump("abem"), {json(dir.str() + "//rec099.abm") + "]"});
  EXPECT_EQ(geometry(r), (Texts{"100", "500", "8", "2"}));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (Texts{box_line("Maximum 99 records"), done_box}));
  recs.pop_back();
  EXPECT_EQ(read_bytes(dir.str() + "/rec001.SU"), expected_su(recs, 2, 8, 500));
}

// The output is written over in place: an older, longer file keeps its
// tail, and ep and duse, never written, keep the old bytes in every trace.
TEST(Abem, LongerOutputKeepsItsTail) {
  TempDir dir;
  auto expected = expected_su(records(dir, 1, 2, 4, 32), 4, 32, 500);
  write_bytes(dir.file("rec001.SU"), std::vector<uint8_t>(expected.size() + 1000, 0x5A));
  run(select(several(dir, 1, 2)) + "click abem.Command1\n");
  for (size_t at = 0; at < expected.size(); at += 240 + 4 * 32)
    for (size_t b : {16, 17, 18, 19, 34, 35}) expected[at + b] = 0x5A;  // ep, duse
  expected.insert(expected.end(), 1000, 0x5A);
  EXPECT_EQ(read_bytes(dir.file("rec001.SU")), expected);
}

// A record that is gone shows the retrying error box again and again.
TEST(Abem, MissingRecordRetriesTheErrorBox) {
  TempDir dir;
  records(dir, 1, 2, 2, 8);
  RunnerOptions options;
  options.max_boxes = 6;
  auto r = run(select(several(dir, 1, 2)) + "set abem.Text6 \"3\"\nclick abem.Command1\n", options);
  EXPECT_EQ(r.exit_code, exit_run_aborted);
  // The dialog was the first of the six boxes.
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}),
            Texts(5, box_line("File conversion error N°  53")));
}

// The progress bar runs from 1 to channels x files and shows F x C, the
// product, not a running count.
TEST(Abem, ProgressShowsFileTimesChannel) {
  TempDir dir;
  records(dir, 1, 2, 3, 8);
  Recording<> p;
  Panel* panel = p.app.panels.show("abem");
  ASSERT_NE(panel, nullptr);
  p.platform.dialog_answers.push_back(several(dir, 1, 2));
  panel->click("Command4");
  std::vector<int> seen;  // the range, then each value
  panel->observer = [&](Control& c) {
    if (c.name != "ProgressBar1") return;
    if (seen.empty()) seen = {c.min, c.max};
    else seen.push_back(c.value);
  };
  panel->click("Command1");
  EXPECT_EQ(seen, (std::vector<int>{1, 6, 1, 2, 3, 2, 4, 6}));
}
