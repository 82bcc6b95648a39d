// SU to text: one file per channel, columns of traces, the CDP / time /
// amplitude list, first-break files and the Rayfract line file. Expected
// texts are built here from the layouts: printf's exponent form for
// "0.00000000E+00", columns of 14 counted by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "exports/text_formats.h"
#include "su_builder.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {

std::string sci(float v) {
  char text[32];
  std::snprintf(text, sizeof text, "%.8E", static_cast<double>(v));
  return text;
}

// Items at columns 0, 14, 28 ..., each already in its printed form.
std::string columns(std::initializer_list<std::string> items) {
  std::string line;
  bool first = true;
  for (const auto& item : items) {
    if (!first) line.resize((line.size() + 13) / 14 * 14, ' ');
    first = false;
    line += item;
  }
  return line + "\r\n";
}

// The program with its main panel, the SU file `line.su` in a folder.
struct Exports : Recording<> {
  TempDir dir;
  std::string su;
  Exports() {
    app.panels.show("Utility");
    out.str("");
    su = dir.file("line.su");
  }
  void write(const std::vector<SuTrace>& traces, int16_t ns, int16_t dt) { write_bytes(su, su_bytes(traces, ns, dt)); }
  void answer_dialog(const std::string& text) { platform.dialog_answers.push_back(text); }
  void answer_inputs(std::initializer_list<const char*> answers) {
    for (const char* a : answers) platform.input_answers.push_back(std::string(a));
  }
  Panel& main_panel() { return *app.panels.loaded("Utility"); }
  std::string last_box() const {
    auto b = boxes();
    return b.empty() ? "" : b.back();
  }
};

}  // namespace

TEST(TextFormats, ExponentAndFixedForms) {
  const std::pair<float, const char*> exponent[] = {
      {0.0f, "0.00000000E+00"}, {1.5f, "1.50000000E+00"}, {-0.1f, "-1.00000001E-01"}, {12345.25f, "1.23452500E+04"},
      {3e-7f, "3.00000011E-07"}};
  for (const auto& [value, text] : exponent) EXPECT_EQ(exponent_form(value), text) << value;
  const struct {
    double value;
    int decimals;
    const char* text;
  } fixed[] = {{153 / 10000.0, 4, "0.0153"}, {153 / 10.0, 1, "15.3"}, {-1, 4, "-1.0000"}, {0, 4, "0.0000"},
               {12345 / 100.0, 1, "123.5"},  {12335 / 100.0, 1, "123.4"}, {12, 1, "12.0"}, {99.96, 1, "100.0"},
               {3, 0, "3"},                  {0.4, 0, "0"},             {-250, 1, "-250.0"}, {0.0203, 4, "0.0203"},
               {-0.01, 1, "0.0"}};
  for (const auto& c : fixed) EXPECT_EQ(fixed_form(c.value, c.decimals), c.text) << c.value;
}

TEST(Su2Ascii, ReversedRangeExportsTracesFiveToTenInColumns) {
  Exports e;
  auto traces = line_of(1, 12, 3);
  e.write(traces, 3, 500);
  e.platform.replies = {Answer::yes};
  e.answer_dialog(e.su);
  e.answer_inputs({"10", "5"});
  e.app.run_routine("su2Ascii");
  std::string expected;
  for (int i = 0; i < 3; ++i) {
    for (int k = 5; k <= 10; ++k) expected += sci(traces[static_cast<size_t>(k - 1)].samples[static_cast<size_t>(i)]) + ",";
    expected += "\r\n";
  }
  EXPECT_EQ(text_of(e.dir.file("line.txt")), expected);
  EXPECT_EQ(e.app.state.first_trace, 5);
  EXPECT_EQ(e.app.state.last_trace, 10);
  EXPECT_EQ(e.last_box(), box_line(e.dir.file("line.txt") + " has been recorded", "information"));
}

