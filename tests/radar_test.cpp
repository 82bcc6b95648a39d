// The radar panels: GSSI DZT, EKKO DT1 and RAMAC. The public samples and
// small records built here are converted and compared byte for byte with
// SU files that the tests build from the formats' layouts: which input bytes
// make each sample, and which header words each trace gets.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>

#include "radar/ramac.h"
#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;
namespace fs = std::filesystem;

namespace {

const std::string data = TRACEFOLD_SHARED_DATA;
using Texts = std::vector<std::string>;

// A text as the transcript writes it inside its quotes.
std::string escaped(const std::string& text) {
  const std::string quoted = json(text);
  return quoted.substr(1, quoted.size() - 2);
}

bool have_samples() { return fs::exists(data + "/dzt") && fs::exists(data + "/dt1") && fs::exists(data + "/rd3"); }
#define NEED_SAMPLES() \
  if (!have_samples()) GTEST_SKIP() << "no public samples in " << data

// ---- GSSI DZT ------------------------------------------------------------

// A DZT file: the header words that are read, zeros elsewhere up to 1024,
// then `scans` of samples of `width` bytes, each sample value f(scan, k).
std::vector<uint8_t> dzt_file(int16_t samples, int16_t bits, float per_second, float per_metre, int16_t channels,
                              int16_t data_start, int scans, int width) {
  std::vector<uint8_t> f(1024, 0);
  put_at<int16_t>(f, 2, data_start);
  put_at<int16_t>(f, 4, samples);
  put_at<int16_t>(f, 6, bits);
  put_at<float>(f, 10, per_second);
  put_at<float>(f, 14, per_metre);
  put_at<int16_t>(f, 52, channels);
  for (int s = 0; s < scans; ++s)
    for (int k = 0; k < samples; ++k) {
      const int32_t v = (s + 1) * 1000 - 37 * k * (k % 2 ? 1 : -1);
      if (width == 2) put_at<int16_t>(f, f.size(), static_cast<int16_t>(v));
      else put_at<int32_t>(f, f.size(), v * 4099);
    }
  return f;
}

struct DztRun {
  int samples, traces, width, rate, divisor;
  float spacing;
};

// Trace i at (i - 1) x (240 + 4 x samples): tracl and tracr 0, fldr 1, tracf,
// cdp and cdpt i, trid to duse 1, ns and dt, d1 and d2 the spacing, every
// other word of the header zero and 16 bytes of zeros past it (the samples
// cover them), ep left as the file had it. Sample k is the scan's k-th value
// (2 or 4 bytes from 1024 + (i - 1) x samples x width) over the divisor.
std::vector<uint8_t> dzt_expected(const std::vector<uint8_t>& in, const DztRun& r, std::vector<uint8_t> file = {}) {
  const size_t record = 240 + 4 * static_cast<size_t>(r.samples);
  for (int i = 1; i <= r.traces; ++i) {
    const size_t pos = (i - 1) * record;
    const int32_t ep = file.size() >= pos + 20 ? value_at<int32_t>(file, pos + 16) : 0;
    if (file.size() < pos + 256) file.resize(pos + 256, 0);
    std::fill(file.begin() + static_cast<std::ptrdiff_t>(pos), file.begin() + static_cast<std::ptrdiff_t>(pos + 256), 0);
    put_at<int32_t>(file, pos + 16, ep);
    put_at<int32_t>(file, pos + 8, 1);
    for (size_t at : {12, 20, 24}) put_at<int32_t>(file, pos + at, i);
    for (size_t at : {28, 30, 32, 34}) put_at<int16_t>(file, pos + at, 1);
    put_at<int16_t>(file, pos + 114, static_cast<int16_t>(r.samples));
    put_at<int16_t>(file, pos + 116, static_cast<int16_t>(r.rate));
    put_at<float>(file, pos + 180, r.spacing);
    put_at<float>(file, pos + 188, r.spacing);
    const size_t scan = 1024 + (i - 1) * static_cast<size_t>(r.samples) * r.width;
    for (int k = 0; k < r.samples; ++k) {
      const double v = r.width == 2 ? value_at<int16_t>(in, scan + 2 * k) : value_at<int32_t>(in, scan + 4 * k);
      put_at<float>(file, pos + 240 + 4 * k, static_cast<float>(v / r.divisor));
    }
  }
  return file;
}

std::string dzt_select(const std::string& path) { return "show DZT\ndialog \"" + path + "\"\nclick DZT.Command1\n"; }
Texts dzt_fields(const RunResult& r) {
  return texts_in(r.dump("DZT"), {"Text3", "Text4", "Text5", "Text6", "Text7", "Text8", "Text9", "Combo1"});
}

// The two public files: the 16-bit one is proposed with "16" and read with
// 4 bytes a sample; the 32-bit one is proposed with "8" (bits other than 16),
// its trace count overflows 16 bits (2048 x 32) and stays, the zero scans per
// metre leave the spacing; with "16" and the count typed in, it reads its
// 4-byte samples. The divisor is the word at offset 2.
TEST(Dzt, PublicSamplesConvertByteExact) {
  NEED_SAMPLES();
  TempDir dir;
  const struct {
    std::string file;
    Texts proposed;
    std::string corrections;
    DztRun run;
  } cases[] = {
      {"FILE____032.DZT", {"512", "10", "520", "2", "5.12", "1", "1024", "16"}, "", {512, 520, 4, 10, 1024, 2.0f}},
      {"test_gssi.DZT",
       {"2048", "41.66667", "0", "0.10", "85.33334016", "1", "128", "8"},
       "select DZT.Combo1 1\nset DZT.Text5 \"360\"\nset DZT.Text4 \"42\"\n",
       {2048, 360, 4, 42, 128, 0.1f}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.file);
    const std::string in = data + "/dzt/" + c.file, out = dir.file(c.file + ".su");
    auto r = run(dzt_select(in) + "dump DZT\n" + c.corrections + "set DZT.Text2 \"" + out + "\"\nclick DZT.Command3\n");
    EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"DZT file selection\","
                       "\"filter\":\"Radar DZT |*.DZT\",\"file\":\"\",\"dir\":\"\",\"flags\":0,\"filter_index\":1"}));
    EXPECT_EQ(dzt_fields(r), c.proposed);
    EXPECT_EQ(text_in(r.dump("DZT"), "Text2"), data + "/dzt/" + c.file.substr(0, c.file.size() - 3) + "SU");
    EXPECT_TRUE(r.has({box_line("Conversion OK! " + out + " has been recorded", "information")}));
    EXPECT_EQ(read_bytes(out), dzt_expected(read_bytes(in), c.run));
  }
}

