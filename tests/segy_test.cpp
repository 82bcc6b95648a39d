// The SEG-Y import panel (byte-order proposal on public samples, the Test
// and Convert batches with stand-in tools, the bounded marker wait) and the
// trace display drawn on its picture.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>

#include "operations_desk.h"
#include "script_transcript.h"
#include "stand_in_tools.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {

const std::string segy_samples = "/work/shared/data/segy/";

// The runner program with its shell starting batches for real and a real
// clock, the test folder as the program's folder.
RunResult run_real(const std::string& script, const TempDir& dir, const std::string& seconds = "20") {
  write_text(dir.file("run.tfs"), script);
  RunResult result;
  const int status = std::system(("'" + std::string(TRACEFOLD_BIN) +
                                  "/tracefold-run' --shell run --clock real --max-seconds " + seconds +
                                  " --app-dir '" + dir.str() + "' '" + dir.file("run.tfs") + "' >'" +
                                  dir.file("run.jsonl") + "' 2>/dev/null")
                                     .c_str());
  result.exit_code = WEXITSTATUS(status);
  result.lines = split_lines(text_of(dir.file("run.jsonl")));
  return result;
}

void shell_tool(const std::string& path, const std::string& body) {
  fs::create_directories(fs::path(path).parent_path());
  write_text(path, "#!/bin/sh\n" + body);
  fs::permissions(path, fs::perms::owner_all, fs::perm_options::add);
}

// SEGYREAD stand-in: the traces of tape= as they stand (the 3600 header
// bytes dropped). SEGYCLEAN: a copy.
const char* segyread_stand_in = "for a in \"$@\"; do case $a in tape=*) f=${a#tape=};; esac; done\n"
                                "tail -c +3601 \"$f\"\n";

// An SU record: `traces` traces of `ns` samples given by `sample(trace, k)`
// (trace and k from 1), dt 500.
template <typename F>
std::vector<uint8_t> su_record(int traces, int ns, F sample) {
  const size_t size = 240 + 4 * static_cast<size_t>(ns);
  std::vector<uint8_t> su(size * traces, 0);
  for (int i = 0; i < traces; ++i) {
    put_trace_words(su, size * i, 1, i + 1, ns, 500);
    for (int k = 0; k < ns; ++k) put_at<float>(su, size * i + 240 + 4 * static_cast<size_t>(k), sample(i + 1, k + 1));
  }
  return su;
}

std::string selected(const std::string& first, const std::string& second) {
  return "show SEGY\ndialog \"" + segy_samples + " " + first + " " + second + "\"\nclick SEGY.Command1\ndump SEGY\n";
}

std::string picture_of(const RunResult& r) {
  auto lines = r.with({"\"event\":\"picture\""});
  return lines.empty() ? "" : lines.back();
}

std::string shapes_of(const RunResult& r) {
  const std::string p = picture_of(r);
  const size_t at = p.find("\"shapes\":");
  return at == std::string::npos ? "" : p.substr(at + 9, p.size() - at - 10);
}

}  // namespace

// The second file of the selection is looked at, in its own byte order.
TEST(SegyPanel, SelectProposesTheFieldsFromTheSecondRecordsByteOrder) {
  struct Case {
    const char* first;
    const char* second;
    std::vector<std::string> fields;  // Text4 Text12 Text5 Text3 Text6 Text7 Text8 Text11 Text2
  };
  const Case cases[] = {
      // Little-endian: 462 samples, no swap, Text4 and Text12 stay as they were.
      {"Format1msb.sgy", "Format1lsb.sgy", {"1024", "100", "107", "214", "1", "0", "0", "2", segy_samples + "Format1msb.SU"}},
      // Big-endian: read as -12799, swapped to 462 samples of 4000 us.
      {"Format1lsb.sgy", "Format1msb.sgy", {"462", "4000", "107", "214", "1", "0", "0", "2", segy_samples + "Format1lsb.SU"}},
  };
  for (const auto& c : cases) {
    auto r = run(selected(c.first, c.second));
    EXPECT_EQ(texts_in(r.dump("SEGY"), {"Text4", "Text12", "Text5", "Text3", "Text6", "Text7", "Text8", "Text11", "Text2"}),
              c.fields)
        << c.second;
    expect_in(r.lines[2], {"\"title\":\"SEG-Y file selection\"", "\"filter\":\"Record |*.sgy|All files|*.*|\"",
                           "\"file\":\"*.sgy\"", "\"flags\":512", "\"filter_index\":1"});
  }
}

