// The ES-1225 (SEG-1) panel: selection, conversion of records into one SU
// file, the stops and the retrying error box. Expected files are built here
// from the record layout: H bytes of file header, then per channel a block
// of 2 x ns + 48 bytes whose samples are taken two bytes ahead of the block.
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
  const size_t block = block_of(ns);
  for (size_t i = 0; i < records.size(); ++i) {
    const auto& rec = records[i];
    const size_t header = rec.size() - block * channels;
    for (int j = 1; j <= channels; ++j) {
      const size_t start = header - 2 + (j - 1) * block;
      for (Sample type : ticked)
        for (int k = 0; k <= ns; ++k) {
          size_t kk = static_cast<size_t>(k);
          if (type == Sample::i16 && k < ns) r4[kk] = value_at<int16_t>(rec, start + 2 * kk);
          if (type == Sample::i32 && k < ns) r4[kk] = static_cast<float>(value_at<int32_t>(rec, start + 4 * kk));
          if (type == Sample::f32) r4[kk] = value_at<float>(rec, start + 4 * kk);
        }
      const size_t pos = (i * channels + static_cast<size_t>(j - 1)) * trace_of(ns);
      put_at<int32_t>(file, pos + 8, 0);  // fldr
      put_at<int32_t>(file, pos + 12, j);  // tracf
      put_at<int32_t>(file, pos + 20, 0);  // cdp
      put_at<int32_t>(file, pos + 24, 0);  // cdpt
      put_at<int16_t>(file, pos + 28, 1);  // trid
      put_at<int16_t>(file, pos + 30, 1);  // nvs
      put_at<int16_t>(file, pos + 32, 1);  // nhs
      put_at<int32_t>(file, pos + 102, 0);  // tstat and laga
      put_at<int32_t>(file, pos + 110, 0);  // muts and mute
      put_at<int32_t>(file, pos + 112, 0);  // mute and ns
      put_at<int16_t>(file, pos + 114, static_cast<int16_t>(ns));
      put_at<int16_t>(file, pos + 116, static_cast<int16_t>(dt));
      for (int k = 0; k <= ns; ++k) put_at<float>(file, pos + 240 + 4 * static_cast<size_t>(k), r4[static_cast<size_t>(k)]);
    }
  }
  return file;
}

// A record of `channels` x `ns` whose bytes from two ahead of the first block
// to the end are a run of 4-byte values value(m), m = 0, 1, ...
template <typename T>
std::vector<uint8_t> four_byte_record(int channels, int ns, size_t header, T (*value)(int)) {
  std::vector<uint8_t> rec(header + block_of(ns) * channels, 'H');
  for (size_t at = header - 2, m = 0; at + 4 <= rec.size(); at += 4, ++m) put_at<T>(rec, at, value(static_cast<int>(m)));
  return rec;
}

std::string record_name(int n) {
  char name[32];
  std::snprintf(name, sizeof name, "rec%03d.dat", n);
  return name;
}

// The dialog text of a multiple selection of records first..last of `dir`.
std::string selection(const TempDir& dir, int first, int last) {
  std::string text = dir.str() + "/";
  for (int i = first; i <= last; ++i) text += " " + record_name(i);
  return text;
}

// Writes small ES-1225 records 1..count into `dir` and gives their bytes.
std::vector<std::vector<uint8_t>> small_records(const TempDir& dir, int count, int channels, int ns, int header) {
  gen::Es1225Layout layout;
  layout.channels = channels, layout.samples = ns, layout.header = header;
  std::vector<std::vector<uint8_t>> records;
  for (int i = 1; i <= count; ++i) records.push_back(read_bytes(gen::write_es1225(dir.str(), i, layout)));
  return records;
}

std::string dump_of(const RunResult& r) {
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"es1225\""});
  return dumps.empty() ? "" : dumps.back();
}