// Text8 (2 at the start) divides the samples and multiplies the traces as
// the fields stand: a second change compounds, 0 leaves the samples and
// zeroes the traces.
TEST(Dzt, TracesPerScanCompounds) {
  const struct {
    const char* per_scan;
    Texts samples_traces;
  } steps[] = {{"4", {"128", "2080"}}, {"2", {"64", "4160"}}, {"0", {"64", "0"}}, {"3", {"21.3333333333333", "0"}}};
  std::string script = "show DZT\nset DZT.Text3 \"512\"\nset DZT.Text5 \"520\"\n";
  for (const auto& s : steps) {
    SCOPED_TRACE(s.per_scan);
    script += "set DZT.Text8 \"" + std::string(s.per_scan) + "\"\ndump DZT\n";
    EXPECT_EQ(texts_in(run(script).dump("DZT"), {"Text3", "Text5"}), s.samples_traces);
  }
}

// A divisor of 0 divides by 1. The output is written over in place when the
// user keeps it: ep keeps the old bytes, and the zero run of each header
// reaches 16 bytes past it, which the samples of 2 traces x 2 samples don't
// cover: the last trace leaves 8 zero bytes behind it, then the old tail.
TEST(Dzt, DivisorZeroAndKeptOutput) {
  TempDir dir;
  const auto in = dzt_file(2, 8, 50, 10, 1, 0, 2, 2);
  write_bytes(dir.file("a.DZT"), in);
  std::vector<uint8_t> old(600, 0x5A);
  write_bytes(dir.file("a.SU"), old);
  auto r = run(dzt_select(dir.file("a.DZT")) + "dump DZT\nset DZT.Text5 \"2\"\nreply no\nclick DZT.Command3\n");
  EXPECT_EQ(dzt_fields(r), (Texts{"2", "20", "2", "10", ".04", "1", "0", "8"}));
  EXPECT_TRUE(r.has({box_line("Outfile name already exists, kill this file ?", "question", "yesno", "no")}));
  auto expected = dzt_expected(in, {2, 2, 2, 20, 1, 10.0f}, old);
  EXPECT_EQ(expected.size(), 600u);
  for (size_t at = 2 * 248; at < 2 * 248 + 8; ++at) EXPECT_EQ(expected[at], 0) << at;
  EXPECT_EQ(value_at<int32_t>(expected, 16), 0x5A5A5A5A);
  EXPECT_EQ(read_bytes(dir.file("a.SU")), expected);
  // Yes: a fresh file.
  run(dzt_select(dir.file("a.DZT")) + "set DZT.Text5 \"2\"\nreply yes\nclick DZT.Command3\n");
  EXPECT_EQ(read_bytes(dir.file("a.SU")), dzt_expected(in, {2, 2, 2, 20, 1, 10.0f}));
}

// A rate of 0 brings the box back until a number other than 0 comes.
TEST(Dzt, ZeroSamplingRateAsksAgain) {
  TempDir dir;
  const auto in = dzt_file(4, 16, 0, 0, 1, 1024, 3, 4);
  write_bytes(dir.file("b.DZT"), in);
  auto r = run(dzt_select(dir.file("b.DZT")) + "set DZT.Text2 \"" + dir.file("b.SU") +
               "\"\ninput \"0\"\ninput \"none\"\ninput \"12.4\"\nclick DZT.Command3\ndump DZT\n");
  EXPECT_EQ(r.with({"{\"event\":\"inputbox\",\"prompt\":\" Enter the sampling rate (nanoS)\",\"title\":\"Tracefold 1.0\","
                    "\"default\":\"0\""}).size(), 3u);
  EXPECT_EQ(text_in(r.dump("DZT"), "Text4"), "12");
  EXPECT_EQ(read_bytes(dir.file("b.SU")), dzt_expected(in, {4, 3, 4, 12, 1024, 0.1f}));
}