// A first trace counting 0 samples either way asks SEGYREAD for one trace.
TEST(SegyPanel, ZeroSamplesStartTheProbeBatch) {
  TempDir dir;
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("session su_tools_folder \"" + dir.str() + "/tools\"\nshow SEGY\ndialog \"" + segy_samples +
                   "small.sgy\"\nclick SEGY.Command1\ndump SEGY\n",
               options);
  EXPECT_EQ(text_of(dir.file("tmp.bat")), dir.str() + "/tools/segyread tape=" + segy_samples + "small.sgy >" +
                                              dir.str() + "/tmp.su endian=0 conv=1 over=0 trmax=1 ns= 0\r\n");
  EXPECT_TRUE(r.has({"\"event\":\"msgbox\"", json(segy_samples + "small.sgy Bytes are swapped, endian must be set at zero"),
                     "\"icon\":\"information\""}));
  // No tmp.su came: 0 samples, traces of 240 bytes.
  EXPECT_EQ(texts_in(r.dump("SEGY"), {"Text4", "Text12", "Text5", "Text6", "Text7", "Text8"}),
            (std::vector<std::string>{"0", "0", "46", "0", "1", "0"}));
}

TEST(SegyPanel, HelpBoxAndUnloadDeletesTheTemporaryFiles) {
  TempDir dir;
  write_text(dir.file("tmp.su"), "x");
  write_text(dir.file("tmp.bat"), "x");
  write_text(dir.file("tempo.su"), "x");
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("show SEGY\nclick SEGY.Command6\nclose SEGY\n", options);
  EXPECT_TRUE(r.has({"SEG-Y to SEISMIC UNIX file conversion\\r\\nWith this module you can convert many SEG-Y field record  \\r\\n",
                     "SU file size = nb_traces *( 240 + (number_of_sample_per_trace * 4))\\r\\n", "\"icon\":\"information\""}));
  EXPECT_FALSE(fs::exists(dir.file("tmp.su")));
  EXPECT_FALSE(fs::exists(dir.file("tmp.bat")));
  EXPECT_TRUE(fs::exists(dir.file("tempo.su")));
}

// Test: SEGYREAD of the first record into conv_test.su, then the drawing.
TEST(SegyPanel, TestConvertsTheFirstRecordAndDrawsIt) {
  TempDir dir;
  shell_tool(dir.file("bin/SEGYREAD"), segyread_stand_in);
  auto r = run_real("show SEGY\ndialog \"" + segy_samples + " Format1lsb.sgy Format5lsb.sgy\"\nclick SEGY.Command1\n"
                    "set SEGY.Text5 3\nclick SEGY.Command5\ndump-picture SEGY.ecran\n",
                    dir);
  EXPECT_EQ(r.exit_code, 0);
  EXPECT_EQ(text_of(dir.file("convert.bat")), dir.str() + "/bin/SEGYREAD tape=" + segy_samples + "Format1lsb.sgy >" +
                                                  dir.str() + "/conv_test.su conv=1 over=0 endian=0\r\npause\r\n");
  EXPECT_EQ(fs::file_size(dir.file("conv_test.su")), fs::file_size(segy_samples + "Format1lsb.sgy") - 3600);
  // Three traces: a wiggle and an end line each, and lobes between.
  const std::string shapes = shapes_of(r);
  size_t polylines = 0;
  for (size_t at = shapes.find("polyline"); at != std::string::npos; at = shapes.find("polyline", at + 1)) ++polylines;
  EXPECT_EQ(polylines, 6u);
  EXPECT_NE(shapes.find("polygon"), std::string::npos);
}