TEST(Su2Ascii, RangeIsClampedToTheFileAndNoEndsIt) {
  Exports e;
  auto traces = line_of(1, 3, 2);
  e.write(traces, 2, 500);
  write_text(e.dir.file("line.txt"), std::string(500, 'x'));  // an old export goes first
  e.platform.replies = {Answer::yes};
  e.answer_dialog(e.su);
  e.answer_inputs({"0", "99"});
  e.app.run_routine("su2Ascii");
  EXPECT_EQ(text_of(e.dir.file("line.txt")),
            sci(0.25f) + "," + sci(10.25f) + "," + sci(20.25f) + ",\r\n" + sci(1.25f) + "," + sci(11.25f) + "," +
                sci(21.25f) + ",\r\n");
  // No: nothing more is asked
  e.out.str("");
  e.platform.replies = {Answer::no};
  e.app.run_routine("su2Ascii");
  EXPECT_EQ(e.lines().size(), 1u);
}

// A last trace cut by the end of the file takes the rest of its samples from
// the trace read before it.
TEST(Su2Ascii, CutLastTraceKeepsTheSamplesReadBefore) {
  Exports e;
  auto bytes = su_bytes(line_of(1, 2, 4), 4, 500);
  bytes.resize(bytes.size() - 8);  // two samples short: still two traces
  write_bytes(e.su, bytes);
  e.platform.replies = {Answer::yes};
  e.answer_dialog(e.su);
  e.answer_inputs({"1", "2"});
  e.app.run_routine("su2Ascii");
  EXPECT_EQ(split_lines(text_of(e.dir.file("line.txt"))).back(), sci(3.25f) + "," + sci(3.25f) + ",\r");
}

TEST(Convert2XYZ, CdpTimeAndAmplitudeInColumns) {
  Exports e;
  auto traces = line_of(1, 2, 2);
  traces[0].cdp = 7;
  traces[1].cdp = -3;
  traces[1].samples = {-2.5f, 1e-9f};
  e.write(traces, 2, 1000);
  e.platform.replies = {Answer::yes};
  e.answer_dialog(e.su);
  e.answer_inputs({"1", "2"});
  e.app.run_routine("Convert_2_X_Y_Z");
  // The first sample lies at -1 ms, not at 0.
  EXPECT_EQ(text_of(e.dir.file("line.txt")), columns({" 7 ", "-1 ", " .25 "}) + columns({" 7 ", "-2 ", " 1.25 "}) +
                                                  columns({"-3 ", "-1 ", "-2.5 "}) + columns({"-3 ", "-2 ", " 1E-09 "}));
  EXPECT_EQ(e.boxes().front(),
            box_line("Use this module to export to a text file TIME(Ms) / CDP / AMPLITUDE . Continue ? This file can "
                     "be edited using any spread sheet ",
                     "none", "yesno", "yes"));
}

TEST(Convert2XYZ, FractionalIntervalPrintsItsTime) {
  Exports e;
  e.write(line_of(1, 1, 1), 1, 250);
  e.platform.replies = {Answer::yes};
  e.answer_dialog(e.su);
  e.app.run_routine("Convert_2_X_Y_Z");  // the input boxes take their defaults
  EXPECT_EQ(text_of(e.dir.file("line.txt")), columns({" 0 ", "-.25 ", " .25 "}));
}

// First channel 5, last 6: the files end in 01 and 02, whichever channels.
TEST(Su2Ascii2, OneFilePerChannelNumberedFromOne) {
  Exports e;
  auto traces = line_of(1, 8, 3);
  e.write(traces, 3, 500);
  e.answer_dialog(e.su);
  e.answer_inputs({"5", "6"});
  e.app.run_routine("su2ascii2");
  for (int c = 5; c <= 6; ++c) {
    std::string expected;
    for (float v : traces[static_cast<size_t>(c - 1)].samples) expected += sci(v) + "\r\n";
    EXPECT_EQ(text_of(e.dir.file("line.0" + std::to_string(c - 4))), expected);
  }
  EXPECT_FALSE(fs::exists(e.dir.file("line.03")));
  auto boxes = e.boxes();
  ASSERT_EQ(boxes.size(), 4u);
  EXPECT_EQ(boxes[0], box_line(" This module writes one file per channel in ASCII format of the current data  ", "none",
                               "okcancel"));
  expect_in(boxes[2], {"\"prompt\":\"Last channel to print\"", "\"default\":\"8\""});
  EXPECT_EQ(boxes[3], box_line("Conversion OK"));
}