// Above 8131 samples the record size overflows 16 bits: every trace lands
// on the first place, and the last one stays there.
TEST(Dzt, LongScansOverflowToOnePlace) {
  TempDir dir;
  const auto in = dzt_file(9000, 8, 100, 50, 1, 1024, 3, 2);
  write_bytes(dir.file("c.DZT"), in);
  run(dzt_select(dir.file("c.DZT")) + "set DZT.Text5 \"3\"\nset DZT.Text2 \"" + dir.file("c.SU") + "\"\nclick DZT.Command3\n");
  auto third = dzt_expected(in, {9000, 3, 2, 10, 1024, 2.0f});
  std::vector<uint8_t> expected(third.end() - (240 + 4 * 9000), third.end());
  for (size_t at : {12, 20, 24}) put_at<int32_t>(expected, at, 3);
  EXPECT_EQ(read_bytes(dir.file("c.SU")), expected);
}

// A trace count past what 32-bit places reach ends the job at 2 GB of
// output, not after billions of turns over the last place. It writes those
// 2 GB: run it by hand with --gtest_also_run_disabled_tests.
TEST(Dzt, DISABLED_AbsurdTraceCountEndsAtTheLastPlace) {
  TempDir dir;
  const auto in = dzt_file(8131, 8, 100, 50, 1, 1024, 1, 2);
  write_bytes(dir.file("d.DZT"), in);
  auto r = run(dzt_select(dir.file("d.DZT")) + "set DZT.Text5 \"2147483647\"\nset DZT.Text2 \"" + dir.file("d.SU") +
               "\"\nclick DZT.Command3\n");
  EXPECT_TRUE(r.has({"Conversion OK!"}));
  const int64_t record = 240 + 4 * 8131;
  EXPECT_EQ(static_cast<int64_t>(fs::file_size(dir.file("d.SU"))), (int64_t{INT32_MAX} / record + 1) * record);
  fs::remove(dir.file("d.SU"));
}

// Missing, empty, short and garbled files: the fields take what can be read,
// nothing crashes, and the input is not touched.
TEST(Dzt, BadFilesNeverCrash) {
  TempDir dir;
  std::vector<uint8_t> garbled(1500);
  for (size_t i = 0; i < garbled.size(); ++i) garbled[i] = static_cast<uint8_t>(i * 97 + 13);
  const struct {
    std::string name;
    std::vector<uint8_t> bytes;
    Texts fields;
  } cases[] = {
      {"empty.DZT", {}, {"0", "0", "0", "0.10", "0", "0", "0", "8"}},
      {"short.DZT", {1, 0, 0, 4}, {"0", "0", "0", "0.10", "0", "0", "1024", "8"}},
      {"garbled.DZT", garbled},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    write_bytes(dir.file(c.name), c.bytes);
    auto r = run(dzt_select(dir.file(c.name)) + "dump DZT\nset DZT.Text2 \"" + dir.file(c.name + ".su") +
                 "\"\ninput \"5\"\nclick DZT.Command3\n");
    EXPECT_EQ(r.exit_code, 0);
    if (!c.fields.empty()) EXPECT_EQ(dzt_fields(r), c.fields);
    EXPECT_EQ(read_bytes(dir.file(c.name)), c.bytes);
    EXPECT_FALSE(r.has({"runtime-error"}));
  }
  auto missing = run(dzt_select(dir.file("gone.DZT")) + "set DZT.Text4 \"5\"\nclick DZT.Command3\n");
  EXPECT_TRUE(missing.has({box_line("Input file does not exists!", "stop")}));
  EXPECT_FALSE(fs::exists(dir.file("gone.DZT")) || fs::exists(dir.file("gone.SU")));
}

// ---- EKKO DT1 ------------------------------------------------------------

// Trace i of a .DT1: 128 header bytes, then ns int16 samples.
std::vector<uint8_t> dt1_file(int traces, int ns) {
  std::vector<uint8_t> f;
  for (int i = 1; i <= traces; ++i) {
    for (int b = 0; b < 128; ++b) f.push_back(0xEE);
    for (int k = 1; k <= ns; ++k) put_at<int16_t>(f, f.size(), static_cast<int16_t>(i * 100 + k));
  }
  return f;
}

std::string hd_text(int traces, int ns, const std::string& time_zero, const std::string& window, double start,
                    double final) {
  return "1234\r\r\nNUMBER OF TRACES   = " + std::to_string(traces) + " \r\r\nNUMBER OF PTS/TRC  = " +
         std::to_string(ns) + " \r\r\nTIMEZERO AT POINT  = " + time_zero + " \r\r\nTOTAL TIME WINDOW  = " + window +
         " \r\r\nSTARTING POSITION  = " + std::to_string(start) + " \r\r\nFINAL POSITION     = " +
         std::to_string(final) + " \r\r\n";
}

struct Dt1Run {
  int traces, ns, time_zero, dt;
  double spacing;
};

