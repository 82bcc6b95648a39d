// The generic binary panel: the selection walk and its grid, the header size
// computed from the file's length, and the SU traces of a described layout,
// checked byte for byte against records built here.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/binary_record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

using Texts = std::vector<std::string>;
using gen::SampleType;

// What the operator types: the layout, and the option of the sample type
// (Option4, ASCII, reads nothing).
struct Described {
  int channels = 3, ns = 1000, file_header = 512, trace_header = 64, dt = 480;
  std::string option = "Option2";
};

int width_of(const std::string& option) { return option == "Option1" ? 2 : option == "Option4" ? 0 : 4; }

// The SU file a description gives: for file F and channel C a zero header
// but fldr F, tracf C, trid, nvs, nhs and duse 1, ns and dt; the samples
// read little-endian at H + C x T + (C - 1) x W x ns and made floats (float
// samples copied); ASCII gives zero samples.
std::vector<uint8_t> expected_su(const std::vector<std::vector<uint8_t>>& records, const Described& d) {
  std::vector<uint8_t> out;
  const int w = width_of(d.option);
  for (size_t f = 0; f < records.size(); ++f)
    for (int c = 1; c <= d.channels; ++c) {
      std::vector<uint8_t> trace(240 + 4 * static_cast<size_t>(d.ns), 0);
      put_trace_words(trace, 0, static_cast<int32_t>(f + 1), c, d.ns, d.dt);
      put_at<int16_t>(trace, 34, 1);
      const size_t first = static_cast<size_t>(d.file_header + c * d.trace_header + (c - 1) * w * d.ns);
      for (int s = 0; s < d.ns; ++s) {
        const size_t at = first + static_cast<size_t>(w * s);
        float v = 0;
        if (d.option == "Option1") v = value_at<int16_t>(records[f], at);
        if (d.option == "Option2") v = static_cast<float>(value_at<int32_t>(records[f], at));
        if (d.option == "Option3") v = value_at<float>(records[f], at);
        put_at<float>(trace, 240 + 4 * static_cast<size_t>(s), v);
      }
      out.insert(out.end(), trace.begin(), trace.end());
    }
  return out;
}

std::vector<std::vector<uint8_t>> records(const TempDir& dir, int count, const gen::BinaryLayout& layout) {
  std::vector<std::vector<uint8_t>> out;
  for (int i = 1; i <= count; ++i) out.push_back(read_bytes(gen::write_binary(dir.str(), i, layout)));
  return out;
}

gen::BinaryLayout layout_of(const Described& d, SampleType type, bool big_endian = false) {
  gen::BinaryLayout l;
  l.channels = d.channels, l.samples = d.ns, l.file_header = d.file_header, l.trace_header = d.trace_header;
  l.type = type, l.big_endian = big_endian;
  return l;
}

// The panel shown from the main panel and the selection answered.
std::string select(const std::string& chosen) {
  return "click Utility.Option7\ndialog \"" + chosen + "\"\nclick sisforme.Command5\n";
}

// The layout typed into the fields.
std::string describe(const Described& d) {
  return "set sisforme.Text3 \"" + std::to_string(d.channels) + "\"\nset sisforme.Text4 \"" + std::to_string(d.ns) +
         "\"\nset sisforme.Text5 \"" + std::to_string(d.dt) + "\"\nset sisforme.Text7 \"" +
         std::to_string(d.file_header) + "\"\nset sisforme.Text8 \"" + std::to_string(d.trace_header) +
         "\"\nclick sisforme." + d.option + "\n";
}

std::string cells(const Texts& row) {
  std::string s = "\"cells\":[[";
  for (size_t i = 0; i < row.size(); ++i) s += (i ? "," : "") + json(row[i]);
  return s + "]]";
}

const std::string done_box = box_line("OK, Conversion done");

}  // namespace

