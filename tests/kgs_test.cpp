// KGS record files to SU and back through the Convert panel. The expected
// files are built here from the KGS word table: which KGS word goes to which
// SU word, with the places where reading and writing differ.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "test_support.h"
#include "tools/record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

// A word of the SU header written from a KGS trace: SU offset and width,
// and where its value comes from.
struct SuWord {
  size_t offset;
  int width;
  int from_integer;  // KGS offset read by the integer routine, or a constant below
  int from_float;    // ... by the floating routine
};
constexpr int depth = -1000, one = -1001, three = -1003, zero = -1010;

constexpr SuWord su_from_kgs[] = {
    {0, 4, 170, 172},       {4, 4, 182, 184},     {8, 4, 12, 12},       {12, 4, 16, 26},      {16, 4, 172, 172},
    {20, 4, 22, 22},        {24, 4, 26, 26},      {28, 2, 28, 28},      {30, 2, 30, 30},      {32, 2, 32, 32},
    {34, 2, one, one},      {36, 4, 36, 36},      {40, 4, 40, 40},      {44, 4, 44, 44},      {48, 4, depth, depth},
    {52, 4, 52, 52},        {56, 4, 52, 52},      {60, 2, zero, zero},  {64, 2, zero, zero},  {68, 2, one, one},
    {70, 2, 70, 70},        {72, 4, 76, 76},      {76, 4, 78, 78},      {80, 4, 70, 70},      {84, 4, 72, 72},
    {88, 2, one, one},      {90, 2, zero, zero},  {92, 2, zero, zero},  {94, 2, zero, zero},  {96, 2, zero, zero},
    {98, 2, 98, 98},        {100, 2, 100, 100},   {102, 2, 102, 102},   {104, 2, zero, zero}, {106, 2, zero, zero},
    {108, 2, 108, 108},     {110, 2, zero, zero}, {112, 2, zero, zero}, {114, 2, 114, 114},   {116, 2, 116, 116},
    {118, 2, three, three}, {148, 2, 148, 148},   {150, 2, 150, 150},
};

// The SU header words of one KGS trace written over `file` at `pos`; the
// words 120 to 146 and 152 to 238 are zero.
void put_su_words(std::vector<uint8_t>& file, size_t pos, const std::vector<uint8_t>& kgs, size_t kgs_pos,
                  bool floating, int32_t source_depth) {
  for (const auto& w : su_from_kgs) {
    const int from = floating ? w.from_float : w.from_integer;
    int32_t value = from == depth   ? source_depth
                    : from == one   ? 1
                    : from == three ? 3
                    : from == zero  ? 0
                                    : value_at<int16_t>(kgs, kgs_pos + static_cast<size_t>(from));
    if (w.width == 2)
      put_at<int16_t>(file, pos + w.offset, static_cast<int16_t>(value));
    else
      put_at<int32_t>(file, pos + w.offset, value);
  }
  for (size_t at = 120; at < 240; at += 2)
    if (at != 148 && at != 150) put_at<int16_t>(file, pos + at, 0);
}

// KGS integer: each output trace starts as floats of the 16-bit words from
// byte 120 of the KGS record on (60 header words, then the samples).
std::vector<uint8_t> expected_from_integer(const std::vector<uint8_t>& kgs, int traces, int ns, int32_t source_depth) {
  std::vector<uint8_t> su;
  const size_t in_size = 240 + 2 * static_cast<size_t>(ns), out_size = 240 + 4 * static_cast<size_t>(ns);
  for (int i = 0; i < traces; ++i) {
    const size_t in = in_size * i, out = out_size * i;
    for (size_t k = 0; k < static_cast<size_t>(ns) + 60; ++k)
      put_at<float>(su, out + 4 * k, static_cast<float>(value_at<int16_t>(kgs, in + 120 + 2 * k)));
    put_su_words(su, out, kgs, in, false, source_depth);
  }
  return su;
}

// KGS floating: the whole file copied, then the words of each trace.
std::vector<uint8_t> expected_from_float(const std::vector<uint8_t>& kgs, int traces, int ns, int32_t source_depth) {
  std::vector<uint8_t> su = kgs;
  const size_t size = 240 + 4 * static_cast<size_t>(ns);
  for (int i = 0; i < traces; ++i) put_su_words(su, size * i, kgs, size * i, true, source_depth);
  return su;
}

std::string convert_script(const std::string& option, const std::string& in, const std::string& out,
                           const std::string& answers) {
  return "click Utility." + option + "\nset Convert.Text1 \"" + in + "\"\nset Convert.Text2 \"" + out + "\"\n" +
         answers + "click Convert.Command2\n";
}

