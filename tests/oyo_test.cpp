// The OYO McSEIS 170 panel: the selection with its channel question, the
// text header's words in every trace, the four-byte stride of every sample
// type, and its boxes. Expected files are built here from the record layout.
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/text_record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

using Texts = std::vector<std::string>;
using gen::OyoLayout;
using gen::OyoSamples;

// The SU file that records of one layout must give: for file F and channel
// C a zero header but fldr, tracf, the four words of 1, the positions, the
// delay and filters, ns and dt; then channel C's samples, which start at
// 6144 + 4 x ns x (C - 1) for every sample type, as floats. Bytes 224 to
// 239 are never written and stay 0 in a new file.
std::vector<uint8_t> expected_su(const std::vector<std::vector<uint8_t>>& records, const OyoLayout& layout, int dt) {
  const int ns = layout.samples;
  std::vector<uint8_t> out;
  for (size_t f = 0; f < records.size(); ++f) {
    const auto& rec = records[f];
    auto column = [&](size_t at, size_t n) { return leading_number(std::string(rec.begin() + at, rec.begin() + at + n)); };
    for (int c = 1; c <= layout.channels; ++c) {
      std::vector<uint8_t> trace(240 + 4 * static_cast<size_t>(ns), 0);
      put_trace_words(trace, 0, static_cast<int32_t>(column(2816, 4)), c, ns, dt);
      put_at<int16_t>(trace, 34, 1);  // duse
      put_at<int32_t>(trace, 72, static_cast<int32_t>(column(2906, 6)));
      put_at<int32_t>(trace, 76, static_cast<int32_t>(column(2913, 6)));
      put_at<int16_t>(trace, 108, static_cast<int16_t>(column(2881, 9)));
      put_at<int16_t>(trace, 144, static_cast<int16_t>(column(2901, 4)));
      put_at<int16_t>(trace, 148, static_cast<int16_t>(column(2891, 4)));
      put_at<int16_t>(trace, 150, static_cast<int16_t>(column(2896, 4)));
      const size_t channel = 6144 + 4 * static_cast<size_t>(ns) * (c - 1);
      for (int s = 0; s < ns; ++s) {
        float v = 0;
        if (layout.type == OyoSamples::long_integer) v = static_cast<float>(value_at<int32_t>(rec, channel + 4 * s));
        if (layout.type == OyoSamples::short_integer) v = value_at<int16_t>(rec, channel + 2 * s);
        if (layout.type == OyoSamples::floating) v = value_at<float>(rec, channel + 4 * s);
        put_at<float>(trace, 240 + 4 * static_cast<size_t>(s), v);
      }
      out.insert(out.end(), trace.begin(), trace.end());
    }
  }
  return out;
}

std::vector<std::vector<uint8_t>> records(const TempDir& dir, int first, int last, const OyoLayout& layout) {
  std::vector<std::vector<uint8_t>> out;
  for (int i = first; i <= last; ++i) out.push_back(read_bytes(gen::write_oyo(dir.str(), i, layout)));
  return out;
}

OyoLayout layout_of(int channels, int samples, OyoSamples type = OyoSamples::long_integer) {
  OyoLayout layout;
  layout.channels = channels, layout.samples = samples, layout.type = type;
  return layout;
}

const char* option_of(OyoSamples type) {
  return type == OyoSamples::long_integer ? "linteger" : type == OyoSamples::short_integer ? "sinteger" : "float";
}

// The panel shown and the selection dialog answered with `chosen`; the
// channel question takes its default.
std::string select(const std::string& chosen) { return "show oyo\ndialog \"" + chosen + "\"\nclick oyo.Command3\n"; }

std::string several(const TempDir& dir, int first, int last) { return test::several(dir, first, last, "org"); }

// Number of files, sample rate, record length, samples and channels.
Texts fields(const RunResult& r) { return texts_in(r.dump("oyo"), {"Text5", "Text6", "Text1", "Text4", "Text3"}); }

const std::string done_box = box_line("Conversion done");

std::string overwrite_box(const std::string& file, const std::string& answer) {
  return box_line(file + " file name already exists, this will will remplaced !", "question", "okcancel", answer);
}

}  // namespace