// One file of three traces behind a 512-byte file header, each behind a
// 64-byte trace header, int32 samples written big-endian, at two sizes. The
// panel reads little-endian: what it gives is the int32 of the reversed
// bytes, trace by trace where the description puts them.
TEST(Sisforme, ThreeTraceFileWithTraceHeadersByteExact) {
  for (int ns : {1000, 7}) {
    SCOPED_TRACE(ns);
    TempDir dir;
    Described d;
    d.ns = ns;
    auto recs = records(dir, 1, layout_of(d, SampleType::i32, true));
    const std::string in = dir.file("rec001.bin"), out = dir.file("rec001.SU");
    auto r = run(select(in) + describe(d) + "click sisforme.Command1\ndump sisforme\n");
    EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"ES1225 file selection\","
                       "\"filter\":\"Record |*.a*|All files|*.*|\",\"file\":\"*.*\",\"dir\":\"\",\"flags\":512"}));
    expect_in(r.dump("sisforme"), {cells({dir.str() + "/", "rec001.bin"})});
    EXPECT_EQ(text_in(r.dump("sisforme"), "Text2"), out);
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{done_box});
    EXPECT_FALSE(r.has({"\"event\":\"unload\",\"panel\":\"sisforme\""}));  // the panel stays open
    EXPECT_EQ(read_bytes(out), expected_su(recs, d));
    // Byte-swapped, channel 2's sample 0 is the generator's value reversed.
    const auto su = read_bytes(out);
    const auto wanted = static_cast<int32_t>(gen::binary_sample(1, 2, 0, SampleType::i32));
    uint8_t bytes[4];
    std::memcpy(bytes, &wanted, 4);
    std::reverse(bytes, bytes + 4);
    int32_t as_read = 0;
    std::memcpy(&as_read, bytes, 4);
    EXPECT_EQ(value_at<float>(su, 240 + 4 * static_cast<size_t>(ns) + 240), static_cast<float>(as_read));
  }
}

// Every sample type of the option frame over two files of a line: int16,
// int32 and float32 little-endian, and ASCII, which reads nothing and writes
// zero samples. A trace header of 240 behind a file header of 3600 puts
// channel 2 at 3600 + 480 + 4 x ns.
TEST(Sisforme, EachSampleTypeOverTwoFiles) {
  const struct {
    std::string option;
    SampleType type;
    int file_header, trace_header;
  } cases[] = {
      {"Option1", SampleType::i16, 100, 0},
      {"Option2", SampleType::i32, 3600, 240},
      {"Option3", SampleType::f32, 0, 32},
      {"Option4", SampleType::i32, 2048, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.option);
    TempDir dir;
    Described d;
    d.channels = 4, d.ns = 50, d.dt = 250, d.option = c.option, d.file_header = c.file_header,
    d.trace_header = c.trace_header;
    auto recs = records(dir, 2, layout_of(d, c.type));
    auto r = run(select(several(dir, 1, 2, "bin")) + describe(d) + "dump sisforme\nclick sisforme.Command1\n");
    const std::string out = dir.str() + "//rec001.SU";
    EXPECT_EQ(text_in(r.dump("sisforme"), "Text2"), out);
    EXPECT_EQ(text_in(r.dump("sisforme"), "Text6"), "2");
    EXPECT_EQ(read_bytes(out), expected_su(recs, d));
    EXPECT_TRUE(r.has({done_box}));
  }
}

// The walk of the selection: several files fill row 0 with the folder and
// the names, and file_in keeps the last name alone, whose length cannot be
// read; one path is cut at its last separator; a cancel gives "*.*" in
// column 1 and the output name "SU".
TEST(Sisforme, SelectionFillsTheGrid) {
  TempDir dir;
  Described d;
  records(dir, 3, layout_of(d, SampleType::i32));
  const std::string folder = dir.str() + "/";
  const struct {
    std::string chosen;
    Texts row;
    std::string count, output, size, file_in;
  } cases[] = {
      {several(dir, 1, 3, "bin"), {folder, "rec001.bin", "rec002.bin", "rec003.bin"}, "3", dir.str() + "//rec001.SU",
       " ", "rec003.bin"},
      {dir.file("rec002.bin"), {folder, "rec002.bin"}, "1", dir.file("rec002.SU"), "12704", dir.file("rec002.bin")},
      {"", {"", "*.*"}, "1", "SU", " ", "*.*"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.chosen);
    const std::string answer = c.chosen.empty() ? "click Utility.Option7\ndialog-cancel\nclick sisforme.Command5\n"
                                                : select(c.chosen);
    auto r = run(answer + "dump sisforme\ndump session\n");
    const std::string dump = r.dump("sisforme");
    expect_in(dump, {cells(c.row)});
    EXPECT_EQ(texts_in(dump, {"Text6", "Text2"}), (Texts{c.count, c.output}));
    expect_in(control_in_dump(dump, "Label8"), {"\"caption\":" + json(c.size)});
    expect_in(r.with({"\"session\":"}).back(), {"\"file_in\":" + json(c.file_in)});
  }
  // A second, shorter selection narrows the row to its own pieces.
  auto again = run(select(several(dir, 1, 3, "bin")) + "dialog \"" + dir.file("rec001.bin") +
                   "\"\nclick sisforme.Command3\ndump sisforme\n");
  expect_in(again.dump("sisforme"), {cells({folder, "rec001.bin"})});
}

