// The Dolang panel: the selection that keeps numbered channel files, the
// info file's tokens, and the SU traces, read from the second list entry
// on, with time words from the first file's date.
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>

#include <utime.h>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/binary_record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

using Texts = std::vector<std::string>;

// The first channel file's date: 7 March 2026, 09:05 local time, which the
// header gives as year 26, day (3 - 1) x 30 + 7 = 67, hour 9, minute 5.
void set_file_date(const std::string& path) {
  std::tm t{};
  t.tm_year = 126, t.tm_mon = 2, t.tm_mday = 7, t.tm_hour = 9, t.tm_min = 5, t.tm_isdst = -1;
  const std::time_t when = std::mktime(&t);
  utimbuf times{when, when};
  ::utime(path.c_str(), &times);
}

// A shot of `channels` files written as the recorder names them; the first
// one dated as above.
std::string shot(const TempDir& dir, int number, const gen::DolangLayout& layout) {
  const std::string adt = gen::write_dolang(dir.str(), number, layout);
  set_file_date(dir.file(gen::dolang_channel_name(number, 1)));
  return adt;
}

// The dialog text of everything in a shot: its channel files and its ADT.
std::string select_all(const TempDir& dir, int number, int channels) {
  std::string text = dir.str() + "/";
  for (int c = 1; c <= channels; ++c) text += " " + gen::dolang_channel_name(number, c);
  char adt[32];
  std::snprintf(adt, sizeof adt, " shot%03d.ADT", number);
  return text + adt;
}

std::string choose(const std::string& channels, const std::string& adt) {
  return "click Utility.Option6\ndialog \"" + channels + "\"\ndialog \"" + adt + "\"\nclick DOLANG.Command6\n";
}

// The SU file for `records` x `channels` traces whose samples come from the
// channel files listed in `sources` (channel numbers of shot 1, 0 where the
// trace before is repeated): the header zero but fldr, tracf, trid 1, ns,
// dt and the date words of the first file.
std::vector<uint8_t> expected_su(int records, int channels, int ns, int dt, const std::vector<int>& sources) {
  std::vector<uint8_t> out;
  std::vector<float> samples(static_cast<size_t>(ns), 0.0f);
  const size_t size = 240 + 4 * static_cast<size_t>(ns);
  for (int r = 1; r <= records; ++r)
    for (int c = 1; c <= channels; ++c) {
      const size_t n = static_cast<size_t>((r - 1) * channels + c - 1);
      const int source = n < sources.size() ? sources[n] : 0;
      if (source)
        for (int s = 0; s < ns; ++s) samples[static_cast<size_t>(s)] = static_cast<float>(gen::dolang_sample(1, source, s));
      std::vector<uint8_t> trace(size, 0);
      put_at<int32_t>(trace, 8, r);
      put_at<int32_t>(trace, 12, c);
      put_at<int16_t>(trace, 28, 1);
      put_at<int16_t>(trace, 114, static_cast<int16_t>(ns));
      put_at<int16_t>(trace, 116, static_cast<int16_t>(dt));
      for (auto [at, v] : {std::pair{156, 26}, {158, 67}, {160, 9}, {162, 5}}) put_at<int16_t>(trace, at, static_cast<int16_t>(v));
      for (int s = 0; s < ns; ++s) put_at<float>(trace, 240 + 4 * static_cast<size_t>(s), samples[static_cast<size_t>(s)]);
      out.insert(out.end(), trace.begin(), trace.end());
    }
  return out;
}

// Channels 2, 3, ... k, then the last one repeated.
std::vector<int> from_second(int traces) {
  std::vector<int> v;
  for (int c = 2; c <= traces; ++c) v.push_back(c);
  v.push_back(0);
  return v;
}

}  // namespace

// 24 channel files and the ADT file: 24 entries listed, in lower case; the
// ADT gives channels, records, samples, recording time and dt; the
// conversion reads from the second entry, and the last trace, finding no
// entry, repeats the one before. At two sizes.
TEST(Dolang, TwentyFourChannelsReadFromTheSecondEntry) {
  for (auto [channels, ns, dt] : {std::tuple{24, 1000, 500}, std::tuple{3, 5, 250}}) {
    SCOPED_TRACE(ns);
    TempDir dir;
    gen::DolangLayout layout;
    layout.channels = channels, layout.samples = ns, layout.dt = dt;
    const std::string adt = shot(dir, 1, layout);
    auto r = run(choose(select_all(dir, 1, channels), adt) + "dump DOLANG\nclick DOLANG.Command1\ndump DOLANG\n");
    const std::string d = r.dump("DOLANG");
    std::string items = "\"items\":[";
    for (int c = 1; c <= channels; ++c) items += (c > 1 ? "," : "") + json(lower(dir.str() + "/" + gen::dolang_channel_name(1, c)));
    expect_in(d, {items + "]"});
    EXPECT_EQ(texts_in(d, {"Text2", "Text3", "Text4", "Text6", "Text7", "Text5"}),
              (Texts{std::to_string(channels), "1", std::to_string(dt), std::to_string(ns),
                     field_text(ns * dt / 1000.0), dir.str() + "/shot001.SU"}));
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{box_line("OK Conversion done", "information")});
    expect_in(control_in_dump(d, "Label8"), {"\"caption\":\"Converting \""});  // the last trace found no entry
    EXPECT_EQ(read_bytes(dir.str() + "/shot001.SU"), expected_su(1, channels, ns, dt, from_second(channels)));
  }
}

