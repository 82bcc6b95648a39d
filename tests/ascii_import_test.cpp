// The two ASCII panels: a comma-separated matrix held whole (ASCII2SU) and
// one text file a trace (XASCII2SU). Expected files are built here from the
// values written into the text and the trace table of the panels.
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"
#include "tools/text_record_generators.h"

using namespace tf;
using namespace tf::test;

namespace {

using Texts = std::vector<std::string>;

// One SU trace of a text import: a zero header but fldr 1, tracf and cdp t,
// trid, nvs and duse 1, nhs 95 for radar data, ns and dt; then the samples.
std::vector<uint8_t> text_trace(int t, const std::vector<float>& samples, int dt, bool radar) {
  std::vector<uint8_t> trace(240 + 4 * samples.size(), 0);
  put_trace_words(trace, 0, 1, t, static_cast<int>(samples.size()), dt);
  put_at<int32_t>(trace, 20, t);  // cdp
  put_at<int16_t>(trace, 32, radar ? 95 : 1);
  put_at<int16_t>(trace, 34, 1);  // duse
  for (size_t s = 0; s < samples.size(); ++s) put_at<float>(trace, 240 + 4 * s, samples[s]);
  return trace;
}

// The SU file of a generated matrix or of generated trace files.
std::vector<uint8_t> expected_su(int traces, int samples, int dt, bool radar = false) {
  std::vector<uint8_t> out;
  for (int t = 1; t <= traces; ++t) {
    std::vector<float> values(static_cast<size_t>(samples));
    for (int s = 0; s < samples; ++s)
      values[static_cast<size_t>(s)] = radar ? (s < 2 ? 0.0f : static_cast<float>(gen::text_sample(t, s, true) - 32767))
                                             : static_cast<float>(gen::text_sample(t, s, false));
    auto trace = text_trace(t, values, dt, radar);
    out.insert(out.end(), trace.begin(), trace.end());
  }
  return out;
}

std::string matrix(const TempDir& dir, int traces, int samples, bool radar = false) {
  gen::AsciiMatrixLayout layout;
  layout.traces = traces, layout.samples = samples, layout.radar = radar;
  return gen::write_ascii_matrix(dir.str(), 1, layout);
}

// ASCII2SU shown, its file chosen and the selection's questions answered
// (traces first when asked, then the rate).
std::string select_matrix(const std::string& file, const std::string& answers = "input \"250\"\n") {
  return "show ASCII2SU\ndialog \"" + file + "\"\n" + answers + "click ASCII2SU.Command1\n";
}

Texts matrix_fields(const RunResult& r) { return texts_in(r.dump("ASCII2SU"), {"Text1", "Text2", "Text3", "Text4", "Text5"}); }

std::string recorded_box(const std::string& file) {
  return box_line("Conversion OK! " + file + " has been recorded", "information");
}
const std::string kill_question = "Outfile name already exists, kill this file ?";

}  // namespace

// Two sizes of matrix: every trace byte for byte, the traces counted from
// the tokens, dt the typed rate without change of unit.
TEST(AsciiMatrix, MatrixConvertsByteExact) {
  const struct {
    int traces, samples;
  } cases[] = {{24, 512}, {7, 100}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.traces) + " x " + std::to_string(c.samples));
    TempDir dir;
    const std::string in = matrix(dir, c.traces, c.samples), out = dir.file("rec001.SU");
    auto r = run(select_matrix(in) + "set ASCII2SU.Text3 \"" + std::to_string(c.samples) + "\"\n"
                 "set ASCII2SU.Text5 \"" + std::to_string(c.traces) + "\"\ndump ASCII2SU\nclick ASCII2SU.Command3\n");
    EXPECT_TRUE(r.has({"{\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"ASCII file selection\","
                       "\"filter\":\"TXT file |*.TXT\",\"file\":\"\",\"dir\":\"\",\"flags\":512"}));
    EXPECT_EQ(matrix_fields(r), (Texts{in, out, std::to_string(c.samples), "250", std::to_string(c.traces)}));
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{recorded_box(out)});
    EXPECT_EQ(read_bytes(out), expected_su(c.traces, c.samples, 250));
  }
}