// Record 1 goes to file 1, record 2 replaces it there, record 3 goes to
// file 2, and file 3 is left empty.
TEST(FirstBreakFiles, FileKHoldsRecordKPlusOneAndTheLastIsEmpty) {
  for (const auto& [mode, first_pick] : {std::pair{"1", "0.0153"}, std::pair{"2", "15.3"}}) {
    Exports e;
    auto traces = line_of(3, 4, 2);
    for (size_t i = 0; i < traces.size(); ++i) traces[i].fbp = static_cast<int16_t>(i == 4 ? 153 : 100 * i);
    e.write(traces, 2, 500);
    e.app.state.data_folder = e.dir.str() + "/";
    e.answer_dialog(e.su);
    e.answer_inputs({mode});
    e.main_panel().click("Commandp2");
    const bool seconds = std::string(mode) == "1";
    auto pick = [&](int fbp) { return fixed_form(seconds ? fbp / 10000.0 : fbp / 10.0, seconds ? 4 : 1); };
    EXPECT_EQ(text_of(e.dir.file("line1.FBP")), columns({" 1 ", first_pick}) + columns({" 2 ", pick(500)}) +
                                                    columns({" 3 ", pick(600)}) + columns({" 4 ", pick(700)}));
    EXPECT_EQ(text_of(e.dir.file("line2.FBP")), columns({" 1 ", pick(800)}) + columns({" 2 ", pick(900)}) +
                                                    columns({" 3 ", pick(1000)}) + columns({" 4 ", pick(1100)}));
    EXPECT_TRUE(fs::exists(e.dir.file("line3.FBP")));
    EXPECT_EQ(text_of(e.dir.file("line3.FBP")), "");
    EXPECT_FALSE(fs::exists(e.dir.file("line4.FBP")));
    EXPECT_EQ(e.main_panel().text("Text1"), "");
    expect_in(e.out.str(), {"\"title\":\"SU File selection\",\"filter\":\"File SU SU |*.SU|\",\"file\":\"*.SU\",\"dir\":" +
                                json(e.dir.str() + "/"),
                            "\"prompt\":\"Input 1 for time in seconds, 2 for FBP time in milliseconds, 3 for exit\"",
                            box_line("FBP files are recorded", "information")});
  }
}

TEST(FirstBreakFiles, ThreeEndsAndACancelWritesNothing) {
  Exports e;
  e.write(line_of(1, 4, 2), 2, 500);
  e.answer_dialog(e.su);
  e.answer_inputs({"3"});
  e.main_panel().click("Commandp2");
  EXPECT_FALSE(fs::exists(e.dir.file("line1.FBP")));
  // a cancelled dialog: the start name is taken and nothing is read
  e.main_panel().click("Commandp2");
  EXPECT_EQ(e.last_box(), box_line("FBP files are recorded", "information"));
  EXPECT_FALSE(fs::exists("*.SU"));
  EXPECT_FALSE(fs::exists("*1.FBP"));
}

namespace {
// Three shots of 24 channels, stations 0..23 a shot, the shot at station
// 2 * shot; picks 100 + channel tenths of ms; scalel -2.
std::vector<SuTrace> rayfract_line() {
  auto traces = line_of(3, 24, 2);
  for (auto& t : traces) {
    t.fldr += 100;
    t.shot_station = 2 * (t.fldr - 100);
    t.receiver_station = t.tracf - 1;
    t.fbp = static_cast<int16_t>(100 + t.tracf);
    t.gelev = 12345;
    t.selev = -250;
    t.scalel = -2;
  }
  traces[3].fbp = 0;    // no pick
  traces[4].trid = 2;   // dead trace
  traces[4].fbp = 153;
  traces[5].fbp = 153;
  return traces;
}

std::string asc_line(const std::string& shot, int32_t station, int32_t receiver, const std::string& time) {
  return shot + ";" + std::to_string(station) + ".0;" + std::to_string(receiver) + ".0;" + time + ";123.5;-2.5\r\n";
}
}  // namespace

