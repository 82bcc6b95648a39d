// The ES-1225 (SEG-1) panel: selection, conversion of records into one SU
// file, the stops and the retrying error box. Expected files are built from
// the record layout: H bytes of file header, then per channel a block of
// 2 x ns + 48 bytes whose samples are taken two bytes ahead of the block.
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

enum class Sample { i16, i32, f32 };

size_t block_of(int ns) { return 2 * static_cast<size_t>(ns) + 48; }
size_t trace_of(int ns) { return 240 + 4 * static_cast<size_t>(ns); }

// The SU file that the records must give, written over `file` (the output's
// content before the run). `ticked` are the input types in the order the
// panel reads them; the float buffer of ns + 1 values lives from trace to
// trace, so what no read sets keeps its last value (0 at the start).
std::vector<uint8_t> expected_su(const std::vector<std::vector<uint8_t>>& records, int channels, int ns, int dt,
                                 const std::vector<Sample>& ticked = {Sample::i16}, std::vector<uint8_t> file = {}) {
  std::vector<float> r4(static_cast<size_t>(ns) + 1, 0.0f);
  for (size_t i = 0; i < records.size(); ++i) {
    const auto& rec = records[i];
    const size_t header = rec.size() - block_of(ns) * channels;
    for (int j = 1; j <= channels; ++j) {
      const size_t start = header - 2 + (j - 1) * block_of(ns);
      for (Sample type : ticked)
        for (size_t k = 0; k <= static_cast<size_t>(ns); ++k) {
          const bool in_block = k < static_cast<size_t>(ns);
          if (type == Sample::i16 && in_block) r4[k] = value_at<int16_t>(rec, start + 2 * k);
          if (type == Sample::i32 && in_block) r4[k] = static_cast<float>(value_at<int32_t>(rec, start + 4 * k));
          if (type == Sample::f32) r4[k] = value_at<float>(rec, start + 4 * k);
        }
      const size_t pos = (i * channels + static_cast<size_t>(j - 1)) * trace_of(ns);
      for (size_t at : {20, 24, 102, 110, 112}) put_at<int32_t>(file, pos + at, 0);  // cdp, cdpt, tstat to ns
      put_trace_words(file, pos, 0, j, ns, dt);
      for (size_t k = 0; k <= static_cast<size_t>(ns); ++k) put_at<float>(file, pos + 240 + 4 * k, r4[k]);
    }
  }
  return file;
}

std::string record_name(int n) { return test::record_name(n, "dat"); }
std::string selection(const TempDir& dir, int first, int last) { return several(dir, first, last, "dat"); }

// Writes records 1..count of 2 channels x 10 samples into `dir`; gives their bytes.
std::vector<std::vector<uint8_t>> small_records(const TempDir& dir, int count) {
  gen::Es1225Layout layout;
  layout.channels = 2, layout.samples = 10, layout.header = 64;
  std::vector<std::vector<uint8_t>> records;
  for (int i = 1; i <= count; ++i) records.push_back(read_bytes(gen::write_es1225(dir.str(), i, layout)));
  return records;
}

// The panel for 2 channels x 10 samples, the dialog answered with `chosen`.
std::string small_panel(const std::string& chosen) {
  return "click Utility.Option4\nset es1225.Text5 \"2\"\nset es1225.Text4 \"10\"\ndialog \"" + chosen +
         "\"\nclick es1225.Command3\n";
}

const std::string done_box = box_line("Conversion done");

}  // namespace

// Two records of 12 channels x 1000 int16 samples, dt 500: 24 traces and the
// extra float of the last one.
TEST(Es1225, TwoRecordsWithTheDefaults) {
  TempDir dir;
  std::vector<std::vector<uint8_t>> records{read_bytes(gen::write_es1225(dir.str(), 1, {})),
                                            read_bytes(gen::write_es1225(dir.str(), 2, {}))};
  EXPECT_EQ(run_script_file("es1225_two_records", dir.str()).lines, expected_transcript("es1225_two_records"));
  auto out = read_bytes(dir.file("es1225.su"));
  ASSERT_EQ(out.size(), 24u * (240 + 4000) + 4);
  EXPECT_EQ(out, expected_su(records, 12, 1000, 500));
  // The samples are the generated gather's.
  EXPECT_EQ(value_at<float>(out, 13 * 4240 + 240 + 4 * 700), static_cast<float>(gen::gather_sample(2, 2, 700)));
}