// The dialogs: channel files with flags 512, the info file alone.
TEST(Dolang, Dialogs) {
  TempDir dir;
  const std::string adt = shot(dir, 1, gen::DolangLayout{});
  auto r = run("session data_folder \"" + dir.str() + "\"\n" + choose(select_all(dir, 1, 24), adt));
  EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"DOLANG file selection\",\"filter\":\"Record "
                     "|*.a*|All files|*.*|\",\"file\":\"*.*\",\"dir\":" + json(dir.str()) + ",\"flags\":512"}));
  EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"DOLANG Info File selection\",\"filter\":\"Info "
                     "files|*.adt|All files|*.*|\",\"file\":\"*.adt\",\"dir\":" + json(dir.str()) + ",\"flags\":0"}));
  auto out = run("session data_folder \"" + dir.str() + "\"\nclick Utility.Option6\ndialog \"/x/y.su\"\n"
                 "click DOLANG.Command5\ndump DOLANG\ndialog-cancel\ndblclick DOLANG.Text5\ndump DOLANG\n");
  EXPECT_TRUE(out.has({"\"title\":\"Seismic Unix Output file selection\",\"filter\":\"SU files|*.SU|\",\"file\":\"*.SU\""}));
  auto dumps = out.with({"\"event\":\"dump\""});
  EXPECT_EQ(text_in(dumps[0], "Text5"), "/x/y.su");
  EXPECT_EQ(text_in(dumps[1], "Text5"), "*.SU");
}

// The selection: names not ending in a digit drop out, the folder is joined
// to each name as it comes, and the output name is the folder + dolang.su,
// until the ADT replaces it; Text3 counts the pieces less the folder. One
// path alone lists nothing.
TEST(Dolang, SelectionKeepsNamesEndingInADigit) {
  const struct {
    std::string chosen;
    Texts items;
    std::string count, output;
  } cases[] = {
      {"/data/line1/ S1.A01 S1.A02 S1.ADT notes.txt S1.A3", {"/data/line1/s1.a01", "/data/line1/s1.a02", "/data/line1/s1.a3"},
       "5", "/data/line1/dolang.su"},
      {"/data/line1 S1.A01", {"/data/line1s1.a01"}, "1", "/data/line1dolang.su"},
      {"/data/line1/S1.A01", {}, "0", "/data/line1/S1.A01dolang.su"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.chosen);
    auto r = run("click Utility.Option6\ndialog \"" + c.chosen + "\"\ndialog-cancel\nclick DOLANG.Command6\ndump DOLANG\n");
    std::string items = "\"items\":[";
    for (size_t i = 0; i < c.items.size(); ++i) items += (i ? "," : "") + json(c.items[i]);
    expect_in(r.dump("DOLANG"), {items + "]"});
    EXPECT_EQ(texts_in(r.dump("DOLANG"), {"Text3", "Text5", "Text8"}), (Texts{c.count, c.output, "*.adt"}));
    // The cancelled info dialog leaves "*.adt", which no file matches.
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{box_line("does not exist", "stop")});
  }
}

// The info file: one that is missing; one with 0 samples, whose dt fails
// and stays 0 so that Convert refuses; one cut short, which sets what it
// reaches; one of binary garbage. None stops the panel.
TEST(Dolang, InfoFileEdgeCases) {
  TempDir dir;
  write_text(dir.file("zero.adt"), "A,B,C,D,12,2,0,250,0,1\r\nX,1\r\n0,0,0,0,0,0\r\n");
  write_text(dir.file("short.adt"), "A,B,C,D,6,3");
  std::string garbage;
  for (int i = 0; i < 600; ++i) garbage += static_cast<char>((i * 37 + 11) % 256);
  write_text(dir.file("garbage.adt"), garbage);
  const struct {
    std::string adt;
    Texts fields;  // Text2, Text3, Text4, Text6, Text7
    Texts boxes;
  } cases[] = {
      {dir.file("gone.adt"), {"24", "1", " ", " ", " "}, {box_line("does not exist", "stop"), box_line(
           "Sample rate missing, you must read the ADT file", "stop")}},
      {dir.file("zero.adt"), {"12", "2", "0", "0", "250"}, {box_line("Sample rate missing, you must read the ADT file", "stop")}},
      {dir.file("short.adt"), {"6", "3", "0", "0", "0"}, {box_line("Sample rate missing, you must read the ADT file", "stop")}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.adt);
    auto r = run("click Utility.Option6\ndialog \"" + c.adt + "\"\nclick DOLANG.Command3\ndump DOLANG\nclick DOLANG.Command1\n");
    EXPECT_EQ(texts_in(r.dump("DOLANG"), {"Text2", "Text3", "Text4", "Text6", "Text7"}), c.fields);
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), c.boxes);
    EXPECT_EQ(r.exit_code, exit_ok);
  }
  auto r = run("click Utility.Option6\ndialog \"" + dir.file("garbage.adt") + "\"\nclick DOLANG.Command3\n"
               "dump DOLANG\nclick DOLANG.Command1\n");
  EXPECT_EQ(r.exit_code, exit_ok);
  EXPECT_FALSE(r.has({"runtime-error"}));
  EXPECT_EQ(text_in(r.dump("DOLANG"), "Text5"), dir.file("garbage.SU"));
}