// Two records at two sizes and in each sample type: fldr the record number
// of the header, the header's positions, delay and filters in every trace,
// dt 250 from 0.250 ms; short integers are read with the four-byte stride.
TEST(Oyo, RecordsConvertByteExactInEachSampleType) {
  const struct {
    int channels, samples;
    OyoSamples type;
  } cases[] = {
      {24, 1024, OyoSamples::long_integer}, {12, 256, OyoSamples::long_integer},
      {24, 1024, OyoSamples::short_integer}, {3, 100, OyoSamples::short_integer},
      {24, 1024, OyoSamples::floating},     {5, 64, OyoSamples::floating},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.channels) + " x " + std::to_string(c.samples) + " " + option_of(c.type));
    TempDir dir;
    const auto layout = layout_of(c.channels, c.samples, c.type);
    auto recs = records(dir, 1, 2, layout);
    auto r = run(select(several(dir, 1, 2)) + "check oyo." + option_of(c.type) + " on\ndump oyo\nclick oyo.Command1\n");
    EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"OYO McSeis file selection\","
                       "\"filter\":\"Record |*.org|All files|*.*|\",\"file\":\"*.org\",\"dir\":\"\",\"flags\":512"}));
    // Text4 and Text6 take the columns as they stand; Text1 is their product.
    std::string samples_column = std::to_string(c.samples);
    samples_column.insert(0, 4 - samples_column.size(), ' ');
    EXPECT_EQ(fields(r), (Texts{"2", "0.250", std::to_string(c.samples / 4), samples_column, std::to_string(c.channels)}));
    // The folder and "oyo.su" run together.
    EXPECT_EQ(text_in(r.dump("oyo"), "Text2"), dir.str() + "/oyo.su");
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{done_box});
    EXPECT_FALSE(r.has({"\"event\":\"unload\",\"panel\":\"oyo\""}));
    EXPECT_EQ(read_bytes(dir.file("oyo.su")), expected_su(recs, layout, 250));
  }
}

// The channel question comes at every selection with the header's count as
// its default; its answer is the channel count, a cancel empties the field.
TEST(Oyo, ChannelQuestionAtEverySelection) {
  TempDir dir;
  auto layout = layout_of(12, 32);
  auto recs = records(dir, 1, 2, layout);
  auto r = run(select(several(dir, 1, 2)) + "dialog \"" + several(dir, 1, 2) + "\"\ninput \"6\"\nclick oyo.Command3\n"
               "dump oyo\nclick oyo.Command1\ndialog \"" + several(dir, 1, 2) + "\"\ninput-cancel\nclick oyo.Command3\n"
               "dump oyo\n");
  const std::string question = "{\"event\":\"inputbox\",\"prompt\":\"Enter the number of channels\","
                               "\"title\":\"Tracefold 1.0\",\"default\":\"12\"";
  EXPECT_EQ(r.with({question}).size(), 3u);
  EXPECT_EQ(text_in(r.dump("oyo"), "Text3"), "");
  // Six channels of each record; the list holds both selections, the
  // count is the last one's.
  auto six = layout;
  six.channels = 6;
  auto got = read_bytes(dir.file("oyo.su"));
  EXPECT_EQ(got, expected_su(recs, six, 250));
  EXPECT_EQ(text_in(r.dump("oyo"), "Text5"), "2");
  expect_in(r.dump("oyo"), {json(dir.str() + "//rec002.org") + "," + json(dir.str() + "//rec001.org")});
}

// One file alone lists nothing and counts 0: the output is made empty and
// the conversion says it is done. A cancelled dialog does the same with
// "*.org".
TEST(Oyo, SingleFileListsNothing) {
  TempDir dir;
  records(dir, 1, 1, layout_of(2, 8));
  const std::string one = dir.file("rec001.org");
  auto r = run(select(one) + "dump oyo\nclick oyo.Command1\n");
  expect_in(r.dump("oyo"), {"\"items\":[]"});
  EXPECT_EQ(text_in(r.dump("oyo"), "Text5"), "0");
  EXPECT_EQ(text_in(r.dump("oyo"), "Text2"), one + "oyo.su");
  // Nothing was read: the channel question offers the default " 12".
  EXPECT_TRUE(r.has({"\"prompt\":\"Enter the number of channels\"", "\"default\":\" 12\""}));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{done_box});
  EXPECT_TRUE(std::filesystem::exists(one + "oyo.su"));
  EXPECT_EQ(read_bytes(one + "oyo.su").size(), 0u);

  // Before any selection the input name is too short: Convert does nothing.
  auto unselected = run("show oyo\nset oyo.Text2 \"" + dir.file("x.su") + "\"\nclick oyo.Command1\n");
  EXPECT_FALSE(unselected.has({"\"event\":\"msgbox\""}));
  EXPECT_FALSE(unselected.has({"\"event\":\"pointer\""}));
  EXPECT_FALSE(std::filesystem::exists(dir.file("x.su")));
}