// One file: nothing listed, no file to convert; a cancel gives back the
// start name; a second selection adds to the list, the count is the last
// one's; the output dialog's name goes to Text2.
TEST(Es1225, SelectionFillsListCountAndOutputName) {
  TempDir dir;
  small_records(dir, 4);
  const std::string one = dir.file("rec001.dat");
  auto r = run("click Utility.Option4\ndialog \"" + one + "\"\nclick es1225.Command3\ndump es1225\n"
               "dialog-cancel\nclick es1225.Command3\ndump es1225\n"
               "dialog \"" + selection(dir, 1, 2) + "\"\nclick es1225.Command3\n"
               "dialog \"" + selection(dir, 3, 4) + "\"\nclick es1225.Command3\ndump es1225\n"
               "dialog \"/data/line 1.su\"\nclick es1225.Command4\ndump es1225\n");
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"es1225\""});
  ASSERT_EQ(dumps.size(), 4u);
  using Texts = std::vector<std::string>;
  expect_in(dumps[0], {"\"items\":[],"});
  EXPECT_EQ(texts_in(dumps[0], {"Text3", "Text2"}), (Texts{"0", one + "/es1225.su"}));
  EXPECT_EQ(texts_in(dumps[1], {"Text3", "Text2"}), (Texts{"0", "*.dat/es1225.su"}));
  std::string items = "\"items\":[";
  for (int i = 1; i <= 4; ++i) items += (i > 1 ? "," : "") + json(dir.file(record_name(i)));
  expect_in(dumps[2], {items + "]"});
  EXPECT_EQ(texts_in(dumps[2], {"Text3", "Text2"}), (Texts{"2", dir.file("es1225.su")}));
  EXPECT_EQ(text_in(dumps[3], "Text2"), "/data/line 1.su");
}

// 120 files: the count shows 120, the list holds the first 99, the box says
// so and 99 records are converted.
TEST(Es1225, MoreThan99FilesConvert99) {
  TempDir dir;
  auto records = small_records(dir, 120);
  auto r = run(small_panel(selection(dir, 1, 120)) + "dump es1225\nclick es1225.Command1\n");
  expect_in(r.dump("es1225"), {json(dir.file("rec099.dat")) + "]"});
  EXPECT_EQ(text_in(r.dump("es1225"), "Text3"), "120");
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{box_line("Maximum 99 records"), done_box}));
  records.resize(99);
  EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500));
}

// A record needs nb_channels x B + 49 bytes: one byte less stops the run
// after the records before it were written, and the panel stays open. A
// missing record is created empty by its open and stops the same way.
TEST(Es1225, ShortRecordStopsWithWrongFileLength) {
  {
    TempDir dir;
    auto records = small_records(dir, 3);
    gen::Es1225Layout boundary;
    boundary.channels = 2, boundary.samples = 10, boundary.header = 49;  // just long enough
    records[1] = read_bytes(gen::write_es1225(dir.str(), 2, boundary));
    records[2].erase(records[2].begin(), records[2].begin() + (64 - 48));  // header of 48: one byte short
    write_bytes(dir.file("rec003.dat"), records[2]);
    EXPECT_EQ(run_script_file("es1225_short_record", dir.str()).lines, expected_transcript("es1225_short_record"));
    records.pop_back();
    EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500));
  }
  TempDir dir;
  auto records = small_records(dir, 1);
  auto r = run(small_panel(selection(dir, 1, 2)) + "click es1225.Command1\n");
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), std::vector<std::string>{box_line("Wrong file length", "stop")});
  EXPECT_FALSE(r.has({"\"event\":\"unload\""}));
  EXPECT_EQ(std::filesystem::file_size(dir.file("rec002.dat")), 0u);
  EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500));
}