const std::string ok_box =
    "{\"event\":\"msgbox\",\"text\":\"Conversion OK\",\"title\":\"Brenholt File converter\",\"icon\":\"information\","
    "\"buttons\":\"ok\",\"answer\":\"ok\",\"autoclose_ms\":3000}";
const std::string depth_box =
    "{\"event\":\"inputbox\",\"prompt\":\" Source depth below surface\",\"title\":\"Enter Values not available in KGS "
    "header\",\"default\":\"1\",\"answer\":";

// SU words of the test's SU files, their offsets and widths, and the KGS
// offsets they are written to.
struct KgsFromSu {
  const char* key;
  size_t su_offset;
  int width;
  size_t kgs_offset;
};
constexpr KgsFromSu kgs_from_su[] = {
    {"tracl", 0, 4, 174},   {"tracr", 4, 4, 182},   {"fldr", 8, 4, 10},     {"tracf", 12, 4, 26}, {"ep", 16, 4, 172},
    {"cdp", 20, 4, 22},     {"trid", 28, 2, 28},    {"nvs", 30, 2, 30},     {"nhs", 32, 2, 32},   {"offset", 36, 4, 36},
    {"gelev", 40, 4, 40},   {"selev", 44, 4, 44},   {"gdel", 52, 4, 52},    {"sdel", 56, 4, 56},  {"scalco", 70, 2, 70},
    {"sx", 72, 4, 76},      {"sy", 76, 4, 78},      {"gx", 80, 4, 70},      {"gy", 84, 4, 72},    {"sstat", 98, 2, 98},
    {"gstat", 100, 2, 100}, {"tstat", 102, 2, 102}, {"delrt", 108, 2, 108}, {"ns", 114, 2, 114},  {"dt", 116, 2, 116},
    {"lcf", 148, 2, 148},   {"hcf", 150, 2, 150},
};

// An SU file of two records of 6 channels, every read word its own value;
// bytes the KGS table does not write hold 0x77 to show the blanking.
std::vector<uint8_t> su_file(int traces, int ns, int32_t gx_of_third = 0) {
  const size_t size = 240 + 4 * static_cast<size_t>(ns);
  std::vector<uint8_t> su(size * traces, 0x77);
  for (int i = 0; i < traces; ++i) {
    const size_t pos = size * i;
    int n = 0;
    for (const auto& w : kgs_from_su) {
      int32_t v = 100 * (i + 1) + 3 * ++n - 40;
      if (std::string(w.key) == "fldr") v = i / 6 + 1;
      if (std::string(w.key) == "tracf") v = i % 6 + 1;
      if (std::string(w.key) == "nhs" || std::string(w.key) == "trid") v = 1;
      if (std::string(w.key) == "ns") v = ns;
      if (std::string(w.key) == "dt") v = 250;
      if (std::string(w.key) == "gx" && i == 2 && gx_of_third) v = gx_of_third;
      if (w.width == 2)
        put_at<int16_t>(su, pos + w.su_offset, static_cast<int16_t>(v));
      else
        put_at<int32_t>(su, pos + w.su_offset, v);
    }
    for (int k = 0; k < ns; ++k) put_at<float>(su, pos + 240 + 4 * static_cast<size_t>(k), 0.5f * k - i);
  }
  return su;
}

// The KGS header of SU trace `i` over a blanked header, as far as `words`
// of the table (all of them by default); the five leading answers first.
void put_kgs_words(std::vector<uint8_t>& kgs, size_t pos, const std::vector<uint8_t>& su,
                   const std::array<int16_t, 5>& leading, size_t words = std::size(kgs_from_su)) {
  for (size_t at = 0; at < 240; ++at) kgs[pos + at] = 0;
  for (size_t k = 0; k < leading.size(); ++k) put_at<int16_t>(kgs, pos + 2 * k, leading[k]);
  for (size_t n = 0; n < words; ++n) {
    const auto& w = kgs_from_su[n];
    const int32_t v =
        w.width == 2 ? value_at<int16_t>(su, pos + w.su_offset) : value_at<int32_t>(su, pos + w.su_offset);
    put_at<int16_t>(kgs, pos + w.kgs_offset, static_cast<int16_t>(v));  // gx: its low word at 70
  }
  if (words == std::size(kgs_from_su)) put_at<int16_t>(kgs, pos + 118, 21930);
}

}  // namespace