// Compute Header size: Text9 from the values as they stand, Text7 from the
// file's length; a second press then gives Text9 equal to the length. After
// a selection of several files file_in is a bare name, and Text7 stays.
TEST(Sisforme, ComputedHeaderSizeFollowsTheFileLength) {
  TempDir dir;
  Described d;
  d.ns = 100, d.file_header = 300, d.trace_header = 20;
  records(dir, 2, layout_of(d, SampleType::i16));
  const std::string typed = "set sisforme.Text3 \"3\"\nset sisforme.Text4 \"100\"\nset sisforme.Text8 \"20\"\n"
                            "click sisforme.Option1\n";
  auto r = run(select(dir.file("rec001.bin")) + typed + "click sisforme.Command6\ndump sisforme\n"
               "click sisforme.Command6\ndump sisforme\n");
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"sisforme\""});
  ASSERT_EQ(dumps.size(), 2u);
  // (2 x 100 + 20) x 3 = 660 bytes of traces; the default header 2048.
  EXPECT_EQ(texts_in(dumps[0], {"Text9", "Text7"}), (Texts{"2708", "300"}));
  EXPECT_EQ(texts_in(dumps[1], {"Text9", "Text7"}), (Texts{"960", "300"}));
  // ASCII counts four bytes a sample here.
  auto ascii = run(select(dir.file("rec001.bin")) + typed + "click sisforme.Option4\nclick sisforme.Command6\n"
                   "dump sisforme\n");
  EXPECT_EQ(texts_in(ascii.dump("sisforme"), {"Text9", "Text7"}), (Texts{"3308", "-300"}));
  auto several_files = run(select(several(dir, 1, 2, "bin")) + typed + "click sisforme.Command6\ndump sisforme\n");
  EXPECT_EQ(texts_in(several_files.dump("sisforme"), {"Text9", "Text7"}), (Texts{"2708", "2048"}));
}

// A description that puts a trace before the file's start stops with the
// stop box; files stay open and the pointer an hourglass. Traces before it
// are in the file.
TEST(Sisforme, NegativePositionAsksToVerifyTheParameters) {
  TempDir dir;
  Described d;
  d.channels = 3, d.ns = 10, d.file_header = 0, d.trace_header = 0;
  records(dir, 1, layout_of(d, SampleType::i32));
  const struct {
    std::string typed;
    size_t traces_written;
  } cases[] = {
      {"set sisforme.Text7 \"-5000\"\n", 0},
      // -100 + C x 60: the first trace lies 40 bytes before the start.
      {"set sisforme.Text7 \"-100\"\nset sisforme.Text8 \"60\"\n", 0},
      // 100 - C x 70 + (C - 1) x 40: channels 1 and 2 read at 30 and 0,
      // channel 3 at -30; the two traces before it reach the file.
      {"set sisforme.Text7 \"100\"\nset sisforme.Text8 \"-70\"\n", 2},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.typed);
    std::filesystem::remove(dir.file("rec001.SU"));
    auto r = run(select(dir.file("rec001.bin")) + "set sisforme.Text3 \"3\"\nset sisforme.Text4 \"10\"\n" + c.typed +
                 "click sisforme.Command1\n");
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{box_line("Verify your parameters...", "stop")});
    EXPECT_EQ(r.with({"\"event\":\"pointer\""}).back(), "{\"event\":\"pointer\",\"panel\":\"sisforme\",\"pointer\":\"hourglass\"}");
    EXPECT_EQ(read_bytes(dir.file("rec001.SU")).size(), c.traces_written * (240 + 40));
  }
}

// The output is written over in place: an older, longer file keeps its tail
// and ep, never written, keeps the old bytes.
TEST(Sisforme, LongerOutputKeepsItsTail) {
  TempDir dir;
  Described d;
  d.channels = 2, d.ns = 16;
  auto expected = expected_su(records(dir, 1, layout_of(d, SampleType::i32)), d);
  write_bytes(dir.file("rec001.SU"), std::vector<uint8_t>(expected.size() + 500, 0x5A));
  run(select(dir.file("rec001.bin")) + describe(d) + "click sisforme.Command1\n");
  for (size_t at = 0; at < expected.size(); at += 240 + 4 * 16)
    for (size_t b = 16; b < 20; ++b) expected[at + b] = 0x5A;  // ep
  expected.insert(expected.end(), 500, 0x5A);
  EXPECT_EQ(read_bytes(dir.file("rec001.SU")), expected);
}