// The token count starts at -1: 1024 tokens make 1023, which gives 2 traces
// at 512 samples and 2 at 600 (rounded); 3 tokens at 512 give 0 and the
// traces are asked for.
TEST(AsciiMatrix, TracesFromTheTokenCount) {
  const struct {
    int traces, samples;
    std::string typed_samples, traces_field;
    bool asked;
  } cases[] = {{2, 512, "512", "2", false}, {2, 512, "600", "2", false}, {1, 3, "512", "5", true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.typed_samples);
    TempDir dir;
    const std::string in = matrix(dir, c.traces, c.samples);
    auto r = run("show ASCII2SU\nset ASCII2SU.Text3 \"" + c.typed_samples + "\"\ndialog \"" + in + "\"\n" +
                 (c.asked ? "input \"5\"\n" : "") + "click ASCII2SU.Command1\ndump ASCII2SU\n");
    EXPECT_EQ(text_in(r.dump("ASCII2SU"), "Text5"), c.traces_field);
    EXPECT_EQ(r.has({"\"prompt\":\"Enter the number of  traces\"", "\"default\":\"0\""}), c.asked);
    // The rate is asked for with 100 offered.
    EXPECT_TRUE(r.has({"{\"event\":\"inputbox\",\"prompt\":\"Enter the sampling rate (ns)\",\"title\":\"Tracefold 1.0\","
                       "\"default\":\"100\",\"answer\":\"100\"}"}));
  }
}

// Radar text: the geometry from the DZT file of the same name, the traces
// asked for, every sample lowered by 32767 and the first two set to 0,
// nhs 95.
TEST(AsciiMatrix, DztOptionTakesTheRadarHeader) {
  TempDir dir;
  const std::string in = matrix(dir, 6, 512, true);
  gen::write_dzt_beside(in, 512, 0.3f, 999);
  auto r = run("show ASCII2SU\ncheck ASCII2SU.Check1 on\ndialog \"" + in + "\"\ninput \"6\"\nclick ASCII2SU.Command1\n"
               "dump ASCII2SU\nclick ASCII2SU.Command3\n");
  // 1000 / 0.3 as single-precision text; the rate is its rounded value.
  EXPECT_EQ(texts_in(r.dump("ASCII2SU"), {"Text3", "Text4", "Text5"}), (Texts{"512", "3333.333", "6"}));
  EXPECT_TRUE(r.has({"\"prompt\":\"Enter the number of  traces\"", "\"answer\":\"6\""}));
  EXPECT_FALSE(r.has({"\"prompt\":\"Enter the sampling rate (ns)\""}));
  EXPECT_EQ(read_bytes(dir.file("rec001.SU")), expected_su(6, 512, 3333, true));

  // No DZT beside the text: the same dialog is shown again for it.
  TempDir other;
  const std::string lone = matrix(other, 2, 16, true);
  const std::string dzt = gen::write_dzt_beside(other.file("radar.TXT"), 16, 1.0f, 2);
  auto again = run("show ASCII2SU\ncheck ASCII2SU.Check1 on\ndialog \"" + lone + "\"\ndialog \"" + dzt +
                   "\"\ninput \"2\"\nclick ASCII2SU.Command1\ndump ASCII2SU\n");
  EXPECT_EQ(again.with({"\"title\":\"ASCII file selection\""}).size(), 2u);
  EXPECT_EQ(texts_in(again.dump("ASCII2SU"), {"Text3", "Text4", "Text5"}), (Texts{"16", "1000", "2"}));
}

// Past 8131 samples the 16-bit record size overflows: every trace lands on
// the first record and the last one stays.
TEST(AsciiMatrix, PastEightThousandSamplesEveryTraceOnOneRecord) {
  const struct {
    int samples, records;
  } cases[] = {{8131, 3}, {8132, 1}, {9000, 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.samples);
    TempDir dir;
    const std::string in = matrix(dir, 3, c.samples);
    run(select_matrix(in) + "set ASCII2SU.Text3 \"" + std::to_string(c.samples) + "\"\nset ASCII2SU.Text5 \"3\"\n"
        "click ASCII2SU.Command3\n");
    auto all = expected_su(3, c.samples, 250);
    const size_t record = 240 + 4 * static_cast<size_t>(c.samples);
    if (c.records == 1) all.erase(all.begin(), all.begin() + 2 * record);
    EXPECT_EQ(read_bytes(dir.file("rec001.SU")), all);
  }
}