// Two records through SEGYREAD and SEGYCLEAN stand-ins, joined by add.bat.
// Each batch runs to its end as it is started: in the field the next
// record's batch and the join overlap, and nothing guards tempo.su.
TEST(SegyPanel, ConvertJoinsTwoRecordsAndReportsTheSize) {
  TempDir dir;
  shell_tool(dir.file("SEGYREAD"), segyread_stand_in);
  shell_tool(dir.file("SEGYCLEAN"), "exec cat\n");
  const std::string out = dir.file("line.su");
  RunnerOptions options;
  options.app_dir = dir.str();
  Desk<SyncBatchPlatform> desk(options);
  Panel& segy = desk.show("SEGY");
  desk.dialog(segy_samples + " Format1lsb.sgy Format5lsb.sgy");
  segy.click("Command1");
  segy.set_text("Text2", out);
  segy.set_text("Text4", "0");
  segy.click("Command2");
  const auto first = read_bytes(segy_samples + "Format1lsb.sgy"), second = read_bytes(segy_samples + "Format5lsb.sgy");
  std::vector<uint8_t> joined(first.begin() + 3600, first.end());
  joined.insert(joined.end(), second.begin() + 3600, second.end());
  EXPECT_EQ(read_bytes(out), joined);
  std::string done = titled_box(out + " has been recorded OK size: " + std::to_string(joined.size()),
                                "Brenholt File converter", "information");
  done.insert(done.size() - 1, ",\"autoclose_ms\":3000");
  EXPECT_EQ(desk.messages(), std::vector<std::string>{done});
  EXPECT_EQ(text_of(dir.file("convert.bat")),
            dir.str() + "/SEGYREAD tape=" + segy_samples + "Format5lsb.sgy conv=1 over=0 endian=0 trmin= 1 trmax= 214 | " +
                dir.str() + "/SEGYCLEAN >" + dir.str() + "/tempo.su\r\nCopy " + dir.str() + "/Fin.tmp " + dir.str() +
                "/2.tmp\r\n");
  EXPECT_EQ(text_of(dir.file("add.bat")), "copy/b " + out + "+" + dir.str() + "/tempo.su " + out + "\r\ndel " +
                                              dir.str() + "/2.tmp\r\n");
  EXPECT_FALSE(fs::exists(dir.file("2.tmp")));
  EXPECT_TRUE(fs::exists(dir.file("tempo.su")));
}

// A SEGYREAD that hangs: the marker never comes, and the run's time limit
// ends the wait.
TEST(SegyPanel, HangingToolMarkerWaitEndsAtTheTimeLimit) {
  TempDir dir;
  shell_tool(dir.file("SEGYREAD"), "exec sleep 5\n");
  shell_tool(dir.file("SEGYCLEAN"), "exec cat\n");
  const auto started = std::chrono::steady_clock::now();
  auto r = run_real("show SEGY\ndialog \"" + segy_samples + " Format1lsb.sgy Format5lsb.sgy\"\nclick SEGY.Command1\n"
                    "set SEGY.Text2 \"" + dir.file("o.su") + "\"\nclick SEGY.Command2\n",
                    dir, "2");
  EXPECT_EQ(r.exit_code, 3);
  EXPECT_TRUE(r.has({"\"event\":\"aborted\"", "the run went past its time limit"}));
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count(), 10);
}

TEST(SegyPanel, OneRecordConvertsDirectlyWithSegyclean) {
  TempDir dir;
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("show SEGY\ndialog \"" + segy_samples + "Format1lsb.sgy\"\nclick SEGY.Command1\nset SEGY.Text1 0\n"
               "set SEGY.Text2 \"" + dir.file("o.su") + "\"\nclick SEGY.Command2\n",
               options);
  EXPECT_EQ(text_of(dir.file("convert.bat")), dir.str() + "/bin/SEGYREAD tape=" + segy_samples +
                                                  "Format1lsb.sgy conv=1 over=0 endian=0 ns=1024 | " + dir.str() +
                                                  "/SEGYCLEAN >" + dir.file("o.su") + "\r\npause\r\n");
  EXPECT_TRUE(r.has({box_line(" Conversion OK", "information")}));
}