TEST(Rayfract, ThreeShotsOf24ChannelsReportTheirCounts) {
  Exports e;
  auto traces = rayfract_line();
  e.write(traces, 2, 500);
  e.answer_dialog(e.su);
  e.answer_inputs({"1", "5", "24"});
  e.platform.replies = {Answer::no};  // keep fldr
  e.main_panel().click("Commandp3");

  std::string expected =
      "Shot Nr.;Shot Station #;Receiver Station #;First Break (seconds),Receiver elevation #, shot elevation #\r\n";
  for (size_t i = 0; i < traces.size(); ++i) {
    const auto& t = traces[i];
    std::string time = fixed_form(t.fbp / 10000.0 + 0.005, 4);
    if (t.fbp <= 0 || t.trid > 1) time = "-1.0000";
    if (t.shot_station == t.receiver_station) time = "0.0000";
    expected += asc_line(std::to_string(t.fldr), t.shot_station, t.receiver_station, time);
  }
  EXPECT_EQ(text_of(e.dir.file("line.ASC")), expected);
  // the pick of 0.0153 s with 5 ms added, and the dead trace marked in the SU file
  expect_in(expected, {"101;2.0;5.0;0.0203;123.5;-2.5\r\n", "101;2.0;4.0;-1.0000;", "101;2.0;3.0;-1.0000;",
                       "101;2.0;2.0;0.0000;"});
  auto su = read_bytes(e.su);
  EXPECT_EQ(value_at<int16_t>(su, 4 * (240 + 8) + at::fbp), -1);
  traces[4].fbp = -1;
  EXPECT_EQ(su, su_bytes(traces, 2, 500));
  EXPECT_EQ(e.app.state.editor_file, e.dir.file("line.ASC"));
  auto lines = e.lines();
  EXPECT_EQ(lines[lines.size() - 2], "{\"event\":\"show\",\"panel\":\"editor\"}");
  EXPECT_EQ(lines.back(), box_line("Check your file line number0 0; Records=  3 ; channel%=  24", "information"));
}

TEST(Rayfract, RenumberedEverySecondShotIntoAnotherName) {
  Exports e;
  e.write(rayfract_line(), 2, 500);
  write_text(e.dir.file("line.ASC"), "old");
  e.answer_dialog(e.su);
  e.platform.replies = {Answer::no, Answer::yes};  // keep the old file; renumber
  e.answer_inputs({e.dir.file("line2.ASC").c_str(), "0", "2", "", "24"});  // step 0 is asked again
  e.main_panel().click("Commandp3");
  EXPECT_EQ(text_of(e.dir.file("line.ASC")), "old");
  auto asc = split_lines(text_of(e.dir.file("line2.ASC")));
  ASSERT_EQ(asc.size(), 1u + 2 * 24);
  EXPECT_EQ(asc[1], "1;2.0;0.0;0.0101;123.5;-2.5\r");
  EXPECT_EQ(asc[25].substr(0, 8), "2;6.0;0.");  // the third shot, numbered 2
  expect_in(e.out.str(), {"\"prompt\":\"Enter the new ASC file name \",\"title\":\"Tracefold 1.0\",\"default\":" +
                              json(e.dir.file("line2.ASC")),
                          "\"prompt\":\"Enter optionaly a value (ms) to add to all FBP values \"",
                          box_line(e.dir.file("line.ASC") + " already exists, overwrite ?", "none", "yesno", "no")});
  // r leaves the loop at 4: int(4 / 2) = 2 shots
  EXPECT_EQ(e.lines().back(), box_line("Check your file line number0 0; Records=  2 ; channel%=  24", "information"));
}

TEST(Rayfract, UnknownScaleKeepsTheElevationFieldsEmpty) {
  Exports e;
  auto traces = line_of(1, 3, 2);
  for (auto& t : traces) t.scalel = 5, t.shot_station = 9, t.receiver_station = t.tracf;
  e.write(traces, 2, 500);
  e.answer_dialog(e.su);
  e.answer_inputs({"1", "", "3"});
  e.main_panel().click("Commandp3");
  EXPECT_EQ(split_lines(text_of(e.dir.file("line.ASC")))[1], "1;9.0;1.0;-1.0000;;\r");
}