// 24 traces of 1000 int16 samples: the SU records of the word table, the
// samples as floats behind 60 floats made of the KGS header's tail.
TEST(Kgs, IntegerFileGivesTheSuRecordsOfTheTable) {
  TempDir dir;
  gen::KgsLayout layout;
  const auto kgs = read_bytes(gen::write_kgs(dir.file("line.EVD"), layout));
  auto r = run(convert_script("Option3", dir.file("line.EVD"), dir.file("line.SU"), "input \"7.5\"\n"));
  EXPECT_EQ(r.with({"\"event\":\"inputbox\""}), (std::vector<std::string>{depth_box + "\"7.5\"}"}));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{ok_box}));
  EXPECT_TRUE(r.has({"\"event\":\"unload\",\"panel\":\"Convert\""}));
  const auto su = read_bytes(dir.file("line.SU"));
  ASSERT_EQ(su.size(), 24u * 4240);
  EXPECT_EQ(su, expected_from_integer(kgs, 24, 1000, 8));
  EXPECT_EQ(value_at<float>(su, 5 * 4240 + 240 + 4 * 300), static_cast<float>(gen::gather_sample(1, 6, 300)));
}

// The floating file is copied whole and its headers rewritten: samples
// byte for byte, swdep and gwdep keep their upper bytes from the copy, and
// tracl, tracr and tracf come from other words than in the integer file.
TEST(Kgs, FloatFileGivesTheSuRecordsOfTheTable) {
  TempDir dir;
  gen::KgsLayout layout;
  layout.floating = true;
  layout.traces = 12;
  layout.samples = 200;
  const auto kgs = read_bytes(gen::write_kgs(dir.file("line.DAT"), layout));
  auto r = run(convert_script("Option9", dir.file("line.DAT"), dir.file("line.SU"), "input \"abc\"\n"));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{ok_box}));
  EXPECT_EQ(read_bytes(dir.file("line.SU")), expected_from_float(kgs, 12, 200, 0));
}

// A part record at the end: the rounded count leaves it out of the header
// rewriting, the copy keeps it.
TEST(Kgs, FloatFileWithAPartRecordKeepsItsTail) {
  TempDir dir;
  gen::KgsLayout layout;
  layout.floating = true;
  layout.traces = 3;
  layout.samples = 100;
  auto kgs = gen::kgs_file(layout);
  kgs.insert(kgs.end(), 200, 0x5A);
  write_bytes(dir.file("part.DAT"), kgs);
  run(convert_script("Option9", dir.file("part.DAT"), dir.file("part.SU"), ""));
  EXPECT_EQ(read_bytes(dir.file("part.SU")), expected_from_float(kgs, 3, 100, 1));
}

// SU to KGS: the four questions (the data type one only without channels),
// the words of the table in order, 21930 at 118, everything else blank.
TEST(Kgs, SuFileGivesTheKgsWordsOfTheTable) {
  TempDir dir;
  const auto su = su_file(12, 50);
  write_bytes(dir.file("line.su"), su);
  auto r = run(convert_script("Option11", dir.file("line.su"), dir.file("line.DAT"),
                              "input \"86\"\ninput \"3.5\"\ninput \"-1\"\n"));
  auto asked = r.with({"\"event\":\"inputbox\""});
  ASSERT_EQ(asked.size(), 3u);
  expect_in(asked[0],
            {"\"prompt\":\"Trace-header word of record number for this data set:\\r\\n8   = common recording "
             "charnel number   12 = common depth point\\r\\n19 = common offset          86 = commun receiver "
             "station number\\r\\n87 = common source station number   92 = common source sequence number\\r\\n\"",
             "\"title\":\"Enter Values not available in SU header\"", "\"default\":\"12\""});
  expect_in(asked[1], {"\"prompt\":\"Trace-header word of trace number within each record\\r\\n0   = input order of "
                       "seismic data to be sorted \\r\\n\"",
                       "\"default\":\"0\""});
  expect_in(asked[2], {"\"prompt\":\" Trace direction 1=ascending -1= descending\"", "\"default\":\"1\""});
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{ok_box}));
  std::vector<uint8_t> expected = su;
  for (size_t i = 0; i < 12; ++i) put_kgs_words(expected, i * 440, su, {0, 6, 86, 4, -1});
  EXPECT_EQ(read_bytes(dir.file("line.DAT")), expected);
}

// Without channels in the file the data type is asked for and stored at 0.
TEST(Kgs, SuFileWithoutChannelsAsksForTheDataType) {
  TempDir dir;
  auto su = su_file(6, 20);
  for (size_t i = 0; i < 6; ++i) put_at<int32_t>(su, i * 320 + 12, 1);  // every trace channel 1
  write_bytes(dir.file("stack.su"), su);
  auto r = run(convert_script("Option11", dir.file("stack.su"), dir.file("stack.DAT"), ""));
  auto asked = r.with({"\"event\":\"inputbox\""});
  ASSERT_EQ(asked.size(), 5u);  // the channel count of the geometry scan, then the four
  expect_in(asked[1], {"\"prompt\":\" Data type: 0 = raw field; 1 = CDP gather\\r\\n2 = CDP stacked; 3 = trace number "
                       "index\\r\\n4 = Velocity Scan\\r\\n\"",
                       "\"default\":\"2\""});
  std::vector<uint8_t> expected = su;
  for (size_t i = 0; i < 6; ++i) put_kgs_words(expected, i * 320, su, {2, 0, 12, 0, 1});
  EXPECT_EQ(read_bytes(dir.file("stack.DAT")), expected);
}