// The start of a text box in a dump: its label and its text.
std::string text_box(const std::string& control, const std::string& label, const std::string& text) {
  return json(control) + ":{\"kind\":\"text\",\"caption\":" + json(label) + ",\"text\":" + json(text) + ",";
}

const std::string done_box = "\"event\":\"msgbox\",\"text\":\"Conversion done\",\"title\":\"Tracefold 1.0\",\"icon\":\"none\"";
const std::string error_box_start = "\"event\":\"msgbox\",\"text\":\"File conversion error N° ";
const std::string error_box_end = " Check if all files are in the folder !\"";

// The panel for a small geometry: channels and samples typed in, then the
// dialog answered with `chosen`.
std::string small_panel(int channels, int ns, const std::string& chosen) {
  return "click Utility.Option4\nset es1225.Text5 \"" + std::to_string(channels) + "\"\nset es1225.Text4 \"" +
         std::to_string(ns) + "\"\ndialog \"" + chosen + "\"\nclick es1225.Command3\n";
}
std::string small_panel(const TempDir& dir, int channels, int ns, int first, int last) {
  return small_panel(channels, ns, selection(dir, first, last));
}

}  // namespace

TEST(Es1225, PanelReadsLikeItsTable) {
  auto r = run(
      "click Utility.Option4\ndump es1225\nclick es1225.Command2\n"
      "dialog \"/data/line 1.su\"\nclick es1225.Command4\ndump es1225\nclick es1225.Command4\ndump es1225\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"es1225\""});
  ASSERT_EQ(dumps.size(), 3u);
  const std::string& d = dumps[0];
  EXPECT_NE(d.find("\"caption\":\" SEG-1 / ES-1225 to SU (min=2 records)\""), std::string::npos);
  for (const std::string& fragment : {
           std::string("\"Command3\":{\"kind\":\"button\",\"caption\":\"Press here to select ES1225 files (Min=2 records)\""),
           std::string("\"List1\":{\"kind\":\"list\",\"caption\":\"\",\"text\":\"\""), text_box("Text3", "Number of files", ""),
           text_box("Text5", "Traces / rec", "12"), text_box("Text4", "Number of sample", "1000"),
           text_box("Text1", "Samplerate", "500"), text_box("Text2", "", " "),
           std::string("\"Combo1\":{\"kind\":\"combo\",\"caption\":\"Record length\",\"text\":\"250 ms\""),
           std::string("\"tooltip\":\"Select ghere the record length\",\"items\":[\"25 ms\",\"50 ms\",\"100 ms\",\"250 "
                       "ms\",\"500 ms\",\"1000 ms\",\"2000 ms\"]"),
           std::string("\"Check1\":{\"kind\":\"check\",\"caption\":\"Short Integer Input data\",\"text\":\"\",\"value\":1"),
           std::string("\"Check2\":{\"kind\":\"check\",\"caption\":\"Long Integer Input  Data\",\"text\":\"\",\"value\":0"),
           std::string("\"Check3\":{\"kind\":\"check\",\"caption\":\"Floating point Input data\",\"text\":\"\",\"value\":0"),
           std::string("\"Command4\":{\"kind\":\"button\",\"caption\":\"Out file\""),
           std::string("\"Command2\":{\"kind\":\"button\",\"caption\":\"Info\""),
           std::string("\"Command1\":{\"kind\":\"button\",\"caption\":\"Convert\""),
           std::string("\"ProgressBar1\":{\"kind\":\"progress\"")})
    EXPECT_NE(d.find(fragment), std::string::npos) << fragment;
  EXPECT_NE(control_in_dump(d, "Text5").find("\"tooltip\":\"Type here the number of file to convert\""), std::string::npos);
  EXPECT_NE(d.find("\"caption\":\"Trace number\""), std::string::npos);  // a label with no control behind it

  const std::string crlf = "\r\n";
  const std::string help = "ES-1225 to SU format conversion" + crlf +
                           "This module will convert ES-1225 (SEG-1) 12 channels and 1000 samples records  " + crlf +
                           "to SU format. " + crlf + crlf + " 1- Select all the files of your line" + crlf +
                           " 2- Select the record length " + crlf + " 3- click on convert " + crlf + crlf +
                           "You MUST enter the record length, default value is 250 ms  " + crlf +
                           "The result will be a single file with all the selected data ";
  EXPECT_TRUE(r.has({"\"event\":\"msgbox\",\"text\":" + json(help) + ",\"title\":\"Tracefold 1.0\",\"icon\":\"none\""}));

  // The output dialog: its name goes to Text2, a cancel gives the start name.
  const std::string out_dialog = "\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"SU File name selection\","
                                 "\"filter\":\"Seismic File |*.SU|All files|*.*|\",\"file\":\"*.SU\",\"dir\":\"\",\"flags\":0";
  EXPECT_EQ(r.with({out_dialog}).size(), 2u);
  EXPECT_NE(dumps[1].find(text_box("Text2", "", "/data/line 1.su")), std::string::npos);
  EXPECT_NE(dumps[2].find(text_box("Text2", "", "*.SU")), std::string::npos);
}