TEST(Rayfract, ExitAndEmptyRuns) {
  {
    Exports e;
    e.write(line_of(1, 3, 2), 2, 500);
    e.answer_dialog(e.su);
    e.answer_inputs({"99"});
    e.main_panel().click("Commandp3");
    EXPECT_FALSE(fs::exists(e.dir.file("line.ASC")));
  }
  {
    // No record structure and nothing exported: the first text
    Exports e;
    write_bytes(e.su, {1, 2, 3});
    e.answer_dialog(e.su);
    e.answer_inputs({"1", "", "4"});
    e.main_panel().click("Commandp3");
    EXPECT_EQ(e.lines().back(), box_line("ASC file for export to Rayfract have been written", "information"));
  }
}

// The fast forms of the samples give number_text's text and printf's
// "%.8E" for every kind of single: whole, fractional, tiny, huge, negative,
// at each form's limits.
TEST(TextFormats, SamplesPrintAsNumberTextAndPrintfDo) {
  std::vector<float> values{0.0f, -0.0f, 1.0f, -1.0f, 0.5f, 1e-4f, 9.9999e-5f, 1234567.0f, 9999999.0f, 12345678.0f,
                            1e7f, 3.4e38f, 1.4e-45f, -2.5e-9f, 0.1f, 123.456f, 1e-9f, 65536.0f, 0.00012345f};
  for (uint32_t exponent = 0; exponent < 255; ++exponent)  // every power of two, denormals too
    for (uint32_t mantissa : {0u, 1u, 0x400000u, 0x7FFFFFu, 0x1A2B3Cu}) {
      const uint32_t pattern = exponent << 23 | mantissa;
      float v;
      std::memcpy(&v, &pattern, sizeof v);
      values.push_back(v);
    }
  uint32_t bits = 0x12345678;
  for (int i = 0; i < 20000; ++i) {
    bits = bits * 1664525u + 1013904223u;
    float v;
    std::memcpy(&v, &bits, sizeof v);
    if (std::isfinite(v)) values.push_back(v);
    values.push_back(static_cast<float>(static_cast<int32_t>(bits) % 100000) / 64.0f);
  }
  for (float v : values) {
    std::string fast;
    append_number_text(fast, v);
    ASSERT_EQ(fast, number_text(v)) << v;
    ASSERT_EQ(exponent_form(v), sci(v)) << v;
  }
}

// Short, empty and garbled files end in the routines' own way: nothing is
// written where there is nothing to read, the closing box still comes, and
// the input is left as it was.
TEST(Exports, BadInputNeverStopsTheRoutines) {
  const struct {
    const char* what;
    std::vector<uint8_t> file;
  } inputs[] = {
      {"empty", {}},
      {"shorter than a header", {1, 2, 3}},
      {"negative ns", [] {
         auto b = su_bytes(line_of(1, 2, 4), 4, 500);
         put_at<int16_t>(b, at::ns, -5);
         return b;
       }()},
      {"ns far past the end", [] {
         auto b = su_bytes(line_of(1, 2, 4), 4, 0);
         put_at<int16_t>(b, at::ns, 32767);
         return b;
       }()},
  };
  struct Run {
    const char* routine;
    std::vector<Answer> replies;
    std::vector<const char*> inputs;
    const char* last_box;
  };
  const Run runs[] = {
      {"su2Ascii", {Answer::yes}, {"1", "9"}, "line.txt has been recorded"},
      {"Convert_2_X_Y_Z", {Answer::yes}, {"1", "9"}, "line.txt has been recorded"},
      {"su2ascii2", {}, {"1", "2"}, "Conversion OK"},
      {"Write_FBP", {}, {"1"}, "FBP files are recorded"},
      {"Write_Rayfract", {Answer::yes}, {"1", "", "abc"}, ""},
  };
  for (const auto& input : inputs)
    for (const auto& r : runs) {
      SCOPED_TRACE(std::string(input.what) + " " + r.routine);
      Exports e;
      write_bytes(e.su, input.file);
      e.answer_dialog(e.su);
      for (Answer a : r.replies) e.platform.replies.push_back(a);
      for (const char* a : r.inputs) e.platform.input_answers.push_back(std::string(a));
      e.app.run_routine(r.routine);
      EXPECT_EQ(read_bytes(e.su), input.file);
      if (*r.last_box) expect_in(e.last_box(), {r.last_box});
    }
}