// Past 8131 samples the 16-bit record size fails: trace_pos stays 0 and
// every header lands on the first record, the last one written staying;
// the samples, placed in 32 bits, land in their records.
TEST(Dolang, PastEightThousandSamplesHeadersShareTheFirstRecord) {
  TempDir dir;
  gen::DolangLayout layout;
  layout.channels = 4, layout.samples = 8200, layout.dt = 250;
  const std::string adt = shot(dir, 1, layout);
  run(choose(select_all(dir, 1, 4), adt) + "click DOLANG.Command1\n");
  auto expected = expected_su(1, 4, 8200, 250, from_second(4));
  const size_t size = 240 + 4 * 8200;
  // Only the first record has a header: that of the fourth trace.
  std::copy(expected.begin() + 3 * size, expected.begin() + 3 * size + 240, expected.begin());
  for (size_t t = 1; t < 4; ++t) std::fill(expected.begin() + t * size, expected.begin() + t * size + 240, 0);
  EXPECT_EQ(read_bytes(dir.str() + "/shot001.SU"), expected);
}

// Two records typed over channel files of which one is gone: its trace
// repeats the one before; a short channel file keeps the tail of the trace
// before. The help box and Exit.
TEST(Dolang, MissingAndShortChannelFilesRepeatTheTraceBefore) {
  TempDir dir;
  gen::DolangLayout layout;
  layout.channels = 3, layout.samples = 6, layout.dt = 1000;
  const std::string adt = shot(dir, 1, layout);
  std::filesystem::remove(dir.file(gen::dolang_channel_name(1, 3)));
  write_text(dir.file(gen::dolang_channel_name(1, 2)), "7\r\n8\r\n");
  auto r = run(choose(select_all(dir, 1, 3), adt) + "set DOLANG.Text2 \"2\"\nset DOLANG.Text3 \"2\"\n"
               "click DOLANG.Command1\nclick DOLANG.Command4\nclick DOLANG.Command2\n");
  // Entries: a01, a02 (short), a03 (gone); read from a02 on.
  auto expected = expected_su(2, 2, 6, 1000, {0, 0, 0, 0});
  const size_t size = 240 + 24;
  for (size_t t = 0; t < 4; ++t) {
    put_at<float>(expected, t * size + 240, 7.0f);
    put_at<float>(expected, t * size + 244, 8.0f);
    for (size_t b = t * size + 248; b < (t + 1) * size; ++b) expected[b] = 0;  // nothing before the short file
  }
  EXPECT_EQ(read_bytes(dir.str() + "/shot001.SU"), expected);
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}).back(),
            box_line("How to convert DOLANG files \r\nDOLANG files a quite complicated, one ASCII file per channel\r\n"
                     "another file (extension ADT) contains useful informations\r\n1.- Select All channel files *.A01, "
                     "*.A02 ...\r\n2.- Select the ADT file and verifiy displayed informations\r\n3.- Check parameters "
                     "(shot number, channels) then press on CONVERT\r\n For multiselection use Windows ususal keys "
                     "(CTRL and MAJ)\r\n4.- Display the result to check the conversion",
                     "information"));
  EXPECT_TRUE(r.has({"\"event\":\"unload\",\"panel\":\"DOLANG\""}));
}

// Channel files of binary garbage or empty end in a converted file of the
// right size and the usual box, never in a fault.
TEST(Dolang, GarbledChannelFilesConvertQuietly) {
  TempDir dir;
  gen::DolangLayout layout;
  layout.channels = 3, layout.samples = 50;
  const std::string adt = shot(dir, 1, layout);
  std::string garbage;
  for (int i = 0; i < 4000; ++i) garbage += static_cast<char>((i * 131 + 7) % 256);
  write_text(dir.file(gen::dolang_channel_name(1, 2)), garbage);
  write_text(dir.file(gen::dolang_channel_name(1, 3)), "");
  auto r = run(choose(select_all(dir, 1, 3), adt) + "click DOLANG.Command1\n");
  EXPECT_EQ(r.exit_code, exit_ok);
  EXPECT_FALSE(r.has({"runtime-error"}));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{box_line("OK Conversion done", "information")});
  EXPECT_EQ(read_bytes(dir.str() + "/shot001.SU").size(), 3u * (240 + 200));
}