// Milliseconds times 1000 into 16 bits: 0.25 gives 250, 32.767 the largest
// dt; a value past 32767 (the default 200 too) leaves dt as it stood.
TEST(Oyo, SampleIntervalInto16BitDt) {
  const struct {
    std::string interval;
    int dt;
  } cases[] = {{" 0.25", 250}, {"0.125", 125}, {"32.767", 32767}, {"32.768", 500}, {"200", 500}, {"  1", 1000}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.interval);
    TempDir dir;
    const auto layout = layout_of(2, 16);
    auto recs = records(dir, 1, 2, layout);
    run("session dt \"500\"\n" + select(several(dir, 1, 2)) + "set oyo.Text6 \"" + c.interval + "\"\nclick oyo.Command1\n");
    EXPECT_EQ(read_bytes(dir.file("oyo.su")), expected_su(recs, layout, c.dt));
  }
}

// An existing output: OK deletes it and writes a new one, Cancel leaves it
// untouched and ends with the arrow pointer.
TEST(Oyo, OverwriteQuestion) {
  TempDir dir;
  const auto layout = layout_of(3, 16);
  auto recs = records(dir, 1, 2, layout);
  const std::vector<uint8_t> old(100000, 0x5A);
  write_bytes(dir.file("oyo.su"), old);
  auto cancelled = run(select(several(dir, 1, 2)) + "reply cancel\nclick oyo.Command1\n");
  EXPECT_EQ(cancelled.with({"\"event\":\"msgbox\""}), Texts{overwrite_box(dir.str() + "/oyo.su", "cancel")});
  EXPECT_EQ(cancelled.lines.back(), "{\"event\":\"pointer\",\"panel\":\"oyo\",\"pointer\":\"arrow\"}");
  EXPECT_EQ(read_bytes(dir.file("oyo.su")), old);
  auto replaced = run(select(several(dir, 1, 2)) + "reply ok\nclick oyo.Command1\n");
  EXPECT_EQ(replaced.with({"\"event\":\"msgbox\""}), (Texts{overwrite_box(dir.str() + "/oyo.su", "ok"), done_box}));
  EXPECT_EQ(read_bytes(dir.file("oyo.su")), expected_su(recs, layout, 250));
}

// A hundred files: the table keeps the folder and 99 names, the count of 100
// is cut to 99 with a message, and 99 records are converted.
TEST(Oyo, HundredFilesConvertNinetyNine) {
  TempDir dir;
  const auto layout = layout_of(2, 8);
  auto recs = records(dir, 1, 100, layout);
  auto r = run(select(several(dir, 1, 100)) + "dump oyo\nclick oyo.Command1\n");
  expect_in(r.dump("oyo"), {json(dir.str() + "//rec099.org") + "]"});
  EXPECT_EQ(text_in(r.dump("oyo"), "Text5"), "100");
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), (Texts{box_line("Maximum 99 records"), done_box}));
  recs.pop_back();
  EXPECT_EQ(read_bytes(dir.file("oyo.su")), expected_su(recs, layout, 250));
}