// Two records of 12 channels x 1000 int16 samples, dt 500: 24 traces and the
// extra float of the last one.
TEST(Es1225, TwoRecordsWithTheDefaults) {
  TempDir dir;
  gen::Es1225Layout layout;
  std::vector<std::vector<uint8_t>> records{read_bytes(gen::write_es1225(dir.str(), 1, layout)),
                                            read_bytes(gen::write_es1225(dir.str(), 2, layout))};
  auto r = run_script_file("es1225_two_records", dir.str());
  ASSERT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.lines, expected_transcript("es1225_two_records"));

  auto out = read_bytes(dir.file("es1225.su"));
  ASSERT_EQ(out.size(), 24u * (240 + 4000) + 4);
  for (size_t t = 0; t < 24; ++t) {
    const size_t pos = t * 4240;
    EXPECT_EQ(value_at<int32_t>(out, pos + 8), 0) << t;  // fldr
    EXPECT_EQ(value_at<int32_t>(out, pos + 12), static_cast<int32_t>(t % 12 + 1)) << t;  // tracf
    EXPECT_EQ(value_at<int16_t>(out, pos + 28), 1);
    EXPECT_EQ(value_at<int16_t>(out, pos + 30), 1);
    EXPECT_EQ(value_at<int16_t>(out, pos + 32), 1);
    EXPECT_EQ(value_at<int16_t>(out, pos + 114), 1000);
    EXPECT_EQ(value_at<int16_t>(out, pos + 116), 500);
    const int record = static_cast<int>(t / 12) + 1, channel = static_cast<int>(t % 12) + 1;
    for (int s = 0; s < 1000; ++s)
      ASSERT_EQ(value_at<float>(out, pos + 240 + 4 * static_cast<size_t>(s)),
                static_cast<float>(gen::gather_sample(record, channel, s)))
          << "trace " << t << " sample " << s;
    // The ns + 1st float: the next record's first word, 0 for integer input.
    EXPECT_EQ(value_at<float>(out, pos + 4240), 0.0f);
  }
  EXPECT_EQ(out, expected_su(records, 12, 1000, 500));
}