// Trace i at (i - 1) x (240 + 4 x ns_out), ns_out = ns - T: tracl, tracr,
// tracf and cdp i, fldr 1, cdpt 0, trid, nvs and duse 1, nhs 95, sx the
// spacing x (i - 1) rounded, ns_out and dt, zeros (also 16 bytes past the
// header). Output sample k is input sample k + T - 1 (from 1); with T = 0 the
// first sample is 0.
std::vector<uint8_t> dt1_expected(const std::vector<uint8_t>& in, const Dt1Run& r) {
  const int ns_out = r.ns - r.time_zero;
  const size_t record = 240 + 4 * static_cast<size_t>(ns_out);
  std::vector<uint8_t> file;
  for (int i = 1; i <= r.traces; ++i) {
    const size_t pos = (i - 1) * record;
    file.resize(std::max(file.size(), pos + 256), 0);
    for (size_t at : {0, 4, 12, 20}) put_at<int32_t>(file, pos + at, i);
    put_at<int32_t>(file, pos + 8, 1);
    for (size_t at : {28, 30, 34}) put_at<int16_t>(file, pos + at, 1);
    put_at<int16_t>(file, pos + 32, 95);
    put_at<int32_t>(file, pos + 72, static_cast<int32_t>(std::nearbyint(r.spacing * (i - 1))));
    put_at<int16_t>(file, pos + 114, static_cast<int16_t>(ns_out));
    put_at<int16_t>(file, pos + 116, static_cast<int16_t>(r.dt));
    const size_t samples = static_cast<size_t>(i) * 128 + (i - 1) * static_cast<size_t>(r.ns) * 2;
    for (int k = 1; k <= ns_out; ++k) {
      const int from = k + r.time_zero - 1;
      const float v = from >= 1 ? value_at<int16_t>(in, samples + 2 * (from - 1)) : 0.0f;
      put_at<float>(file, pos + 240 + 4 * (k - 1), v);
    }
  }
  return file;
}

std::string dt1_select(const std::string& path) { return "show DT1\ndialog \"" + path + "\"\nclick DT1.Command1\n"; }
Texts dt1_fields(const RunResult& r) {
  return texts_in(r.dump("DT1"), {"Text6", "Text5", "Text7", "Text8", "Text4", "Text3"});
}

// The two public pairs: the fields from the .HD, time zero rounded, the
// spacing kept to two decimals; every trace with its header words.
TEST(Dt1, PublicSamplesConvertByteExact) {
  NEED_SAMPLES();
  TempDir dir;
  const struct {
    std::string pair;
    Texts proposed;
    Dt1Run run;
  } cases[] = {
      {"gprpy_ComOffs", {"1500", ".8", "1200", "531", "2", "3.18"}, {531, 1500, 3, 800, 2.0}},
      {"gprpy_WARR", {"1900", ".4", "760", "164", ".1", "34.07"}, {164, 1900, 34, 400, 0.1}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.pair);
    const std::string in = data + "/dt1/" + c.pair + "/XLINE00.DT1", out = dir.file(c.pair + ".su");
    auto r = run(dt1_select(in) + "dump DT1\nset DT1.Text2 \"" + out + "\"\nclick DT1.Command3\n");
    EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"DT1 file selection\","
                       "\"filter\":\"Record |*.DT1|All files|*.*|\",\"file\":\"*.dt1\",\"dir\":\"\",\"flags\":0,"
                       "\"filter_index\":1"}));
    EXPECT_EQ(dt1_fields(r), c.proposed);
    EXPECT_EQ(text_in(r.dump("DT1"), "RichTextBox1"), escaped(text_of(data + "/dt1/" + c.pair + "/XLINE00.HD")));
    EXPECT_FALSE(r.has({"\"event\":\"beep\""}));
    EXPECT_TRUE(r.has({box_line("OK, Conversion done")}));
    EXPECT_EQ(read_bytes(out), dt1_expected(read_bytes(in), c.run));
  }
}

// Time zero T starts each output trace at input sample T and ends it at
// sample ns - 1; at 0 the first sample stays 0 and the trace is one late.
TEST(Dt1, TimeZeroShiftsTheTrace) {
  TempDir dir;
  const auto in = dt1_file(3, 8);
  write_bytes(dir.file("L.DT1"), in);
  for (int t : {0, 1, 2, 5}) {
    SCOPED_TRACE(t);
    write_text(dir.file("L.HD"), hd_text(3, 8, std::to_string(t), "16", 0, 3));
    fs::remove(dir.file("L.SU"));
    run(dt1_select(dir.file("L.DT1")) + "click DT1.Command3\n");
    const auto out = read_bytes(dir.file("L.SU"));
    EXPECT_EQ(out, dt1_expected(in, {3, 8, t, 2000, 1.0}));
    const float first = value_at<float>(out, 240), last = value_at<float>(out, 240 + 4 * (8 - t - 1));
    EXPECT_EQ(first, t == 0 ? 0.0f : 100.0f + t);
    EXPECT_EQ(last, 107.0f);  // input sample ns - 1
  }
}

// A key missing from the .HD beeps and leaves its field; no .HD at all says
// so in the pane, and the panel converts with the fields as they stand.
TEST(Dt1, MissingKeysAndHeader) {
  TempDir dir;
  const auto in = dt1_file(2, 6);
  write_bytes(dir.file("M.DT1"), in);
  write_text(dir.file("M.HD"), "NUMBER OF TRACES   = 2\r\nNUMBER OF PTS/TRC  = 6\r\n");
  auto r = run(dt1_select(dir.file("M.DT1")) + "dump DT1\n");
  EXPECT_EQ(r.with({"\"event\":\"beep\""}).size(), 4u);  // time zero, window, start, final
  // Text5 = 1920 / 6; no positions: the spacing is 0.
  EXPECT_EQ(dt1_fields(r), (Texts{"6", "320", " 1920", "2", "0", "0"}));

  write_bytes(dir.file("N.DT1"), in);
  auto none = run(dt1_select(dir.file("N.DT1")) + "dump DT1\nset DT1.Text6 \"6\"\nset DT1.Text8 \"2\"\n"
                  "set DT1.Text3 \"1\"\nclick DT1.Command3\n");
  EXPECT_EQ(text_in(none.dump("DT1"), "RichTextBox1"), escaped(" No RAD file available for " + dir.file("N.DT1") + "\r\n"));
  EXPECT_EQ(dt1_fields(none), (Texts{" 480", " 4", " 1920", " ", ".20", "0"}));
  EXPECT_EQ(read_bytes(dir.file("N.SU")), dt1_expected(in, {2, 6, 1, 4000, 0.2}));
}

