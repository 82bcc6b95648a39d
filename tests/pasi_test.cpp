// The PASI LCM-12 panel: bare numbers rounded half to even, the headers
// placed by the samples count of the selection and the samples by the count
// read at Convert, checked byte for byte against the record layout.
#include <gtest/gtest.h>

#include <cmath>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/field_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

// The header of trace n at n x (240 + 4 x header_ns): zero words up to byte
// 183, fldr, tracf, trid, nvs, nhs 1, ns and dt; the samples at
// n x (240 + 4 x ns) + 240.
void put_trace(std::vector<uint8_t>& out, size_t n, int header_ns, int fldr, int tracf, int ns, int dt,
               const std::vector<float>& samples) {
  const size_t pos = n * (240 + 4 * static_cast<size_t>(header_ns));
  if (out.size() < pos + 184) out.resize(pos + 184, 0);
  std::fill(out.begin() + static_cast<long>(pos), out.begin() + static_cast<long>(pos + 184), 0);
  put_trace_words(out, pos, fldr, tracf, ns, dt);
  const size_t at = n * (240 + 4 * static_cast<size_t>(ns)) + 240;
  for (size_t s = 0; s < samples.size(); ++s) put_at<float>(out, at + 4 * s, samples[s]);
}

std::vector<float> channel(int record, int c, int ns) {
  std::vector<float> v;
  for (int s = 0; s < ns; ++s) v.push_back(static_cast<float>(static_cast<int32_t>(std::nearbyint(gen::pasi_value(record, c, s)))));
  return v;
}

std::string selected(const std::string& chosen) { return "click Utility.Option16\ndialog \"" + chosen + "\"\nclick pasi.Command5\n"; }

}  // namespace

// Two records of 4 channels: the selection counts them into Text6 and the
// rate box, proposes pasi.su in the folder, and the traces convert byte for
// byte with every .5 rounded to the even neighbour.
TEST(Pasi, GeneratedRecordsConvertByteForByte) {
  TempDir dir;
  gen::PasiLayout layout;
  layout.channels = 4, layout.samples = 50;
  for (int i : {1, 2}) gen::write_pasi(dir.str(), i, layout);
  auto r = run(selected(several(dir, 1, 2, "asc")) + "dump pasi\nset pasi.Text3 \"4\"\nset pasi.Text4 \"50\"\n"
               "set pasi.Text5 \"250\"\nset pasi.Text2 \"" + dir.file("out.su") + "\"\nclick pasi.Command1\n");
  EXPECT_EQ(texts_in(r.dump("pasi"), {"Text5", "Text6", "Text2"}),
            (std::vector<std::string>{"2", "2", dir.str() + "//pasi.su"}));
  expect_in(r.dump("pasi"), {"\"Label8\":{\"kind\":\"label\",\"caption\":\"0 bytes\""});
  EXPECT_TRUE(r.has({box_line("Conversion, done !", "information")}));
  std::vector<uint8_t> expected;
  size_t n = 0;
  for (int f : {1, 2})
    for (int c = 1; c <= 4; ++c) put_trace(expected, n++, 512, f, c, 50, 250, channel(f, c, 50));
  // Text4 changed after the selection: the headers stand by its 512
  // samples, the samples by 50, and the two part.
  EXPECT_TRUE(read_bytes(dir.file("out.su")) == expected);
}

// Ties go to the even number; a file that runs out of numbers repeats the
// last samples of the trace before.
TEST(Pasi, HalvesRoundToEvenAndShortFilesRepeat) {
  TempDir dir;
  write_text(dir.file("a.asc"), "12.5,13.5,-2.5,7\r\n1.5,2.5\r\n");
  const std::string script = "click Utility.Option16\nset pasi.Text4 \"4\"\ndialog \"" + dir.str() + "/ a.asc\"\n"
                             "click pasi.Command5\nset pasi.Text3 \"2\"\nset pasi.Text5 \"500\"\nset pasi.Text2 \"" +
                             dir.file("out.su") + "\"\nclick pasi.Command1\n";
  auto r = run(script);
  EXPECT_TRUE(r.has({box_line("Conversion, done !", "information")}));
  std::vector<uint8_t> expected;
  put_trace(expected, 0, 4, 1, 1, 4, 500, {12, 14, -2, 7});
  put_trace(expected, 1, 4, 1, 2, 4, 500, {2, 2, -2, 7});
  EXPECT_TRUE(read_bytes(dir.file("out.su")) == expected);
}

TEST(Pasi, SingleSelectionListsNothingAndHelp) {
  TempDir dir;
  gen::PasiLayout layout;
  gen::write_pasi(dir.str(), 1, layout);
  auto r = run(selected(dir.file("rec001.asc")) + "dump pasi\nclick pasi.Command2\n");
  EXPECT_EQ(texts_in(r.dump("pasi"), {"Text5", "Text6"}), (std::vector<std::string>{"0", "0"}));
  expect_in(r.dump("pasi"), {"\"Label8\":{\"kind\":\"label\",\"caption\":\"" +
                                 std::to_string(read_bytes(dir.file("rec001.asc")).size()) + " bytes\""});
  EXPECT_TRUE(r.has({box_line(" This modules convert LCM-12 seismograph data to SU format, just select files and press on"
                              " CONVERT button")}));
}

// Above 8131 samples the 16-bit product of the sample position fails: the
// samples land where the position stood before (0 at the start), over the
// headers.
TEST(Pasi, LongTracesOverflowTheSamplePosition) {
  TempDir dir;
  const int ns = 8132;
  std::string text;
  for (int c = 1; c <= 2; ++c)
    for (int s = 0; s < ns; ++s) text += std::to_string(c * 10000 + s % 1000) + "\r\n";
  write_text(dir.file("a.asc"), text);
  auto r = run("click Utility.Option16\nset pasi.Text4 \"8132\"\ndialog \"" + dir.str() + "/ a.asc\"\nclick pasi.Command5\n"
               "set pasi.Text3 \"2\"\nset pasi.Text5 \"500\"\nset pasi.Text2 \"" + dir.file("out.su") +
               "\"\nclick pasi.Command1\n");
  EXPECT_TRUE(r.has({box_line("Conversion, done !", "information")}));
  std::vector<uint8_t> expected;
  put_trace(expected, 1, ns, 1, 2, ns, 500, {});
  for (int s = 0; s < ns; ++s) put_at<float>(expected, 4 * static_cast<size_t>(s), static_cast<float>(20000 + s % 1000));
  EXPECT_TRUE(read_bytes(dir.file("out.su")) == expected);
}