// The drawing of small records on a picture of one pixel a unit across and
// a sample down, worked out by hand from the drawing steps.
TEST(TraceDisplay, LobesWigglesAndEndLinesInPixels) {
  TempDir dir;
  const std::vector<std::vector<float>> traces = {{0, 5, -5, 0}, {-1, -2, -1, -3}, {1, 2, 0, 4}};
  write_bytes(dir.file("conv_test.su"), su_record(3, 4, [&](int i, int k) { return traces[i - 1][k - 1]; }));
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("show SEGY\npicture-size SEGY.ecran 60 3\nset SEGY.Text5 3\nset SEGY.Text13 2.0\n"
               "dump-picture SEGY.ecran\ndump SEGY\n",
               options);
  expect_in(picture_of(r), {"\"width\":60,\"height\":3,\"scale_left\":20,\"scale_top\":1,\"scale_width\":60,"
                            "\"scale_height\":3"});
  EXPECT_EQ(shapes_of(r),
            // Trace 1, F = 2: one lobe, closed on the centre.
            "[{\"kind\":\"polygon\",\"points\":[[10,2],[30,2],[10,3]]},"
            "{\"kind\":\"polyline\",\"points\":[[10,1],[30,2],[-10,3],[10,4]]},"
            "{\"kind\":\"polyline\",\"points\":[[10,0]]},"
            // Trace 2, all negative: the factor of trace 1.
            "{\"kind\":\"polyline\",\"points\":[[26,1],[22,2],[26,3],[18,4]]},"
            "{\"kind\":\"polyline\",\"points\":[[30,0]]},"
            // Trace 3, F = 2.5: positive from the first sample (its centre
            // point twice), and a lobe open at the end drawn as a line to
            // the top.
            "{\"kind\":\"polygon\",\"points\":[[50,1],[50,1],[55,1],[60,2],[50,3]]},"
            "{\"kind\":\"polyline\",\"points\":[[55,1],[60,2],[50,3],[70,4]]},"
            "{\"kind\":\"polyline\",\"points\":[[50,4],[70,4],[50,0]]}]");
  // Tab 1 is brought to the front.
  EXPECT_NE(control_in_dump(r.dump("SEGY"), "SSTab1").find("\"value\":1"), std::string::npos);
}

TEST(TraceDisplay, EdgeCases) {
  struct Case {
    const char* name;
    std::vector<float> first;
    const char* text5;
    const char* text13;
    std::string shapes;
  };
  const Case cases[] = {
      {"no trace", {1, 2, 3, 4}, "0", "2", "[]"},
      {"zero first trace", {0, 0, 0, 0}, "1", "2",
       "[{\"kind\":\"polyline\",\"points\":[[10,1],[10,2],[10,3],[10,4]]},{\"kind\":\"polyline\",\"points\":[[10,0]]}]"},
      {"scale 0", {1, 2, 3, 4}, "1", "0",
       "[{\"kind\":\"polyline\",\"points\":[[10,1],[10,2],[10,3],[10,4]]},{\"kind\":\"polyline\",\"points\":[[10,0]]}]"},
  };
  for (const auto& c : cases) {
    TempDir dir;
    write_bytes(dir.file("conv_test.su"), su_record(1, 4, [&](int, int k) { return c.first[k - 1]; }));
    RunnerOptions options;
    options.app_dir = dir.str();
    // One trace on 20 pixels: one pixel a unit.
    auto r = run(std::string("show SEGY\npicture-size SEGY.ecran 20 3\nset SEGY.Text5 ") + c.text5 +
                     "\nset SEGY.Text13 \"" + c.text13 + " \"\ndump-picture SEGY.ecran\n",
                 options);
    EXPECT_EQ(shapes_of(r), c.shapes) << c.name;
  }
}

// After a drawing the picture shows the cross pointer.
TEST(TraceDisplay, MoveGivesTimeAndTrace) {
  TempDir dir;
  write_bytes(dir.file("conv_test.su"), su_record(2, 4, [](int, int k) { return float(k); }));
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("show SEGY\nset SEGY.Text5 2\nset SEGY.Text13 3\nmove SEGY.ecran 45 500\ndump SEGY\n", options);
  expect_in(control_in_dump(r.dump("SEGY"), "ecran"), {"\"tooltip\":\" 250 ms Trace= 2\"", "\"pointer\":2"});
}