// Truncated or garbled: a trace count past the end keeps the last trace's
// samples, a 0 sample count leaves the rate, a negative one stops with the
// parameters box; empty and garbled headers beep and change nothing.
TEST(Dt1, BadRecordsAndHeaders) {
  TempDir dir;
  const auto in = dt1_file(2, 4);
  write_bytes(dir.file("T.DT1"), in);
  write_text(dir.file("T.HD"), hd_text(3, 4, "1", "8", 0, 0));
  run(dt1_select(dir.file("T.DT1")) + "click DT1.Command3\n");
  // The third trace is read past the end: the second's samples stay.
  auto as_if_three = in;
  as_if_three.insert(as_if_three.end(), in.begin() + (128 + 8), in.end());
  EXPECT_EQ(read_bytes(dir.file("T.SU")), dt1_expected(as_if_three, {3, 4, 1, 2000, 0.0}));

  const struct {
    std::string header;
    Texts fields;
    int beeps;
  } headers[] = {
      {"", {" 480", "4", " 1920", " ", "0", "0"}, 6},
      {"\x01\xff=NUMBER OF PTS/TRC  = 0\rTOTAL TIME WINDOW  = -9x9\r",
       {"0", " 4", "99", " ", "0", "0"}, 4},
  };
  for (const auto& h : headers) {
    write_text(dir.file("T.HD"), h.header);
    auto bad = run(dt1_select(dir.file("T.DT1")) + "dump DT1\n");
    EXPECT_EQ(dt1_fields(bad), h.fields);
    EXPECT_EQ(bad.with({"\"event\":\"beep\""}).size(), static_cast<size_t>(h.beeps));
  }
  // A sample count no radar writes cannot size the arrays: nothing is read
  // and the traces are written without samples.
  auto huge = run(dt1_select(dir.file("T.DT1")) + "set DT1.Text6 \"2000000000\"\nset DT1.Text8 \"1\"\n"
                  "set DT1.Text2 \"" + dir.file("H.SU") + "\"\nclick DT1.Command3\n");
  EXPECT_TRUE(huge.has({box_line("OK, Conversion done")}));
  EXPECT_EQ(read_bytes(dir.file("H.SU")).size(), 256u);
  auto negative = run(dt1_select(dir.file("T.DT1")) + "set DT1.Text6 \"-100\"\nset DT1.Text8 \"5\"\nclick DT1.Command3\n");
  EXPECT_TRUE(negative.has({box_line("Verify your parameters...", "stop")}));
  EXPECT_EQ(read_bytes(dir.file("T.DT1")), in);
}

// ---- RAMAC ---------------------------------------------------------------

// The date words of the short date "dd/mm/yyyy" read at the fixed places
// that take a month first: (day - 1) x 30 + month.
struct Date {
  int16_t year, day, hour, minute;
};
Date modified(const std::string& path) {
  const auto t = std::chrono::system_clock::to_time_t(std::chrono::file_clock::to_sys(fs::last_write_time(path)));
  std::tm local{};
  localtime_r(&t, &local);
  return {static_cast<int16_t>(local.tm_year % 100), static_cast<int16_t>((local.tm_mday - 1) * 30 + local.tm_mon + 1),
          static_cast<int16_t>(local.tm_hour), static_cast<int16_t>(local.tm_min)};
}

struct RamacRun {
  int traces, samples, time_zero, dt;
  double spacing;
};

// Trace i at (i - 1) x (240 + 4 x ns_out): tracl, tracr, tracf, cdp and cdpt
// i, fldr 1, ep, offset, sx and gx P = (i - 1) x spacing rounded, trid 1, nhs
// 95, scalco 1, ns_out, dt and the date words, d1 and d2 the spacing; the
// samples as in DT1 from (i - 1) x samples x 2.
std::vector<uint8_t> ramac_expected(const std::vector<uint8_t>& in, const RamacRun& r, const Date& d) {
  const int ns_out = r.samples - r.time_zero;
  const size_t record = 240 + 4 * static_cast<size_t>(ns_out);
  std::vector<uint8_t> file(record * r.traces, 0);
  for (int i = 1; i <= r.traces; ++i) {
    const size_t pos = (i - 1) * record;
    const auto p = static_cast<int32_t>(std::nearbyint((i - 1) * r.spacing));
    for (size_t at : {0, 4, 12, 20, 24}) put_at<int32_t>(file, pos + at, i);
    put_at<int32_t>(file, pos + 8, 1);
    for (size_t at : {16, 36, 72, 80}) put_at<int32_t>(file, pos + at, p);
    put_at<int16_t>(file, pos + 28, 1);
    put_at<int16_t>(file, pos + 32, 95);
    put_at<int16_t>(file, pos + 70, 1);
    put_at<int16_t>(file, pos + 114, static_cast<int16_t>(ns_out));
    put_at<int16_t>(file, pos + 116, static_cast<int16_t>(r.dt));
    put_at<int16_t>(file, pos + 156, d.year);
    put_at<int16_t>(file, pos + 158, d.day);
    put_at<int16_t>(file, pos + 160, d.hour);
    put_at<int16_t>(file, pos + 162, d.minute);
    put_at<float>(file, pos + 180, static_cast<float>(r.spacing));
    put_at<float>(file, pos + 188, static_cast<float>(r.spacing));
    const size_t trace = (i - 1) * static_cast<size_t>(r.samples) * 2;
    for (int k = 1; k <= ns_out; ++k) {
      const int from = k + r.time_zero - 1;
      const float v = from >= 1 && trace + 2 * from <= in.size() ? value_at<int16_t>(in, trace + 2 * (from - 1)) : 0.0f;
      put_at<float>(file, pos + 240 + 4 * (k - 1), v);
    }
  }
  return file;
}