// A failing statement shows the box and runs again until the runner's box
// limit ends the run: a count past the list opens an empty name after two
// records are written; channels past 16 bits overflow.
TEST(Es1225, FailingStatementRepeatsTheErrorBox) {
  TempDir dir;
  auto records = small_records(dir, 2);
  const std::pair<std::string, const char*> cases[] = {{"Text3 \"3\"", " 75"}, {"Text5 \"40000\"", " 6"}};
  for (const auto& [field, number] : cases) {
    SCOPED_TRACE(field);
    std::filesystem::remove(dir.file("es1225.su"));
    RunnerOptions options;
    options.max_boxes = 6;
    auto r = run(small_panel(selection(dir, 1, 2)) + "set es1225." + field + "\nclick es1225.Command1\n", options);
    EXPECT_EQ(r.exit_code, exit_run_aborted);
    // The dialog was the first of six boxes. The number has the blank of its sign.
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}),
              std::vector<std::string>(5, box_line("File conversion error N° " + std::string(number) +
                                                   " Check if all files are in the folder !")));
  }
  EXPECT_EQ(read_bytes(dir.file("es1225.su")).size(), 0u);  // the overflow comes before any record
  run(small_panel(selection(dir, 1, 2)) + "set es1225.Text3 \"3\"\nclick es1225.Command1\n");
  EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500));
}

// An existing output is written over in place: its tail and every byte that
// no trace writes keep their old content.
TEST(Es1225, SecondRunLeavesTheOldTail) {
  TempDir dir;
  auto records = small_records(dir, 2);
  std::vector<uint8_t> old(3 * 2 * trace_of(10) + 100);
  for (size_t i = 0; i < old.size(); ++i) old[i] = static_cast<uint8_t>(0xA0 + i % 7);
  write_bytes(dir.file("es1225.su"), old);
  run(small_panel(selection(dir, 1, 2)) + "click es1225.Command1\n");
  EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500, {Sample::i16}, old));
}

// Long and float samples are read two bytes ahead of the block too, B still
// at 2 bytes a sample; each ticked box reads in turn, the later one wins; a
// float read also sets the ns + 1st value, the next trace's first word.
TEST(Es1225, LongAndFloatInputs) {
  const struct {
    std::vector<const char*> boxes;  // ticked once the default is cleared
    std::vector<Sample> reads;
  } cases[] = {
      {{"Check2"}, {Sample::i32}},
      {{"Check3"}, {Sample::f32}},
      {{"Check1", "Check2"}, {Sample::i16, Sample::i32}},
      {{"Check2", "Check3"}, {Sample::i32, Sample::f32}},
      {{}, {}},  // no box: the buffer as sized
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.boxes.size() ? c.boxes.back() : "none");
    TempDir dir;
    const bool floats = c.reads.empty() || c.reads.back() == Sample::f32;
    std::vector<std::vector<uint8_t>> records;
    for (int i = 1; i <= 2; ++i) {
      // From two bytes ahead of the first block to the end, a run of 4-byte values.
      const size_t header = 64 + 4 * static_cast<size_t>(i);
      std::vector<uint8_t> rec(header + block_of(10) * 2, 'H');
      for (size_t at = header - 2, m = 0; at + 4 <= rec.size(); at += 4, ++m)
        floats ? put_at<float>(rec, at, static_cast<float>(m) * 0.75f - 9.5f)
               : put_at<int32_t>(rec, at, static_cast<int32_t>(m) * 70001 - 123456);
      write_bytes(dir.file(record_name(i)), rec);
      records.push_back(rec);
    }
    std::string script = small_panel(selection(dir, 1, 2)) + "check es1225.Check1 off\n";
    for (const char* box : c.boxes) script += std::string("check es1225.") + box + " on\n";
    EXPECT_TRUE(run(script + "click es1225.Command1\n").has({done_box}));
    EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500, c.reads));
  }
}

// Number fields drop anything but digits with a beep; the sample rate field
// takes every key.
TEST(Es1225, NumberFieldsDropLetters) {
  auto r = run("click Utility.Option4\ntype es1225.Text3 \"1a2\"\ntype es1225.Text4 \"x5\"\n"
               "type es1225.Text5 \".\"\ntype es1225.Text1 \"5x.\"\ndump es1225\n");
  EXPECT_EQ(r.with({"\"event\":\"beep\""}).size(), 3u);
  EXPECT_EQ(texts_in(r.dump("es1225"), {"Text3", "Text4", "Text5", "Text1"}),
            (std::vector<std::string>{"12", "10005", "12", "5005x."}));
}