// A 24-trace record of 1000 samples on 480 x 360 pixels: every lobe is
// closed on its lane centre, every trace has its wiggle of 1000 points and
// its end line ending at the top of its centre.
TEST(TraceDisplay, TwentyFourTracesLobesCloseOnTheirLaneCentres) {
  TempDir dir;
  write_bytes(dir.file("conv_test.su"),
              su_record(24, 1000, [](int i, int k) { return float(std::sin(k * 0.05 + i) * (i == 5 ? -1 - std::sin(k * 0.05 + i) : 1)); }));
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("show SEGY\nset SEGY.Text5 24\nset SEGY.Text13 3\ndump-picture SEGY.ecran\n", options);
  const std::string shapes = shapes_of(r);
  int lane = 0, polygons = 0;
  size_t at = 0;
  while ((at = shapes.find("{\"kind\":\"", at)) != std::string::npos) {
    const bool polygon = shapes.compare(at + 9, 7, "polygon") == 0;
    const size_t points = shapes.find("[[", at), end = shapes.find("]]", at);
    const std::string list = shapes.substr(points + 1, end - points);
    // Centre of lane `lane` in pixels: (lane * 20 + 10) units of 480 / 480.
    const std::string centre = "[" + std::to_string(lane * 20 + 10) + ",";
    if (polygon) {
      ++polygons;
      EXPECT_EQ(list.rfind(centre, 0), 0u) << list.substr(0, 40);
      // Closed on the centre; a one-point lobe is the one a trace begins
      // when the trace before ended inside a lobe.
      EXPECT_EQ(list.substr(list.rfind('[')).rfind(centre, 0), 0u) << list;
    } else if (list.find("],[") != std::string::npos && std::count(list.begin(), list.end(), '[') == 1000) {
      // the wiggle
    } else {
      EXPECT_NE(list.find(centre + "0]"), std::string::npos) << lane;
      ++lane;
    }
    at = end;
  }
  EXPECT_EQ(lane, 24);
  EXPECT_GT(polygons, 24);
}

// 96 traces of 4000 samples on 800 x 600 pixels in under 100 ms.
TEST(TraceDisplay, NinetySixTracesOfFourThousandSamplesDrawFast) {
  TempDir dir;
  write_bytes(dir.file("conv_test.su"), su_record(96, 4000, [](int i, int k) { return float(std::sin(k * 0.03 + i)); }));
  RunnerOptions options;
  options.app_dir = dir.str();
  const std::string show = "show SEGY\npicture-size SEGY.ecran 800 600\nset SEGY.Text5 96\n";
  const auto before = std::chrono::steady_clock::now();
  run(show, options);
  const double setup = std::chrono::duration<double>(std::chrono::steady_clock::now() - before).count();
  const auto start = std::chrono::steady_clock::now();
  auto r = run(show + "set SEGY.Text13 3\n", options);
  const double drawn = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  EXPECT_LT(drawn - setup, 0.1);
  EXPECT_EQ(r.exit_code, 0);
}

// The saved picture: a PNG of the picture's size, with grey lobes.
TEST(TraceDisplay, SavePictureWritesThePngOfTheDrawing) {
  TempDir dir;
  write_bytes(dir.file("conv_test.su"), su_record(4, 200, [](int i, int k) { return float(std::sin(k * 0.1 + i)); }));
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("show SEGY\npicture-size SEGY.ecran 80 50\nset SEGY.Text5 4\nset SEGY.Text13 3\nsave-picture SEGY.ecran \"" +
                   dir.file("ecran.png") + "\"\n",
               options);
  EXPECT_TRUE(r.has({"\"event\":\"save-picture\"", "\"saved\":true"}));
  const auto png = read_bytes(dir.file("ecran.png"));
  ASSERT_GT(png.size(), 33u);
  EXPECT_EQ(std::vector<uint8_t>(png.begin(), png.begin() + 8),
            (std::vector<uint8_t>{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'}));
  EXPECT_EQ(std::vector<uint8_t>(png.begin() + 16, png.begin() + 24), (std::vector<uint8_t>{0, 0, 0, 80, 0, 0, 0, 50}));
  const std::vector<uint8_t> grey{0x80, 0x80, 0x80}, black{0, 0, 0};
  EXPECT_NE(std::search(png.begin(), png.end(), grey.begin(), grey.end()), png.end());
  EXPECT_NE(std::search(png.begin(), png.end(), black.begin(), black.end()), png.end());
}

// The quick conversion cuts the 3600 header bytes into NAME.su and leaves
// the byte swap to suswapfiles, which reads the original.
TEST(SegyPanel, QuickConversionStripsTheHeadersAndComposesTheSwap) {
  TempDir dir;
  const auto segy = read_bytes(segy_samples + "small.sgy");
  write_bytes(dir.file("rec.sgy"), segy);
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("session su_tools_folder \"T\"\nshow SEGY\ndialog \"" + dir.file("rec.sgy") + "\"\nclick SEGY.Command3\n",
               options);
  EXPECT_EQ(read_bytes(dir.file("rec.su")), std::vector<uint8_t>(segy.begin() + 3600, segy.end()));
  EXPECT_EQ(text_of(dir.file("convert.bat")),
            "T/vedra/suswapfiles <" + dir.file("rec.sgy") + " >" + dir.file("rec.su") + "\r\n");
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}),
            (std::vector<std::string>{
                box_line(" This module remove the SEGY File Header (3200 + 400 bytes)  and swap all bytes", "information"),
                box_line(" Conversion OK")}));
  EXPECT_TRUE(r.has({"\"title\":\"File to be splitted\"", "\"filter\":\"All files|*.*|\"", "\"file\":\"*.*\""}));
}