std::string ramac_select(const std::string& path) {
  return "show Radar_F\ndialog \"" + path + "\"\nclick Radar_F.Command3\n";
}
Texts ramac_fields(const RunResult& r) {
  return texts_in(r.dump("Radar_F"), {"Text5", "Text2", "Text6", "Text4", "Text7", "Text3", "Text8"});
}

std::vector<uint8_t> rd3_file(int traces, int samples) {
  std::vector<uint8_t> f;
  for (int i = 1; i <= traces; ++i)
    for (int k = 1; k <= samples; ++k) put_at<int16_t>(f, f.size(), static_cast<int16_t>(-i * 50 + k));
  return f;
}

// The same written as `path`.
std::vector<uint8_t> write_rd3(const std::string& path, int traces, int samples) {
  auto bytes = rd3_file(traces, samples);
  write_bytes(path, bytes);
  return bytes;
}

// The public pair: the .rad keys in order, dt from the 0.1 ns interval, a
// spacing of 0 puts every position at 0; the box gives the output's length.
TEST(Ramac, PublicSampleConvertsByteExact) {
  NEED_SAMPLES();
  TempDir dir;
  const std::string in = data + "/rd3/ten_col.rd3", out = dir.file("ten_col.SU");
  auto r = run(ramac_select(in) + "dump Radar_F\nset Radar_F.Text5 \"" + out + "\"\nclick Radar_F.Command1\ndump session\n");
  EXPECT_TRUE(r.has({"\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"File selection\","
                     "\"filter\":\"Radar files|*.rd3|All files|*.*|\",\"file\":\"*.rd3\",\"dir\":\"\",\"flags\":0,"
                     "\"filter_index\":1"}));
  EXPECT_EQ(ramac_fields(r), (Texts{data + "/rd3/ten_col.SU", "10", "512", ".1", "422.061312", "0", "0"}));
  EXPECT_TRUE(r.has({"\"session\"", "\"data_folder\":" + json(data + "/rd3/")}));
  EXPECT_TRUE(r.has({box_line("OK Conversion done " + out + "   22880")}));
  EXPECT_EQ(read_bytes(out), ramac_expected(read_bytes(in), {10, 512, 0, 100, 0.0}, modified(in)));
}

// Without a .rad: 512 samples and length / 1024 traces in number-to-text
// form. With one whose interval is 0, the window over the samples. Time zero
// T gives samples - T; positions are whole numbers, halves to even.
TEST(Ramac, ProposalsTimeZeroAndPositions) {
  TempDir dir;
  const auto in = write_rd3(dir.file("R.rd3"), 6, 10);
  auto none = run(ramac_select(dir.file("R.rd3")) + "dump Radar_F\n");
  EXPECT_EQ(ramac_fields(none), (Texts{dir.file("R.SU"), " .1171875", "512", " 4", " 1920", ".20", "0"}));
  expect_in(none.dump("Radar_F"), {json(" No RAD file available for " + dir.file("R.rd3") + "\r\n")});

  write_text(dir.file("R.rad"), "SAMPLES:10\r\nTIME INTERVAL: 0.0\r\nTIMEWINDOW:25\r\nLAST TRACE:6\r\n"
                                "DISTANCE INTERVAL: 0.5\r\n");
  auto r = run(ramac_select(dir.file("R.rd3")) + "dump Radar_F\nset Radar_F.Text8 \"3\"\nclick Radar_F.Command1\n");
  EXPECT_EQ(ramac_fields(r), (Texts{dir.file("R.SU"), "6", "10", "2.5", "25", ".5", "0"}));
  EXPECT_EQ(read_bytes(dir.file("R.SU")), ramac_expected(in, {6, 10, 3, 2500, 0.5}, modified(dir.file("R.rd3"))));
}

// A rate above 32.767 nS overflows: the box asks until the answer x 1000
// fits 16 bits, and Text4 shows dt. A sample count of 0 asks too.
TEST(Ramac, RateAndSampleBoxes) {
  TempDir dir;
  const auto in = write_rd3(dir.file("S.rd3"), 2, 4);
  auto r = run(ramac_select(dir.file("S.rd3")) + "set Radar_F.Text4 \"40\"\nset Radar_F.Text2 \"2\"\n"
               "set Radar_F.Text6 \"0\"\ninput \"50\"\ninput \"8\"\ninput \"4\"\nclick Radar_F.Command1\ndump Radar_F\n");
  EXPECT_EQ(r.with({"\"prompt\":\" Enter the sampling rate (nanoS)\",\"title\":\"Tracefold 1.0\",\"default\":\"0\""}).size(), 2u);
  EXPECT_EQ(r.with({"\"prompt\":\" Enter the number of sample per trace\",\"title\":\"Tracefold 1.0\",\"default\":\"0\""}).size(), 1u);
  EXPECT_EQ(texts_in(r.dump("Radar_F"), {"Text4", "Text6"}), (Texts{"8000", "4"}));
  EXPECT_EQ(read_bytes(dir.file("S.SU")), ramac_expected(in, {2, 4, 0, 8000, 0.2}, modified(dir.file("S.rd3"))));
}

