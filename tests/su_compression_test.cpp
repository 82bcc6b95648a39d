// SU to SU2 and back: samples times the factor as int16, the peak scan and
// proposed factor, the overflow that keeps the sample before, the expansion's
// count by the 4-byte record size.
#include <gtest/gtest.h>

#include <cmath>

#include "operations_desk.h"
#include "su_files.h"

using namespace tf;
using namespace tf::test;

namespace {
constexpr int ns = 8;

// The SU2 bytes of an SU file: each header as it stands, then the samples
// times the factor rounded half to even; a sample out of the 16-bit range
// keeps the value of the trace before at that index.
std::vector<uint8_t> su2_of(const std::vector<uint8_t>& su, int traces, int factor) {
  std::vector<uint8_t> out;
  std::vector<int16_t> kept(ns, 0);
  for (int t = 0; t < traces; ++t) {
    const size_t from = static_cast<size_t>(t) * (240 + 4 * ns);
    out.insert(out.end(), su.begin() + static_cast<long>(from), su.begin() + static_cast<long>(from) + 240);
    for (int i = 0; i < ns; ++i) {
      const float product = static_cast<float>(factor) * sample_of(su, static_cast<size_t>(t), static_cast<size_t>(i), ns);
      const double rounded = std::nearbyint(static_cast<double>(product));
      if (rounded >= -32768 && rounded <= 32767) kept[static_cast<size_t>(i)] = static_cast<int16_t>(rounded);
      put_at<int16_t>(out, out.size(), kept[static_cast<size_t>(i)]);
    }
  }
  return out;
}

struct Compression : Desk<> {
  TempDir dir;
  std::string su = dir.file("line.su");
  void compress(const std::vector<uint8_t>& file, const std::string& factor) {
    write_bytes(su, file);
    dialog(su);
    input(factor);
    app.run_routine("SU_Compress");
  }
  void expand() {
    dialog(dir.file("line.SU2"));
    app.run_routine("SU_Uncompress");
  }
  std::string proposed() const {
    for (const auto& l : lines())
      if (l.find("\"inputbox\"") != std::string::npos) return l.substr(l.find("\"default\":") + 11, l.find("\",\"answer") - l.find("\"default\":") - 11);
    return "";
  }
};
}  // namespace

TEST(SuCompression, SamplesTimesTheFactorWithHeadersKept) {
  Compression c;
  auto file = su_file(2, 3, ns, 250, [](int r, int ch, int i) { return 0.37f * static_cast<float>(r * ch - i) + 0.5f; });
  c.compress(file, "40");
  EXPECT_EQ(read_bytes(c.dir.file("line.SU2")), su2_of(file, 6, 40));
  EXPECT_EQ(read_bytes(c.su), file);
  const double ratio = std::floor(static_cast<double>(6 * (240 + 2 * ns)) / static_cast<double>(file.size()) * 100) / 100;
  EXPECT_EQ(c.messages(), std::vector<std::string>{box_line(c.dir.file("line.SU2") + " has been recorded. Compression factor: " +
                                                                number_text(ratio),
                                                            "information")});
  expect_in(c.lines()[0], {"\"title\":\"Qualtor File to compress selection\"",
                           "\"filter\":\"Seismic Unix (SU)|*.SU|All files|*.*|\"", "\"file\":\"*.SU\""});
  expect_in(c.lines()[1], {"\"prompt\":\"Enter the conversion factor\"", "\"title\":\"Tracefold 1.0\""});
}

TEST(SuCompression, OverflowingSampleKeepsThePreviousTracesValue) {
  Compression c;
  auto file = su_file(1, 3, ns, 1000, [](int, int ch, int i) { return ch == 2 && i == 3 ? 5000.0f : static_cast<float>(ch + i); });
  c.compress(file, "10");
  auto su2 = read_bytes(c.dir.file("line.SU2"));
  EXPECT_EQ(su2, su2_of(file, 3, 10));
  EXPECT_EQ(value_at<int16_t>(su2, (240 + 2 * ns) + 240 + 2 * 3), 10 * (1 + 3));  // trace 1's value
}

TEST(SuCompression, ProposedFactorFromThePeakScan) {
  struct Case {
    const char* what;
    int traces;
    int peak_trace;  // from 1; 0 for none
    float peak;
    const char* proposed;
  };
  const Case cases[] = {
      {"all zero proposes 0", 20, 0, 0, "0"},
      {"peak on a scanned trace", 100, 51, 400, "25"},
      {"peak on a trace the step passes over", 100, 50, 400, "0"},
      {"step 10 below 100 traces", 99, 11, 40, "250"},
      {"a negative peak is not seen", 20, 1, -400, "0"},
      {"a peak above 20000 rounds to 0", 20, 1, 25000, "0"},
  };
  for (const auto& k : cases) {
    SCOPED_TRACE(k.what);
    Compression c;
    auto file = su_file(1, k.traces, ns, 1000, [&](int, int ch, int i) { return ch == k.peak_trace && i == 2 ? k.peak : 0.0f; });
    c.compress(file, "");  // a cancelled box: factor 1
    EXPECT_EQ(c.proposed(), k.proposed);
    EXPECT_EQ(read_bytes(c.dir.file("line.SU2")), su2_of(file, k.traces, 1));
  }
}

TEST(SuCompression, RoundTripKeepsTheFactorAndExpandsByTheLongRecordCount) {
  Compression c;
  auto file = su_file(2, 5, ns, 500, [](int r, int ch, int i) { return static_cast<float>(r * 3 - ch + i) / 8.0f; });
  c.compress(file, "8");
  c.expand();
  // 10 SU2 records of 256 bytes, counted by the SU record size of 272.
  const int expanded = static_cast<int>(std::nearbyint(10.0 * (240 + 2 * ns) / (240 + 4 * ns)));
  std::vector<uint8_t> want(file.begin(), file.begin() + expanded * (240 + 4 * ns));
  for (int t = 0; t < expanded; ++t)
    for (int i = 0; i < ns; ++i) {
      const size_t at = static_cast<size_t>(t) * (240 + 4 * ns) + 240 + 4 * static_cast<size_t>(i);
      put_at<float>(want, at, 8 * value_at<float>(file, at));
    }
  EXPECT_EQ(read_bytes(c.dir.file("line.SU")), want);
  EXPECT_EQ(c.messages().back(),
            box_line(c.dir.file("line.SU") + " has been recorded " + number_text(static_cast<int64_t>(want.size())) +
                         " instead " + number_text(static_cast<int64_t>(10 * (240 + 2 * ns))),
                     "information"));
  expect_in(c.lines()[3], {"\"title\":\"Qualtor compressed File  selection\"",
                           "\"filter\":\"Seismic Unix (SU2)|*.SU2|All files|*.*|\"", "\"filter_index\":1"});
}

TEST(SuCompression, CancelledOrMissingFileEndsQuietly) {
  Compression c;
  c.dialog(c.dir.file("none.su"));
  c.app.run_routine("SU_Compress");
  c.app.run_routine("SU_Uncompress");
  EXPECT_TRUE(c.messages().empty());
  EXPECT_TRUE(c.boxes().empty());
}

TEST(SuCompression, ScriptOfCompressionAndExpansion) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_file(1, 4, ns, 1000, [](int, int c, int i) { return static_cast<float>(c * i) - 3.5f; }));
  expect_script_in("su_compression", dir);
}