TEST(SegyPanel, TestAndConvertFromTheMainPanelTranscript) {
  TempDir dir;
  RunnerOptions options;
  options.app_dir = dir.str();
  expect_transcript("segy_test_and_convert", run_script_file("segy_test_and_convert", dir.str(), options));
  // Text4 holds the swapped count of the big-endian record; Text3 the
  // traces of both records.
  EXPECT_EQ(text_of(dir.file("convert.bat")), dir.str() + "/bin/SEGYREAD tape=" + segy_samples +
                                                  "Format1lsb.sgy conv=1 over=0 endian=0 ns=462 trmin= 1 trmax= 214 | " +
                                                  dir.str() + "/SEGYCLEAN >" + dir.file("line.su") + "\r\npause\r\n");
}

// Garbled and absurd records: no crash, the input untouched.
TEST(SegyPanel, ShortAndAbsurdRecordsAreProposedWithoutHarm) {
  struct Case {
    const char* name;
    std::vector<uint8_t> bytes;
    std::vector<std::string> fields;  // Text4 Text5 Text8
  };
  std::vector<uint8_t> big_count(3720, 0);
  put_at<int16_t>(big_count, 3714, 10000);  // the 16-bit record size overflows
  put_at<int16_t>(big_count, 3716, 1000);
  std::vector<uint8_t> short_file(100, 7);
  const Case cases[] = {
      {"16-bit overflow", big_count, {"1024", "0", "0"}},
      {"short file", short_file, {"0", "-15", "0"}},
      {"empty file", {}, {"0", "-15", "0"}},
  };
  for (const auto& c : cases) {
    TempDir dir;
    write_bytes(dir.file("rec.sgy"), c.bytes);
    RunnerOptions options;
    options.app_dir = dir.str();
    auto r = run("show SEGY\ndialog \"" + dir.file("rec.sgy") + "\"\nclick SEGY.Command1\ndump SEGY\n", options);
    EXPECT_EQ(r.exit_code, 0) << c.name;
    EXPECT_EQ(texts_in(r.dump("SEGY"), {"Text4", "Text5", "Text8"}), c.fields) << c.name;
    EXPECT_EQ(read_bytes(dir.file("rec.sgy")), c.bytes) << c.name;
  }
}

// A garbled conv_test.su: 32767 samples announced, 300 bytes there. The
// wiggle stops at the end of its point array.
TEST(TraceDisplay, GarbledFileDrawsWithinTheArrays) {
  TempDir dir;
  std::vector<uint8_t> su(300, 0);
  put_at<int16_t>(su, 114, 32767);
  put_at<float>(su, 240, 1.0f);
  write_bytes(dir.file("conv_test.su"), su);
  RunnerOptions options;
  options.app_dir = dir.str();
  auto r = run("show SEGY\nset SEGY.Text5 2\nset SEGY.Text13 1\ndump-picture SEGY.ecran\n", options);
  EXPECT_EQ(r.exit_code, 0);
  const std::string shapes = shapes_of(r);
  const size_t first_line = shapes.find("polyline");
  ASSERT_NE(first_line, std::string::npos);
  const std::string wiggle = shapes.substr(first_line, shapes.find("]]}", first_line) - first_line);
  EXPECT_EQ(std::count(wiggle.begin(), wiggle.end(), '['), 1 + 10000);
}