// Past 8131 samples the 16-bit record size overflows: the samples are not
// written and every header lands at 0, where the last one stays; the header
// ends at d2, so the file is 192 bytes long.
TEST(Ramac, LongTracesOverflowTheRecordSize) {
  TempDir dir;
  const auto in = write_rd3(dir.file("L.rd3"), 2, 8200);
  auto r = run(ramac_select(dir.file("L.rd3")) + "set Radar_F.Text2 \"2\"\nset Radar_F.Text6 \"8200\"\n"
               "click Radar_F.Command1\n");
  EXPECT_TRUE(r.has({box_line("OK Conversion done " + dir.file("L.SU") + "   192")}));
  auto second = ramac_expected(in, {2, 8200, 0, 4000, 0.2}, modified(dir.file("L.rd3")));
  second.erase(second.begin(), second.begin() + 240 + 4 * 8200);
  second.resize(192);
  EXPECT_EQ(read_bytes(dir.file("L.SU")), second);
}

// A name under 3 characters fails in the change event and leaves Text5; a
// missing or garbled record converts what can be read without a crash.
TEST(Ramac, BadNamesAndRecords) {
  TempDir dir;
  auto r = run("show Radar_F\nset Radar_F.Text1 \"ab\"\ndump Radar_F\n");
  EXPECT_EQ(text_in(r.dump("Radar_F"), "Text5"), "*.SU");
  write_text(dir.file("G.rad"), "SAMPLES:-3\rLAST TRACE:\r");
  write_bytes(dir.file("G.rd3"), {1, 2, 3});
  auto bad = run(ramac_select(dir.file("G.rd3")) + "dump Radar_F\nset Radar_F.Text2 \"2\"\nclick Radar_F.Command1\n");
  EXPECT_EQ(bad.exit_code, 0);
  EXPECT_EQ(texts_in(bad.dump("Radar_F"), {"Text2", "Text6"}), (Texts{"0", "3"}));
  EXPECT_EQ(read_bytes(dir.file("G.rd3")), (std::vector<uint8_t>{1, 2, 3}));
  EXPECT_FALSE(bad.has({"runtime-error"}));
  // A record that is gone: no date, no samples, and no empty record made.
  auto gone = run("show Radar_F\nset Radar_F.Text1 \"" + dir.file("gone.rd3") +
                  "\"\nset Radar_F.Text2 \"1\"\nset Radar_F.Text6 \"4\"\nclick Radar_F.Command1\n");
  EXPECT_TRUE(gone.has({box_line("OK Conversion done " + dir.file("gone.SU") + "   256")}));
  EXPECT_FALSE(fs::exists(dir.file("gone.rd3")));
}

// The date words take fixed places of the short date, whatever the locale
// puts there: month first gives a rough day of the year, day first does not.
TEST(Ramac, DateWordsFromFixedPlaces) {
  const struct {
    const char *date, *time;
    int16_t year, day, hour, minute;
  } cases[] = {
      {"11/23/26", "14:05", 26, 323, 14, 5},
      {"23/11/2026", "09:07", 26, 671, 9, 7},
      {"01/01/00", "00:00", 0, 1, 0, 0},
      {"", "", 0, -30, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.date);
    const RecordDate d = record_date(c.date, c.time);
    EXPECT_EQ((std::vector<int>{d.year, d.day, d.hour, d.minute}), (std::vector<int>{c.year, c.day, c.hour, c.minute}));
  }
}

// DT1 and RAMAC ask before they delete an existing output: Yes gives a fresh
// file; No writes over the old one, which keeps its longer tail and, in each
// trace, the bytes no word writes: ep in DT1, f1 and 192 to 239 in RAMAC.
TEST(Radar, ExistingOutputQuestion) {
  TempDir dir;
  const auto dt1 = dt1_file(2, 4);
  write_bytes(dir.file("Q.DT1"), dt1);
  write_text(dir.file("Q.HD"), hd_text(2, 4, "1", "8", 0, 0));
  const auto rd3 = rd3_file(2, 4);
  write_bytes(dir.file("Q.rd3"), rd3);
  const std::vector<uint8_t> old(2000, 0x33);
  using Ranges = std::vector<std::pair<size_t, size_t>>;
  const struct {
    std::string script;
    std::vector<uint8_t> fresh;
    size_t record;
    Ranges unwritten;
  } runs[] = {
      {dt1_select(dir.file("Q.DT1")) + "click DT1.Command3\n", dt1_expected(dt1, {2, 4, 1, 2000, 0.0}), 252, {{16, 20}}},
      {ramac_select(dir.file("Q.rd3")) + "set Radar_F.Text2 \"2\"\nset Radar_F.Text6 \"4\"\nclick Radar_F.Command1\n",
       ramac_expected(rd3, {2, 4, 0, 4000, 0.2}, modified(dir.file("Q.rd3"))), 256, {{184, 188}, {192, 240}}},
  };
  for (const auto& r : runs)
    for (const char* reply : {"yes", "no"}) {
      SCOPED_TRACE(r.script + reply);
      write_bytes(dir.file("Q.SU"), old);
      auto result = run("reply " + std::string(reply) + "\n" + r.script);
      EXPECT_TRUE(result.has({box_line("Output file name already exists, kill this file ?", "question", "yesno", reply)}));
      auto expected = r.fresh;
      if (std::string(reply) == "no") {
        for (size_t pos = 0; pos + r.record <= expected.size(); pos += r.record)
          for (auto [from, to] : r.unwritten) std::fill(expected.begin() + pos + from, expected.begin() + pos + to, 0x33);
        expected.insert(expected.end(), old.begin() + static_cast<std::ptrdiff_t>(expected.size()), old.end());
      }
      EXPECT_EQ(read_bytes(dir.file("Q.SU")), expected);
    }
}

