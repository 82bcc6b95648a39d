// The Bison 5000 panel: the header walked two characters at a time, the gain
// words of each channel, and the SU traces checked byte for byte against the
// record layout.
#include <gtest/gtest.h>

#include <cmath>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/field_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

// The SU file of Bison records: for file F and channel C the header of the
// ABEM family with fldr 0 and duse 1, then the channel's samples, each
// group of four multiplied by 2 when the gain word before it is below -1.
std::vector<uint8_t> expected_su(const std::vector<std::vector<uint8_t>>& records, size_t header, int channels, int ns,
                                 int dt) {
  const int words = static_cast<int>(std::nearbyint(ns * 1.25));
  const size_t trace = 240 + 4 * static_cast<size_t>(ns);
  std::vector<uint8_t> out;
  for (size_t f = 0; f < records.size(); ++f)
    for (int c = 1; c <= channels; ++c) {
      const size_t pos = (f * channels + static_cast<size_t>(c - 1)) * trace;
      put_trace_words(out, pos, 0, c, ns, dt);
      put_at<int16_t>(out, pos + 34, 1);  // duse
      int multiplier = 1;
      size_t sample = 0;
      for (int k = 1; k <= words; ++k) {
        const size_t at = header + 2 * (static_cast<size_t>(c - 1) * words + static_cast<size_t>(k - 1));
        const int16_t w = value_at<int16_t>(records[f], at);
        if (k % 5 == 0) multiplier = w < -1 ? 2 : 1;
        else put_at<float>(out, pos + 240 + 4 * sample++, static_cast<float>(w * multiplier));
      }
    }
  return out;
}

std::string selected(const std::string& chosen) { return "click Utility.Option14\ndialog \"" + chosen + "\"\nclick Bison.Command5\n"; }

}  // namespace

// The header's lines 14, 16 and 17 fill the panel, its size is measured,
// and two records of 3 channels convert byte for byte.
TEST(Bison, GeneratedRecordsConvertByteForByte) {
  for (int ns : {20, 1000}) {
    TempDir dir;
    gen::BisonLayout layout;
    layout.channels = 3, layout.samples = ns, layout.interval_ms = 0.25;
    std::vector<std::vector<uint8_t>> records;
    for (int i : {1, 2}) records.push_back(read_bytes(gen::write_bison(dir.str(), i, layout)));
    auto r = run(selected(several(dir, 1, 2, "dat")) + "dump Bison\nset Bison.Text2 \"" + dir.file("out.su") +
                 "\"\nclick Bison.Command1\n");
    EXPECT_EQ(texts_in(r.dump("Bison"), {"Text3", "Text4", "Text5", "Text6", "Text7"}),
              (std::vector<std::string>{"3 ", std::to_string(ns), "250", "2",
                                        std::to_string(gen::bison_header_size(layout))}));
    expect_in(r.dump("Bison"), {"\"Label8\":{\"kind\":\"label\",\"caption\":\"" + std::to_string(records[0].size()) + " bytes\""});
    EXPECT_TRUE(r.has({"\"event\":\"msgbox\"", "OK, Conversion done"}));
    const auto expected = expected_su(records, gen::bison_header_size(layout), 3, ns, 250);
    EXPECT_TRUE(read_bytes(dir.file("out.su")) == expected) << "ns " << ns;
  }
}

// A gain word of -2 doubles the four samples behind it, 0 puts the
// multiplier back to 1, -1 gives 1.
TEST(Bison, GainWordsApplyToTheFourSamplesBehindThem) {
  TempDir dir;
  gen::BisonLayout layout;
  layout.channels = 1, layout.samples = 12;
  const auto record = read_bytes(gen::write_bison(dir.str(), 1, layout));
  run(selected(dir.file("rec001.dat")) + "set Bison.Text2 \"" + dir.file("out.su") + "\"\nclick Bison.Command1\n");
  const auto out = read_bytes(dir.file("out.su"));
  const size_t h = gen::bison_header_size(layout);
  auto word = [&](int k) { return value_at<int16_t>(record, h + 2 * static_cast<size_t>(k - 1)); };
  auto sample = [&](int i) { return value_at<float>(out, 240 + 4 * static_cast<size_t>(i - 1)); };
  ASSERT_EQ(word(5), -2);
  ASSERT_EQ(word(10), 0);
  for (int i = 1; i <= 4; ++i) EXPECT_EQ(sample(i), word(i));
  for (int i = 5; i <= 8; ++i) EXPECT_EQ(sample(i), 2 * word(i + 1));
  for (int i = 9; i <= 12; ++i) EXPECT_EQ(sample(i), word(i + 2));
}

// An odd number of header bytes puts the ETX pair on an odd offset: the
// walk passes it and goes on through the data to the end.
TEST(Bison, HeaderOfOddLengthHidesTheEtxPair) {
  TempDir dir;
  gen::BisonLayout layout;
  layout.channels = 2, layout.samples = 8, layout.odd_header = true;
  const auto record = read_bytes(gen::write_bison(dir.str(), 1, layout));
  auto r = run(selected(dir.file("rec001.dat")) + "dump Bison\n");
  EXPECT_EQ(texts_in(r.dump("Bison"), {"Text7", "Text3"}),
            (std::vector<std::string>{std::to_string(record.size() / 2 * 2), "2 "}));
}

TEST(Bison, HelpAndMissingOrDamagedRecords) {
  TempDir dir;
  auto help = run("click Utility.Option14\nclick Bison.Command2\n");
  EXPECT_TRUE(help.has({box_line("BISON 5000 module conversion\r\n This module convert BISON 5000 record to SU format \r\n"
                                 " Sample rate trace number, trace number, file number are recorded \r\n"
                                 " but you must (re)enter all geometrical data ! \r\n")}));
  // A missing record: the retry box with the number alone, until the limit.
  auto missing = run(selected(dir.file("none.dat")) + "set Bison.Text3 \"2\"\nset Bison.Text4 \"10\"\nset Bison.Text2 \"" +
                         dir.file("out.su") + "\"\nclick Bison.Command1\n",
                     {.max_boxes = 4});
  EXPECT_EQ(missing.exit_code, exit_run_aborted);
  EXPECT_TRUE(missing.has({box_line("File conversion error N°  53")}));
  // Noise without line ends or ETX: the fields stay, the header size is the
  // length rounded down to even.
  write_text(dir.file("noise.dat"), std::string(1001, 'x'));
  auto noise = run(selected(dir.file("noise.dat")) + "dump Bison\n");
  EXPECT_EQ(texts_in(noise.dump("Bison"), {"Text7", "Text3", "Text4", "Text5"}),
            (std::vector<std::string>{"1000", "", "", "0"}));
}