// Empty cells give 0 less the shift; a cell of text keeps the sample of the
// trace before; a short file leaves the rest of the matrix empty.
TEST(AsciiMatrix, EmptyAndTextCells) {
  TempDir dir;
  write_text(dir.file("m.TXT"), "1,,3\r\n4,x,6\r\n7,8\r\n");
  run("show ASCII2SU\nset ASCII2SU.Text3 \"4\"\n" + select_matrix(dir.file("m.TXT"), "") +
      "set ASCII2SU.Text5 \"3\"\nclick ASCII2SU.Command3\n");
  std::vector<uint8_t> expected;
  // Rows: 1 _ 3 / 4 x 6 / 7 8 _ / _ _ _ (the file ends).
  const std::vector<std::vector<float>> traces = {{1, 4, 7, 0}, {0, 4, 8, 0}, {3, 6, 0, 0}};
  for (int t = 1; t <= 3; ++t) {
    auto trace = text_trace(t, traces[static_cast<size_t>(t - 1)], 100, false);
    expected.insert(expected.end(), trace.begin(), trace.end());
  }
  EXPECT_EQ(read_bytes(dir.file("m.SU")), expected);

  // The same with the radar shift: empty cells are -32767, the text cell
  // keeps trace 1's sample.
  TempDir radar;
  write_text(radar.file("m.TXT"), "1,,3\r\n4,x,6\r\n7,8\r\n");
  gen::write_dzt_beside(radar.file("m.TXT"), 4, 10.0f, 3);
  run("show ASCII2SU\ncheck ASCII2SU.Check1 on\ndialog \"" + radar.file("m.TXT") + "\"\ninput \"3\"\n"
      "click ASCII2SU.Command1\nclick ASCII2SU.Command3\n");
  expected.clear();
  const std::vector<std::vector<float>> shifted = {{0, 0, 7 - 32767.f, -32767}, {0, 0, 8 - 32767.f, -32767},
                                                   {0, 0, -32767, -32767}};
  for (int t = 1; t <= 3; ++t) {
    auto trace = text_trace(t, shifted[static_cast<size_t>(t - 1)], 100, true);
    expected.insert(expected.end(), trace.begin(), trace.end());
  }
  EXPECT_EQ(read_bytes(radar.file("m.SU")), expected);
}

// A missing input stops with the stop box and writes nothing; an existing
// output is asked about: No writes into it and keeps its tail, Yes makes it
// anew.
TEST(AsciiMatrix, MissingInputAndExistingOutput) {
  TempDir dir;
  auto r = run("show ASCII2SU\nset ASCII2SU.Text1 \"" + dir.file("none.TXT") + "\"\nset ASCII2SU.Text2 \"" +
               dir.file("none.SU") + "\"\nset ASCII2SU.Text4 \"100\"\nset ASCII2SU.Text5 \"2\"\nclick ASCII2SU.Command3\n");
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{box_line("Input file does not exists!", "stop")});
  EXPECT_FALSE(std::filesystem::exists(dir.file("none.SU")));

  const std::string in = matrix(dir, 4, 32), out = dir.file("rec001.SU");
  const std::string convert = "show ASCII2SU\nset ASCII2SU.Text3 \"32\"\n" + select_matrix(in);
  auto expected = expected_su(4, 32, 250);
  write_bytes(out, std::vector<uint8_t>(expected.size() + 500, 0x5A));
  auto kept = run(convert + "reply no\nclick ASCII2SU.Command3\n");
  EXPECT_EQ(kept.with({"\"event\":\"msgbox\""}),
            (Texts{box_line(kill_question, "question", "yesno", "no"), recorded_box(out)}));
  // ep is never written: it keeps the old bytes too.
  auto with_tail = expected;
  for (size_t at = 0; at < expected.size(); at += 240 + 4 * 32) std::fill_n(with_tail.begin() + at + 16, 4, 0x5A);
  with_tail.insert(with_tail.end(), 500, 0x5A);
  EXPECT_EQ(read_bytes(out), with_tail);
  run(convert + "reply yes\nclick ASCII2SU.Command3\n");
  EXPECT_EQ(read_bytes(out), expected);
}

// Fields at 0 are asked for in order, samples, traces, rate, each until
// the answer isn't 0; a script that answers 0 for ever is cut by the
// runner's box limit.
TEST(AsciiMatrix, ZeroFieldsAreAskedUntilNotZero) {
  TempDir dir;
  const std::string in = matrix(dir, 2, 8);
  auto r = run("show ASCII2SU\nset ASCII2SU.Text1 \"" + in + "\"\nset ASCII2SU.Text2 \"" + dir.file("o.SU") +
               "\"\nset ASCII2SU.Text3 \"0\"\ninput \"0\"\ninput \"8\"\ninput \"x\"\ninput \"2\"\ninput \"250\"\n"
               "click ASCII2SU.Command3\n");
  auto asked = r.with({"\"event\":\"inputbox\""});
  ASSERT_EQ(asked.size(), 5u);
  const std::string prompts[] = {"Enter the number of samples / trace", "Enter the number of samples / trace",
                                 "Enter the number of traces", "Enter the number of traces",
                                 "Enter the sampling rate (ns)"};
  for (size_t i = 0; i < 5; ++i)
    expect_in(asked[i], {"\"prompt\":\"" + prompts[i] + "\",\"title\":\"Tracefold 1.0\",\"default\":\"0\""});
  EXPECT_EQ(read_bytes(dir.file("o.SU")), expected_su(2, 8, 250));

  RunnerOptions options;
  options.max_boxes = 20;
  auto forever = run("show ASCII2SU\nclick ASCII2SU.Command3\n", options);
  EXPECT_EQ(forever.exit_code, exit_run_aborted);
}