// Seeded rounds (TRACEFOLD_SEED picks another seed) of spoiled records and headers and odd field values for the
// three importers: every run ends (0, or 3 where a box keeps coming back),
// no error escapes a handler, and the inputs stay as they were.
TEST(Radar, SpoiledInputNeverCrashes) {
  const char* chosen = std::getenv("TRACEFOLD_SEED");  // another seed by hand
  std::mt19937 rng(chosen ? static_cast<unsigned>(std::strtoul(chosen, nullptr, 10)) : 20261123u);
  auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng); };
  auto spoil = [&](std::vector<uint8_t> bytes) {
    switch (pick(0, 3)) {
      case 0: bytes.resize(static_cast<size_t>(pick(0, static_cast<int>(bytes.size())))); break;
      case 1:
        for (int n = pick(1, 40); n > 0 && !bytes.empty(); --n)
          bytes[static_cast<size_t>(pick(0, static_cast<int>(bytes.size()) - 1))] = static_cast<uint8_t>(pick(0, 255));
        break;
      case 2: bytes.assign(static_cast<size_t>(pick(0, 3000)), static_cast<uint8_t>(pick(0, 255))); break;
      default: break;
    }
    return bytes;
  };
  static const char* const values[] = {"", "0", "-1", "abc", "1e308", "nan", " 1 2 ", "-32768", "32768", "12abc", "3"};
  auto value = [&] { return "\"" + std::string(values[pick(0, static_cast<int>(std::size(values)) - 1)]) + "\""; };
  auto text = [](const std::vector<uint8_t>& b) { return std::string(b.begin(), b.end()); };
  auto bytes = [](const std::string& s) { return std::vector<uint8_t>(s.begin(), s.end()); };
  RunnerOptions options;
  options.max_boxes = 30;
  for (int round = 0; round < 25; ++round) {
    SCOPED_TRACE(round);
    TempDir dir;
    const auto dzt = spoil(dzt_file(static_cast<int16_t>(pick(1, 64)), pick(0, 1) ? 16 : 32, 64, 20, 1, 1024, 3, 2));
    const auto dt1 = spoil(dt1_file(3, 16));
    const auto hd = spoil(bytes(hd_text(3, 16, "2", "32", 0, 3)));
    const auto rd3 = spoil(rd3_file(3, 16));
    const auto rad = spoil(bytes("SAMPLES:16\r\nLAST TRACE:3\r\nTIME INTERVAL: 0.2\r\nTIMEWINDOW:3.2\r\n"));
    write_bytes(dir.file("f.DZT"), dzt);
    write_bytes(dir.file("f.DT1"), dt1);
    write_bytes(dir.file("f.HD"), hd);
    write_bytes(dir.file("f.rd3"), rd3);
    write_bytes(dir.file("f.rad"), rad);
    std::string s = dzt_select(dir.file("f.DZT"));
    for (const char* field : {"Text3", "Text4", "Text5", "Text6", "Text8", "Text9"})
      if (pick(0, 2) == 0) s += "set DZT." + std::string(field) + " " + value() + "\n";
    s += "input \"7\"\nclick DZT.Command3\n" + dt1_select(dir.file("f.DT1"));
    for (const char* field : {"Text6", "Text5", "Text8", "Text4", "Text3"})
      if (pick(0, 2) == 0) s += "set DT1." + std::string(field) + " " + value() + "\n";
    s += "click DT1.Command3\n" + ramac_select(dir.file("f.rd3"));
    for (const char* field : {"Text2", "Text6", "Text4", "Text3", "Text8"})
      if (pick(0, 2) == 0) s += "set Radar_F." + std::string(field) + " " + value() + "\n";
    s += "input \"7\"\ninput \"16\"\nclick Radar_F.Command1\n";
    auto r = run(s, options);
    EXPECT_TRUE(r.exit_code == 0 || r.exit_code == exit_run_aborted) << s;
    if (r.exit_code == 0) EXPECT_TRUE(r.has({"OK Conversion done "})) << s;  // the last job ran to its box
    EXPECT_FALSE(r.has({"\"event\":\"runtime-error\""})) << s;
    EXPECT_FALSE(r.has({"\"event\":\"error\""})) << s;
    EXPECT_EQ(read_bytes(dir.file("f.DZT")), dzt);
    EXPECT_EQ(read_bytes(dir.file("f.DT1")), dt1);
    EXPECT_EQ(text_of(dir.file("f.HD")), text(hd));
    EXPECT_EQ(read_bytes(dir.file("f.rd3")), rd3);
    EXPECT_EQ(read_bytes(dir.file("f.rad")), rad);
    if (HasFailure()) return;
  }
}

// The help boxes, the guide's two steps and the main panel's radar options.
TEST(Radar, Transcripts) {
  for (const char* name : {"radar_help", "radar_main_panel"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run_script_file(name).lines, expected_transcript(name));
  }
}

}  // namespace