TEST(Es1225, SelectionFillsListCountAndOutputName) {
  TempDir dir;
  small_records(dir, 4, 2, 10, 64);
  const std::string one = dir.file("rec001.dat");
  auto r = run("click Utility.Option4\n"
               "dialog \"" + one + "\"\nclick es1225.Command3\ndump es1225\n"
               "dialog-cancel\nclick es1225.Command3\ndump es1225\ndump session\n"
               "dialog \"" + selection(dir, 1, 2) + "\"\nclick es1225.Command3\n"
               "dialog \"" + selection(dir, 3, 4) + "\"\nclick es1225.Command3\ndump es1225\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"es1225\""});
  ASSERT_EQ(dumps.size(), 3u);
  EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"ES1225 file selection\","
                     "\"filter\":\"Record |*.dat|All files|*.*|\",\"file\":\"*.dat\",\"dir\":\"\",\"flags\":512"}));

  // One file: nothing listed, no file to convert.
  EXPECT_NE(dumps[0].find(text_box("Text3", "Number of files", "0")), std::string::npos);
  EXPECT_NE(dumps[0].find("\"items\":[],"), std::string::npos);
  EXPECT_NE(dumps[0].find(text_box("Text2", "", one + "/es1225.su")), std::string::npos);

  // A cancel gives back the start name.
  EXPECT_NE(dumps[1].find(text_box("Text3", "Number of files", "0")), std::string::npos);
  EXPECT_NE(dumps[1].find(text_box("Text2", "", "*.dat/es1225.su")), std::string::npos);
  EXPECT_TRUE(r.has({"\"event\":\"dump\",\"session\":", "\"file_in\":\"*.dat\""}));

  // A second selection adds to the list; the count is the last one's.
  std::string items = "\"items\":[";
  for (int i = 1; i <= 4; ++i) items += (i > 1 ? "," : "") + json(dir.file(record_name(i)));
  EXPECT_NE(dumps[2].find(items + "]"), std::string::npos) << dumps[2];
  EXPECT_NE(dumps[2].find(text_box("Text3", "Number of files", "2")), std::string::npos);
  EXPECT_NE(dumps[2].find(text_box("Text2", "", dir.file("es1225.su"))), std::string::npos);
}

// 120 files: the count shows 120, the list holds the first 99, the box says
// so and 99 records are converted.
TEST(Es1225, MoreThan99FilesConvert99) {
  TempDir dir;
  auto records = small_records(dir, 120, 2, 10, 64);
  auto r = run(small_panel(dir, 2, 10, 1, 120) + "dump es1225\nclick es1225.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  const std::string list = control_in_dump(dump_of(r), "List1");
  size_t entries = 0;
  for (size_t at = list.find(".dat\""); at != std::string::npos; at = list.find(".dat\"", at + 1)) ++entries;
  EXPECT_EQ(entries, 99u);
  EXPECT_NE(list.find(json(dir.file("rec099.dat"))), std::string::npos);
  EXPECT_NE(dump_of(r).find(text_box("Text3", "Number of files", "120")), std::string::npos);

  EXPECT_TRUE(r.has({"\"event\":\"msgbox\",\"text\":\"Maximum 99 records\",\"title\":\"Tracefold 1.0\",\"icon\":\"none\""}));
  EXPECT_TRUE(r.has({done_box}));
  records.resize(99);
  auto out = read_bytes(dir.file("es1225.su"));
  EXPECT_EQ(out.size(), 99u * 2 * trace_of(10) + 4);
  EXPECT_EQ(out, expected_su(records, 2, 10, 500));
}

TEST(Es1225, NoFileCountConvertsNothingButOpensTheOutput) {
  TempDir dir;
  small_records(dir, 1, 2, 10, 64);
  const std::string out = dir.file("out.su");
  auto r = run("click Utility.Option4\ndialog \"" + dir.file("rec001.dat") + "\"\nclick es1225.Command3\n"
               "set es1225.Text2 \"" + out + "\"\nclick es1225.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  EXPECT_TRUE(r.has({done_box}));
  EXPECT_TRUE(r.has({"\"event\":\"unload\",\"panel\":\"es1225\""}));
  ASSERT_TRUE(std::filesystem::exists(out));
  EXPECT_EQ(std::filesystem::file_size(out), 0u);
}

// A record needs nb_channels x B + 49 bytes: one byte less stops the run
// after the records before it were written, and the panel stays open. A
// missing record is created empty by its open and stops the same way.
TEST(Es1225, ShortRecordStopsWithWrongFileLength) {
  {
    TempDir dir;
    auto records = small_records(dir, 3, 2, 10, 64);
    gen::Es1225Layout boundary;
    boundary.channels = 2, boundary.samples = 10, boundary.header = 49;  // just long enough
    records[1] = read_bytes(gen::write_es1225(dir.str(), 2, boundary));
    records[2].erase(records[2].begin(), records[2].begin() + (64 - 48));  // header of 48: one byte short
    write_bytes(dir.file("rec003.dat"), records[2]);

    auto r = run_script_file("es1225_short_record", dir.str());
    ASSERT_EQ(r.exit_code, 0);
    EXPECT_EQ(r.lines, expected_transcript("es1225_short_record"));
    records.pop_back();
    EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500));
  }
  {
    TempDir dir;
    auto records = small_records(dir, 1, 2, 10, 64);
    auto r = run(small_panel(dir, 2, 10, 1, 2) + "click es1225.Command1\n");
    ASSERT_EQ(r.exit_code, 0);
    EXPECT_TRUE(r.has({"\"event\":\"msgbox\",\"text\":\"Wrong file length\",\"title\":\"Tracefold 1.0\",\"icon\":\"stop\""}));
    EXPECT_FALSE(r.has({"\"event\":\"unload\""}));
    ASSERT_TRUE(std::filesystem::exists(dir.file("rec002.dat")));
    EXPECT_EQ(std::filesystem::file_size(dir.file("rec002.dat")), 0u);
    EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500));
  }
}