// Absurd numbers typed in the fields end the conversion without a crash or
// a hang: a matrix too large to allocate writes nothing.
TEST(AsciiMatrix, AbsurdFieldsEndTheConversion) {
  TempDir dir;
  const std::string in = matrix(dir, 2, 8);
  const struct {
    std::string samples, traces;
    bool written;
  } cases[] = {{"32767", "2000000000", false}, {"-5", "2", false}, {"8", "-7", false}, {"8", "3", true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.samples + " " + c.traces);
    std::filesystem::remove(dir.file("o.SU"));
    auto r = run("show ASCII2SU\nset ASCII2SU.Text1 \"" + in + "\"\nset ASCII2SU.Text2 \"" + dir.file("o.SU") +
                 "\"\nset ASCII2SU.Text3 \"" + c.samples + "\"\nset ASCII2SU.Text5 \"" + c.traces +
                 "\"\nset ASCII2SU.Text4 \"1\"\nclick ASCII2SU.Command3\n");
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{recorded_box(dir.file("o.SU"))});
    EXPECT_EQ(std::filesystem::exists(dir.file("o.SU")) && std::filesystem::file_size(dir.file("o.SU")) > 0, c.written);
  }
}

// One file a trace, two sizes: every trace byte for byte; the selection
// counts the first file's tokens from 0 and offers them as the samples.
TEST(AsciiTraces, TraceFilesConvertByteExact) {
  for (int samples : {512, 40}) {
    SCOPED_TRACE(samples);
    TempDir dir;
    for (int t = 1; t <= 5; ++t) gen::write_ascii_trace(dir.str(), t, samples);
    const std::string out = dir.str() + "//rec001.SU";
    auto r = run("show XASCII2SU\ndialog \"" + several(dir, 1, 5, "txt") + "\"\ninput \"" + std::to_string(samples) +
                 "\"\ninput \"5\"\ninput \"250\"\nclick XASCII2SU.Command1\ndump XASCII2SU\nclick XASCII2SU.Command3\n");
    EXPECT_TRUE(r.has({"{\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"ASCII file selection\","
                       "\"filter\":\"All files|*.*|\",\"file\":\"*.*\",\"dir\":\"\",\"flags\":512"}));
    EXPECT_TRUE(r.has({"\"prompt\":\"Enter the number of samples / trace\"", "\"default\":\"" + std::to_string(samples) + "\""}));
    EXPECT_TRUE(r.has({"\"prompt\":\"Enter the number of  traces\"", "\"default\":\"5\""}));
    EXPECT_EQ(texts_in(r.dump("XASCII2SU"), {"Text2", "Text3", "Text4", "Text5"}),
              (Texts{out, std::to_string(samples), "250", "5"}));
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}), Texts{recorded_box(out)});
    EXPECT_EQ(read_bytes(out), expected_su(5, samples, 250));
  }
}

// A file of 300 lines at 512 samples keeps the previous trace's samples 301
// to 512 (0 in the first trace); a trace past the list repeats the one
// before; the radar box changes nhs only.
TEST(AsciiTraces, ShortFilesKeepThePreviousTail) {
  TempDir dir;
  gen::write_ascii_trace(dir.str(), 1, 300);
  gen::write_ascii_trace(dir.str(), 2, 512);
  gen::write_ascii_trace(dir.str(), 3, 300);
  const std::string out = dir.file("o.SU");
  for (bool radar : {false, true}) {
    SCOPED_TRACE(radar);
    std::filesystem::remove(out);
    run("show XASCII2SU\ndialog \"" + several(dir, 1, 3, "txt") + "\"\ninput \"512\"\ninput \"4\"\ninput \"100\"\n"
        "click XASCII2SU.Command1\nset XASCII2SU.Text2 \"" + out + "\"\n" + (radar ? "check XASCII2SU.Check1 on\n" : "") +
        "click XASCII2SU.Command3\n");
    std::vector<float> trace(512, 0.0f);
    std::vector<uint8_t> expected;
    for (int t = 1; t <= 4; ++t) {
      const int lines = t == 2 ? 512 : t == 4 ? 0 : 300;
      for (int s = 0; s < lines; ++s) trace[static_cast<size_t>(s)] = static_cast<float>(gen::text_sample(t, s, false));
      auto record = text_trace(t, trace, 100, radar);
      expected.insert(expected.end(), record.begin(), record.end());
    }
    EXPECT_EQ(read_bytes(out), expected);
  }
}

