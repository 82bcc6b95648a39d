// The Ambrogeo panel: header lines into the panel, 24 columns a row whatever
// the channels, the running day word, and the SU traces checked byte for
// byte against the record layout.
#include <gtest/gtest.h>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/field_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

struct TimeWords {
  int16_t year, day, hour, minute;
};

// The SU file of Ambrogeo records: for file F and channel C the header of
// the ABEM family with fldr F and duse 1, the time words, then column C of
// each row.
std::vector<uint8_t> expected_su(const std::vector<gen::AmbrogeoLayout>& records, int channels, int ns, int dt,
                                 const std::vector<TimeWords>& times) {
  const size_t trace = 240 + 4 * static_cast<size_t>(ns);
  std::vector<uint8_t> out;
  for (size_t f = 0; f < records.size(); ++f)
    for (int c = 1; c <= channels; ++c) {
      const size_t pos = (f * channels + static_cast<size_t>(c - 1)) * trace;
      put_trace_words(out, pos, static_cast<int32_t>(f + 1), c, ns, dt);
      put_at<int16_t>(out, pos + 34, 1);  // duse
      put_at<int16_t>(out, pos + 156, times[f].year);
      put_at<int16_t>(out, pos + 158, times[f].day);
      put_at<int16_t>(out, pos + 160, times[f].hour);
      put_at<int16_t>(out, pos + 162, times[f].minute);
      for (int s = 1; s <= ns; ++s)
        put_at<float>(out, pos + 240 + 4 * static_cast<size_t>(s - 1),
                      gen::ambrogeo_value(static_cast<int>(f + 1), c, s, records[f]));
    }
  return out;
}

std::string selected(const std::string& chosen) {
  return "click Utility.Option19\ndialog \"" + chosen + "\"\nclick Ambrogeo.Command5\n";
}
std::string converted(const TempDir& dir) {
  return "set Ambrogeo.Text2 \"" + dir.file("out.su") + "\"\nclick Ambrogeo.Command1\n";
}

}  // namespace

// Three records of 12 channels and D 4: the second record's header fills
// the panel, every row gives up its 24 numbers, day runs 120, 240, 360.
TEST(Ambrogeo, RecordsOfTwelveChannelsConvertByteForByte) {
  TempDir dir;
  std::vector<gen::AmbrogeoLayout> records(3);
  for (int i = 1; i <= 3; ++i) {
    auto& layout = records[static_cast<size_t>(i - 1)];
    layout.channels = 12, layout.samples = 40, layout.interval_us = i == 2 ? 250 : 125;  // the second is read
    layout.hour = 9 + i, layout.minute = 5 * i;
    gen::write_ambrogeo(dir.str(), i, layout);
  }
  auto r = run(selected(several(dir, 1, 3, "dta")) + "dump Ambrogeo\n" + converted(dir));
  EXPECT_EQ(texts_in(r.dump("Ambrogeo"), {"Text1", "Text3", "Text4", "Text6", "Text2"}),
            (std::vector<std::string>{"12", "40", "250", "3", dir.file("rec001.SU")}));
  EXPECT_TRUE(r.has({box_line("OK, Conversion done")}));
  const std::vector<TimeWords> times{{2003, 120, 10, 5}, {2003, 240, 11, 10}, {2003, 360, 12, 15}};
  EXPECT_TRUE(read_bytes(dir.file("out.su")) == expected_su(records, 12, 40, 250, times));
}

// One record of 24 channels; a year of four digits gains 2000 more.
TEST(Ambrogeo, FourDigitYearGivesTwoThousandMore) {
  TempDir dir;
  gen::AmbrogeoLayout layout;
  layout.samples = 30, layout.year = "2003", layout.day_code = 7;
  gen::write_ambrogeo(dir.str(), 1, layout);
  auto r = run(selected(dir.file("rec001.dta")) + "dump Ambrogeo\n" + converted(dir));
  EXPECT_EQ(texts_in(r.dump("Ambrogeo"), {"Text1", "Text3", "Text4", "Text6"}),
            (std::vector<std::string>{"24", "30", "250", "1"}));
  EXPECT_TRUE(read_bytes(dir.file("out.su")) == expected_su({layout}, 24, 30, 250, {{4003, 210, 14, 35}}));
}

TEST(Ambrogeo, HelpAndMissingOrShortRecords) {
  TempDir dir;
  auto help = run("click Utility.Option19\nclick Ambrogeo.Command2\n");
  EXPECT_TRUE(help.has({box_line("AMBROGEO module conversion\r\n This module convert AMBREGEO record to SU format \r\n"
                                 " Sample rate trace number, trace number, file number are recorded \r\n"
                                 " Just verify the number of channels per record \r\n")}));
  // A missing record: nothing reported, the fields as they were, and the
  // conversion writes zero traces and ends with its box.
  auto missing = run(selected(dir.file("none.dta")) + "dump Ambrogeo\nset Ambrogeo.Text3 \"10\"\n" + converted(dir));
  EXPECT_EQ(texts_in(missing.dump("Ambrogeo"), {"Text1", "Text3", "Text4"}), (std::vector<std::string>{"", "", "0"}));
  EXPECT_TRUE(missing.has({box_line("OK, Conversion done")}));
  // A header cut short and a row cut short: no crash, no box but the last.
  write_text(dir.file("short.dta"), "A\r\nB\r\nC\r\nD\r\nDat 04\r\n 10:20\r\nX\r\n2\r\n0\r\n");
  auto shortened = run(selected(dir.file("short.dta")) + "dump Ambrogeo\nset Ambrogeo.Text3 \"5\"\n" + converted(dir));
  EXPECT_EQ(texts_in(shortened.dump("Ambrogeo"), {"Text1", "Text3", "Text4"}), (std::vector<std::string>{"2", "0", "0"}));
  EXPECT_TRUE(shortened.has({box_line("OK, Conversion done")}));
  EXPECT_EQ(read_bytes(dir.file("out.su")).size(), 2u * (240 + 4 * 5));
}