// A failing statement shows the box and runs again: a fault that stays
// shows it again and again, until the runner's box limit ends the run.
TEST(Es1225, FailingStatementRepeatsTheErrorBox) {
  TempDir dir;
  small_records(dir, 2, 2, 10, 64);
  struct Case {
    const char* what;
    std::string script;  // up to the conversion
    int records_written;
  };
  const Case cases[] = {
      {"a count past the list: an empty name", small_panel(dir, 2, 10, 1, 2) + "set es1225.Text3 \"3\"\n", 2},
      {"a record in a missing folder",
       small_panel(2, 10, dir.str() + "/gone/ rec001.dat rec002.dat") + "set es1225.Text2 \"" + dir.file("es1225.su") +
           "\"\n",
       0},
      {"channels past 16 bits", small_panel(dir, 2, 10, 1, 2) + "set es1225.Text5 \"40000\"\n", 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::filesystem::remove(dir.file("es1225.su"));
    RunnerOptions options;
    options.max_boxes = 6;
    auto r = run(c.script + "click es1225.Command1\n", options);
    EXPECT_EQ(r.exit_code, exit_run_aborted);
    auto boxes = r.with({error_box_start, error_box_end});
    ASSERT_GE(boxes.size(), 3u);
    for (const auto& box : boxes) EXPECT_EQ(box, boxes[0]);
    EXPECT_FALSE(r.has({done_box}));
    std::vector<std::vector<uint8_t>> records;
    for (int i = 1; i <= c.records_written; ++i) records.push_back(read_bytes(dir.file(record_name(i))));
    if (c.records_written) EXPECT_EQ(read_bytes(dir.file("es1225.su")), expected_su(records, 2, 10, 500));
  }
  // The number as the messages print it, with the blank of its sign.
  RunnerOptions options;
  options.max_boxes = 2;
  auto r = run(small_panel(dir, 2, 10, 1, 2) + "set es1225.Text5 \"40000\"\nclick es1225.Command1\n", options);
  EXPECT_TRUE(r.has({"\"text\":\"File conversion error N°  6 Check if all files are in the folder !\",\"title\":\"Tracefold 1.0\""}));
}

// An existing output is written over in place: its tail and every byte that
// no trace writes keep their old content.
TEST(Es1225, SecondRunLeavesTheOldTail) {
  TempDir dir;
  auto records = small_records(dir, 2, 2, 10, 64);
  std::vector<uint8_t> old(3 * 2 * trace_of(10) + 100);
  for (size_t i = 0; i < old.size(); ++i) old[i] = static_cast<uint8_t>(0xA0 + i % 7);
  write_bytes(dir.file("es1225.su"), old);
  auto r = run(small_panel(dir, 2, 10, 1, 2) + "click es1225.Command1\n");
  ASSERT_EQ(r.exit_code, 0);
  auto out = read_bytes(dir.file("es1225.su"));
  EXPECT_EQ(out.size(), old.size());
  EXPECT_EQ(out, expected_su(records, 2, 10, 500, {Sample::i16}, old));
  EXPECT_EQ(out[0], old[0]);  // the first trace's tracl is never written
}

// Long and float samples are taken from the same place, two bytes ahead of
// the block, with B still counted at 2 bytes a sample. Each ticked box reads
// in its turn, so the later one wins; a float read also sets the ns + 1st
// value, which lands on the next trace's first word.
TEST(Es1225, LongAndFloatInputs) {
  auto longs = [](int m) { return static_cast<int32_t>(m * 70001 - 123456); };
  auto floats = [](int m) { return static_cast<float>(m) * 0.75f - 9.5f; };
  struct Case {
    const char* what;
    std::vector<const char*> boxes;  // ticked besides the defaults being cleared
    std::vector<Sample> reads;
    bool float_record;
  };
  const Case cases[] = {
      {"long", {"Check2"}, {Sample::i32}, false},
      {"float", {"Check3"}, {Sample::f32}, true},
      {"short and long: long wins", {"Check1", "Check2"}, {Sample::i16, Sample::i32}, false},
      {"long and float: float wins", {"Check2", "Check3"}, {Sample::i32, Sample::f32}, true},
      {"short and float: float wins", {"Check1", "Check3"}, {Sample::i16, Sample::f32}, true},
      {"no box: the buffer as sized", {}, {}, true},
  };
  const int channels = 2, ns = 10;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    TempDir dir;
    std::vector<std::vector<uint8_t>> records;
    for (int i = 1; i <= 2; ++i) {
      records.push_back(c.float_record ? four_byte_record<float>(channels, ns, 64 + 4 * i, floats)
                                       : four_byte_record<int32_t>(channels, ns, 64 + 4 * i, longs));
      write_bytes(dir.file(record_name(i)), records.back());
    }
    std::string script = small_panel(dir, channels, ns, 1, 2) + "check es1225.Check1 off\n";
    for (const char* box : c.boxes) script += std::string("check es1225.") + box + " on\n";
    auto r = run(script + "click es1225.Command1\n");
    ASSERT_EQ(r.exit_code, 0);
    EXPECT_TRUE(r.has({done_box}));
    auto out = read_bytes(dir.file("es1225.su"));
    EXPECT_EQ(out, expected_su(records, channels, ns, 500, c.reads));
    if (c.reads == std::vector<Sample>{Sample::f32}) {
      // The last trace (record 2, channel 2) starts 17 values into the run;
      // the value behind its samples ends the file.
      EXPECT_EQ(value_at<float>(out, 3 * trace_of(ns) + 240), floats(17));
      EXPECT_EQ(value_at<float>(out, 4 * trace_of(ns)), floats(27));
    }
  }
}

// Number fields drop anything but digits with a beep; the sample rate field
// takes every key.
TEST(Es1225, NumberFieldsDropLetters) {
  auto r = run("click Utility.Option4\ntype es1225.Text3 \"1a2\"\ntype es1225.Text4 \"x5\"\n"
               "type es1225.Text5 \".\"\ntype es1225.Text1 \"5x.\"\ndump es1225\n");
  ASSERT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.with({"\"event\":\"beep\""}).size(), 3u);
  const std::string d = dump_of(r);
  EXPECT_NE(d.find(text_box("Text3", "Number of files", "12")), std::string::npos);
  EXPECT_NE(d.find(text_box("Text4", "Number of sample", "10005")), std::string::npos);
  EXPECT_NE(d.find(text_box("Text5", "Traces / rec", "12")), std::string::npos);
  EXPECT_NE(d.find(text_box("Text1", "Samplerate", "5005x.")), std::string::npos);
}