// Faults in the conversion show the retrying box until the runner's limit:
// a file gone, a sample count past 32 bits. Nonsense in the fields that
// reads as 0 converts nothing; a hundred files convert 99. The input is
// never changed.
TEST(Sisforme, FaultsAndAbsurdFields) {
  TempDir dir;
  Described d;
  d.channels = 2, d.ns = 8;
  auto recs = records(dir, 2, layout_of(d, SampleType::i32));
  const auto before = read_bytes(dir.file("rec001.bin"));
  RunnerOptions options;
  options.max_boxes = 6;
  const struct {
    std::string script;
    std::string box;
  } retries[] = {
      {select(several(dir, 1, 2, "bin")) + describe(d) + "set sisforme.Text6 \"3\"\n", "File conversion error N°  53"},
      {select(dir.file("rec001.bin")) + "set sisforme.Text4 \"99999999999\"\n", "File conversion error N°  6"},
      {select(dir.file("rec001.bin")) + "set sisforme.Text4 \"0\"\n", "File conversion error N°  9"},
  };
  for (const auto& c : retries) {
    SCOPED_TRACE(c.script);
    auto r = run(c.script + "click sisforme.Command1\n", options);
    EXPECT_EQ(r.exit_code, exit_run_aborted);
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts(5, box_line(c.box)));
  }
  std::filesystem::remove(dir.file("rec001.SU"));
  auto nothing = run(select(dir.file("rec001.bin")) + "set sisforme.Text3 \"lots\"\nset sisforme.Text7 \"??\"\n"
                     "click sisforme.Command1\n");
  EXPECT_EQ(nothing.with({"\"event\":\"msgbox\""}), Texts{done_box});
  EXPECT_EQ(read_bytes(dir.file("rec001.SU")).size(), 0u);
  EXPECT_EQ(read_bytes(dir.file("rec001.bin")), before);

  TempDir line;
  auto hundred = records(line, 100, layout_of(d, SampleType::i32));
  auto r = run(select(several(line, 1, 100, "bin")) + describe(d) + "click sisforme.Command1\n");
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (Texts{box_line("Maximum 99 records"), done_box}));
  hundred.pop_back();
  EXPECT_EQ(read_bytes(line.str() + "/rec001.SU"), expected_su(hundred, d));
}

// The progress bar shows only during the run, from 1 to files x channels,
// at F x C.
TEST(Sisforme, ProgressShowsOnlyDuringTheRun) {
  TempDir dir;
  Described d;
  d.channels = 3, d.ns = 8;
  records(dir, 2, layout_of(d, SampleType::i32));
  Recording<> p;
  Panel* utility = p.app.panels.show("Utility");
  ASSERT_NE(utility, nullptr);
  Panel* panel = p.app.panels.show("sisforme");
  ASSERT_NE(panel, nullptr);
  EXPECT_FALSE((*panel)["ProgressBar1"].visible);
  p.platform.dialog_answers.push_back(several(dir, 1, 2, "bin"));
  panel->click("Command5");
  panel->set_text("Text3", "3");
  panel->set_text("Text4", "8");
  std::vector<int> values;
  std::vector<bool> shown;
  panel->observer = [&](Control& c) {
    if (c.name != "ProgressBar1") return;
    values.push_back(c.value);
    shown.push_back(c.visible);
  };
  panel->click("Command1");
  EXPECT_EQ((*panel)["ProgressBar1"].max, 6);
  EXPECT_FALSE((*panel)["ProgressBar1"].visible);
  ASSERT_GE(values.size(), 3u);
  EXPECT_TRUE(shown.front());
  EXPECT_EQ(std::vector<int>(values.end() - 7, values.end() - 1), (std::vector<int>{1, 2, 3, 2, 4, 6}));
}

// The help box, the output dialog, and the double click on the output field.
TEST(Sisforme, HelpAndOutputDialog) {
  TempDir dir;
  auto r = run_script_file("sisforme_help", dir.str());
  EXPECT_EQ(r.lines, expected_transcript("sisforme_help"));
}