// A part record at the end of the SU file: counted by rounding, its
// header blanked and written like the others; dropped by rounding, it stays
// as the copy left it.
TEST(Kgs, SuFileWithAPartRecordKeepsItsTail) {
  for (size_t tail : {264u, 176u}) {
    SCOPED_TRACE(tail);
    TempDir dir;
    auto su = su_file(4, 50);
    su.resize(3 * 440 + tail);
    write_bytes(dir.file("part.su"), su);
    auto r = run(convert_script("Option11", dir.file("part.su"), dir.file("part.DAT"), ""));
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{ok_box}));
    std::vector<uint8_t> expected = su;
    for (size_t i = 0; i < (tail > 220 ? 4u : 3u); ++i)
      put_kgs_words(expected, i * 440, su, {0, tail > 220 ? 4 : 3, 12, 0, 1});
    EXPECT_EQ(read_bytes(dir.file("part.DAT")), expected);
  }
}

// A gx of 40000 does not fit the KGS word: one box, the routine ends, the
// first traces are written, the third as far as gx, the rest blank.
TEST(Kgs, WideSuValueEndsWithFileConversionErrorAndPartialOutput) {
  TempDir dir;
  const auto su = su_file(12, 50, 40000);
  write_bytes(dir.file("wide.su"), su);
  auto r = run(convert_script("Option11", dir.file("wide.su"), dir.file("wide.DAT"), ""));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{box_line("File conversion error")}));
  EXPECT_FALSE(r.has({"\"event\":\"unload\",\"panel\":\"Convert\""}));
  std::vector<uint8_t> expected = su;
  const size_t before_gx = 17;  // tracl ... sy
  for (size_t i = 0; i < 12; ++i)
    put_kgs_words(expected, i * 440, su, {0, 6, 12, 0, 1}, i < 2 ? 27 : i == 2 ? before_gx : 0);
  for (size_t i = 3; i < 12; ++i)
    for (size_t at = 0; at < 10; ++at) expected[i * 440 + at] = 0;
  EXPECT_EQ(read_bytes(dir.file("wide.DAT")), expected);
}

// An absurd ns in the SU file counts no traces: the output is the copy.
TEST(Kgs, SuFileWithAbsurdNsIsCopiedAsItStands) {
  TempDir dir;
  auto su = su_file(3, 10);
  put_at<int16_t>(su, 114, -100);
  write_bytes(dir.file("odd.su"), su);
  auto r = run(convert_script("Option11", dir.file("odd.su"), dir.file("odd.DAT"), ""));
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(read_bytes(dir.file("odd.DAT")), su);
  EXPECT_EQ(read_bytes(dir.file("odd.su")), su);
}

// Bad answers count as 0; a question answered past 16 bits is a run-time
// error of the routine.
TEST(Kgs, AnswerOutside16BitsIsAConversionError) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_file(6, 10));
  auto r = run(convert_script("Option11", dir.file("line.su"), dir.file("line.DAT"), "input \"40000\"\n"));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{box_line("File conversion error")}));
  EXPECT_FALSE(std::filesystem::exists(dir.file("line.DAT")));
}

// Garbled and short KGS input: no crash, the output is what the routines
// make of it, the input untouched.
TEST(Kgs, ShortAndGarbledFilesConvertWithoutHarm) {
  TempDir dir;
  struct Case {
    const char* name;
    std::vector<uint8_t> bytes;
  };
  std::vector<uint8_t> absurd(600, 0);
  put_at<int16_t>(absurd, 114, -30000);  // negative ns
  std::vector<uint8_t> huge(600, 0);
  put_at<int16_t>(huge, 114, 20000);  // 2 x ns + 240 overflows 16 bits
  std::vector<uint8_t> no_record(600, 0);
  put_at<int16_t>(no_record, 114, -60);  // 4 x ns + 240 is 0
  std::vector<uint8_t> short_record(100, 3);
  for (const char* option : {"Option3", "Option9"}) {
    for (const auto& c :
         std::vector<Case>{{"absurd", absurd}, {"huge", huge}, {"no record", no_record}, {"short", short_record}}) {
      SCOPED_TRACE(std::string(option) + " " + c.name);
      write_bytes(dir.file("in.KGS"), c.bytes);
      auto r = run(convert_script(option, dir.file("in.KGS"), dir.file("out.SU"), ""));
      EXPECT_EQ(r.exit_code, 0);
      EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (std::vector<std::string>{ok_box}));
      EXPECT_EQ(read_bytes(dir.file("in.KGS")), c.bytes);
    }
  }
}