// One file chosen: one list entry with its trailing blank, Text5 "1", and
// the output name cut from that entry, blank included.
TEST(AsciiTraces, SingleFileSelection) {
  TempDir dir;
  const std::string one = gen::write_ascii_trace(dir.str(), 1, 16);
  auto r = run("show XASCII2SU\ndialog \"" + one + "\"\ninput \"16\"\ninput \"1\"\ninput \"4\"\nclick XASCII2SU.Command1\n"
               "dump XASCII2SU\nclick XASCII2SU.Command3\n");
  expect_in(r.dump("XASCII2SU"), {"\"items\":[" + json(one + " ") + "]"});
  EXPECT_EQ(text_in(r.dump("XASCII2SU"), "Text5"), "1");
  const std::string out = one.substr(0, one.size() - 2) + "SU";  // "rec001.t" + "SU"
  EXPECT_EQ(text_in(r.dump("XASCII2SU"), "Text2"), json(out).substr(1, json(out).size() - 2));
  EXPECT_EQ(read_bytes(out), expected_su(1, 16, 4));
}

// The help boxes, the selection of a matrix, and the panels from the main
// panel's ASCII option, word for word.
TEST(AsciiImport, Transcripts) {
  TempDir dir;
  matrix(dir, 4, 8);
  for (const char* name : {"ascii2su_help", "xascii2su_help", "ascii2su_selection", "ascii_option"})
    EXPECT_EQ(run_script_file(name, dir.str()).lines, expected_transcript(name)) << name;
}

// Empty and garbled inputs: every cell or line that holds no number leaves
// 0 (less the shift) or the sample before; the inputs are not changed.
TEST(AsciiImport, EmptyAndGarbledInputs) {
  TempDir dir;
  std::string garbage(3000, '\0');
  for (size_t i = 0; i < garbage.size(); ++i) garbage[i] = static_cast<char>((i * 7919 + 13) % 256);
  write_text(dir.file("empty.TXT"));
  write_text(dir.file("garbage.TXT"), garbage);
  for (const char* name : {"empty", "garbage"}) {
    SCOPED_TRACE(name);
    const std::string in = dir.file(std::string(name) + ".TXT"), out = dir.file(std::string(name) + ".SU");
    // The selection counts what it can; the traces question comes back
    // until the runner's limit when the count gives none.
    RunnerOptions options;
    options.max_boxes = 30;
    auto selected = run("show ASCII2SU\nset ASCII2SU.Text3 \"16\"\ndialog \"" + in + "\"\nclick ASCII2SU.Command1\n", options);
    EXPECT_NE(selected.exit_code, 2);
    auto r = run("show ASCII2SU\nset ASCII2SU.Text1 \"" + in + "\"\nset ASCII2SU.Text2 \"" + out +
                 "\"\nset ASCII2SU.Text3 \"16\"\nset ASCII2SU.Text4 \"100\"\nset ASCII2SU.Text5 \"3\"\n"
                 "click ASCII2SU.Command3\n");
    EXPECT_EQ(r.exit_code, 0);
    EXPECT_TRUE(r.has({"\"text\":\"Conversion OK! "}));
    const auto bytes = read_bytes(out);
    ASSERT_EQ(bytes.size(), 3 * (240 + 4 * 16u));
    EXPECT_EQ(text_of(in), std::string(name) == "empty" ? "" : garbage);
  }
  // The empty matrix: every cell is empty, so every sample is 0.
  auto empty = read_bytes(dir.file("empty.SU"));
  for (size_t s = 0; s < 16; ++s) EXPECT_EQ(value_at<float>(empty, 2 * (240 + 64) + 240 + 4 * s), 0.0f);

  // One-trace files: an empty one and a garbled one.
  write_text(dir.file("t/rec001.txt"));
  write_text(dir.file("t/rec002.txt"), garbage);
  auto r = run("show XASCII2SU\ndialog \"" + dir.file("t") + "/ rec001.txt rec002.txt\"\ninput \"8\"\ninput \"2\"\n"
               "input \"100\"\nclick XASCII2SU.Command1\nclick XASCII2SU.Command3\n");
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(read_bytes(dir.file("t//rec001.SU")).size(), 2 * (240 + 4 * 8u));
}