// Bad records end in the conversion's own behaviour: a truncated record
// repeats the samples of the trace before, a delay too large for 16 bits
// keeps the file before's, garbage in the text columns reads as 0, and an
// empty or missing record changes nothing of the inputs.
TEST(Oyo, MalformedRecordsNeverStopTheConversion) {
  TempDir dir;
  const auto layout = layout_of(2, 16);
  auto recs = records(dir, 1, 3, layout);
  // Record 2: delay 123456789 (too large); record 3 cut inside channel 2.
  auto rec2 = recs[1];
  const std::string delay = "123456789";
  std::copy(delay.begin(), delay.end(), rec2.begin() + 2881);
  write_bytes(dir.file("rec002.org"), rec2);
  std::string first_delay = "       42";
  std::copy(first_delay.begin(), first_delay.end(), recs[0].begin() + 2881);
  write_bytes(dir.file("rec001.org"), recs[0]);
  auto rec3 = recs[2];
  rec3.resize(6144 + 4 * 16 + 4 * 5);  // channel 2 has 5 samples
  write_bytes(dir.file("rec003.org"), rec3);
  auto r = run(select(several(dir, 1, 3)) + "click oyo.Command1\n");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{done_box});
  recs[1] = rec2;
  auto expected = expected_su(recs, layout, 250);
  const size_t trace = 240 + 4 * 16;
  for (size_t t : {2, 3}) put_at<int16_t>(expected, t * trace + 108, 42);  // record 2 keeps record 1's delay
  // Record 3 channel 2: 5 samples of its own, the rest from channel 1.
  for (size_t s = 5; s < 16; ++s)
    put_at<float>(expected, 5 * trace + 240 + 4 * s, value_at<float>(expected, 4 * trace + 240 + 4 * s));
  EXPECT_EQ(read_bytes(dir.file("oyo.su")), expected);

  // Garbage text columns, an empty record and a missing one.
  TempDir bad;
  std::vector<uint8_t> garbage(6144 + 4 * 2 * 16);
  for (size_t i = 0; i < garbage.size(); ++i) garbage[i] = static_cast<uint8_t>((i * 7919 + 13) % 251);
  write_bytes(bad.file("rec001.org"), garbage);
  write_bytes(bad.file("rec002.org"), {});
  const auto before = read_bytes(bad.file("rec001.org"));
  auto g = run(select(bad.str() + "/ rec001.org rec002.org rec003.org") + "set oyo.Text3 \"2\"\nset oyo.Text4 \"16\"\n"
               "set oyo.Text6 \"1\"\nclick oyo.Command1\n");
  EXPECT_EQ(g.exit_code, 0);
  EXPECT_EQ(g.with({"\"event\":\"msgbox\""}), Texts{done_box});
  EXPECT_EQ(read_bytes(bad.file("rec001.org")), before);
  EXPECT_EQ(read_bytes(bad.file("rec002.org")).size(), 0u);
  EXPECT_FALSE(std::filesystem::exists(bad.file("rec003.org")));
  // Three files of two traces: the last two repeat the samples before.
  const auto out = read_bytes(bad.file("oyo.su"));
  ASSERT_EQ(out.size(), 6 * (240 + 4 * 16u));
  const std::vector<uint8_t> second(out.begin() + trace + 240, out.begin() + 2 * trace);
  for (size_t t = 2; t < 6; ++t)
    EXPECT_EQ(std::vector<uint8_t>(out.begin() + t * trace + 240, out.begin() + (t + 1) * trace), second) << t;
}

// Absurd numbers in the fields: no crash, no hang, the conversion ends.
TEST(Oyo, AbsurdFieldsEndTheConversion) {
  TempDir dir;
  records(dir, 1, 2, layout_of(2, 8));
  const char* const settings[] = {
      "set oyo.Text4 \"99999999999\"\n", "set oyo.Text4 \"-5\"\n", "set oyo.Text3 \"40000\"\n",
      "set oyo.Text3 \"-3\"\n",          "set oyo.Text5 \"-1\"\n", "set oyo.Text6 \"abc\"\n",
  };
  for (const char* set : settings) {
    SCOPED_TRACE(set);
    std::filesystem::remove(dir.file("oyo.su"));
    auto r = run(select(several(dir, 1, 2)) + set + "click oyo.Command1\n");
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{done_box});
  }
}

// The help box and the selection, word for word.
TEST(Oyo, HelpAndSelectionTranscripts) {
  TempDir dir;
  records(dir, 1, 2, layout_of(4, 16));
  for (const char* name : {"oyo_help", "oyo_selection"})
    EXPECT_EQ(run_script_file(name, dir.str()).lines, expected_transcript(name)) << name;
}
