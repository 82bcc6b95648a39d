// The Convert panel's batch roads (SEG-Y and SEG-D to SU, SU to SEG-Y), its
// modes and entry checks, the SU to SEG-Y panel and the SEG-Y extractor.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "frame/shell_start.h"
#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {

// An SU file of `traces` records of `ns` samples, dt in every header.
std::vector<uint8_t> su_records(int traces, int ns, int dt) {
  const size_t size = 240 + 4 * static_cast<size_t>(ns);
  std::vector<uint8_t> su(size * traces, 0);
  for (int i = 0; i < traces; ++i) {
    put_trace_words(su, size * i, 1, i + 1, ns, dt);
    for (int k = 0; k < ns; ++k) put_at<float>(su, size * i + 240 + 4 * static_cast<size_t>(k), 0.25f * k);
  }
  return su;
}

// The runner with the test folder as the program's folder too.
RunResult run_in(const std::string& script, const TempDir& dir) {
  RunnerOptions options;
  options.app_dir = dir.str();
  return run_script_file(script, dir.str(), options);
}

// The runner program itself with its shell starting for real: a batch file
// goes to tracefold-batch beside it.
RunResult run_for_real(const std::string& script, const TempDir& dir) {
  write_text(dir.file("run.tfs"), script);
  RunResult result;
  result.exit_code = std::system(("'" + std::string(TRACEFOLD_BIN) + "/tracefold-run' --shell run --app-dir '" +
                                  dir.str() + "' '" + dir.file("run.tfs") + "' >'" + dir.file("run.jsonl") + "'")
                                     .c_str());
  result.lines = split_lines(text_of(dir.file("run.jsonl")));
  return result;
}

// Waits until a file that a started batch writes has stopped growing.
void wait_for_whole_file(const std::string& path) {
  std::error_code ec;
  uintmax_t last = 0;
  for (int i = 0, still = 0; i < 200 && still < 3; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const uintmax_t size = fs::exists(path, ec) ? fs::file_size(path, ec) : 0;
    still = size > 0 && size == last ? still + 1 : 0;
    last = size;
  }
}

// A stand-in tool: a shell script in `folder`.
void stand_in(const TempDir& dir, const std::string& name, const std::string& body) {
  write_text(dir.file("tools/" + name), "#!/bin/sh\n" + body);
  fs::permissions(dir.file("tools/" + name), fs::perms::owner_all, fs::perm_options::add);
}

std::string convert_dump(const std::string& mode, const std::string& more = "") {
  return "session conversion_mode \"" + mode + "\"\nshow Convert\n" + more + "dump Convert\n";
}

// A conversion of the mode in `dir`, the tools in its folder "tools".
std::string convert_with_tools(const TempDir& dir, const std::string& mode, const std::string& in,
                               const std::string& out, const std::string& before_convert = "") {
  return "session data_folder \"" + dir.str() + "/\"\nsession su_tools_folder \"" + dir.str() + "/tools/\"\n" +
         convert_dump(mode, "set Convert.Text1 \"" + dir.file(in) + "\"\nset Convert.Text2 \"" + dir.file(out) +
                                "\"\n" + before_convert + "click Convert.Command2\n");
}

}  // namespace

TEST(ConvertPanel, SegyToSuWritesOneLineAndDeletesTheOldOutput) {
  TempDir dir;
  write_text(dir.file("line.sgy"), "segy bytes");
  write_text(dir.file("line.SU"), "old output");
  EXPECT_EQ(run_in("convert_segy2su", dir).lines, expected_transcript("convert_segy2su"));
  EXPECT_EQ(text_of(dir.file("convert.bat")), dir.str() + "/tools/SEGYREAD tape=" + dir.str() +
                                                  "/line.sgy endian=1 | " + dir.str() + "/tools/SEGYCLEAN >" +
                                                  dir.str() + "/line.SU\r\n");
  EXPECT_FALSE(fs::exists(dir.file("line.SU")));
}

// Neither byte-order button pressed (or the big-endian one) passes 0.
TEST(ConvertPanel, SegyToSuWithoutLittleEndianPassesZero) {
  for (const char* press : {"", "click Convert.Option2\n"}) {
    TempDir dir;
    write_text(dir.file("a.sgy"), "x");
    run("session data_folder \"" + dir.str() + "/\"\nsession su_tools_folder \"T/\"\n" +
        convert_dump("SEGY2SU", std::string("set Convert.Text1 \"") + dir.file("a.sgy") +
                                    "\"\nset Convert.Text2 \"o.su\"\n" + press + "click Convert.Command2\n"));
    EXPECT_EQ(text_of(dir.file("convert.bat")),
              "T/SEGYREAD tape=" + dir.file("a.sgy") + " endian=0 | T/SEGYCLEAN >o.su\r\n");
  }
}

TEST(ConvertPanel, SegdToSuComposesItsLine) {
  TempDir dir;
  write_text(dir.file("empty.sgd"));
  write_text(dir.file("shot.sgd"), "segd");
  EXPECT_EQ(run_in("convert_entry_checks", dir).lines, expected_transcript("convert_entry_checks"));
  EXPECT_EQ(text_of(dir.file("convert.bat")),
            "SEGDREAD tape=" + dir.file("shot.sgd") + " >" + dir.file("SHOT.sgd") + "\r\n");
}

TEST(ConvertPanel, SuToSegyShowsTheTwoLinesAndClosesWithTheTimedBox) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_records(3, 1024, 500));
  write_text(dir.file("line.SGY"), "old");
  EXPECT_EQ(run_in("convert_su2segy", dir).lines, expected_transcript("convert_su2segy"));
  const std::string d = dir.str() + "/";
  EXPECT_EQ(text_of(dir.file("convert.bat")), d + "tools/SEGYHDRS <" + d +
                                                  "line.su ns= 1024 dt= 500 bfile=binary hfile=header\r\n"
                                                  "copy /b " +
                                                  d + "header + " + d + "binary + " + d + "line.su " + d +
                                                  "line.SGY\r\n");
  EXPECT_FALSE(fs::exists(dir.file("line.SGY")));
}

// Caption, Frame1, the input dialog and the default output name of each
// mode; the output dialog keeps one title in every mode.
TEST(ConvertPanel, EachModeTakesItsCaptionDialogAndOutputName) {
  struct Mode {
    const char* mode;
    const char* caption;
    const char* title;
    const char* filter;
    const char* file;
    const char* output;  // from "/d/shot.abcd"
  };
  const Mode modes[] = {
      {"SEGY2SU", " Conversion SEG-Y to SU", "SEG-Y File selection", "SEG-Y File |*.SGY|All files|*.*|", "*.SGY",
       "/d/shot.aSU"},
      {"SU2SEGY", " Conversion SU to SEG-Y", "SU File selection", "SU File |*.SU|All files|*.*|", "*.SU",
       "/d/shot.abSGY"},
      {"SEGD2SU", " Conversion SEG-D to SU ", "SEG-D File selection", "SEG-D File |*.SGD|All files|*.*|", "*.SGD",
       "/d/shot.aSU"},
      {"KGS2SU", " Conversion KGS-FPT to SU", "KGS File selection", "KGS File |*.SU|All files|*.*|", "*.DAT",
       "/d/shot.aSU"},
      {"KGSI2SU", " Conversion KGS Integers to SU ", "KGS Integer File selection", "KGS File |*.EVD|All files|*.*|",
       "*.EVD", "/d/shot.aSU"},
      {"SU2KGS", " Conversion SU to KGS_FPT", "SU File selection", "SU File |*.SU|All files|*.*|", "*.SU",
       "/d/shot.abDAT"},
  };
  for (const auto& m : modes) {
    SCOPED_TRACE(m.mode);
    auto r = run("session data_folder \"/d/\"\n" +
                 convert_dump(m.mode, "dialog \"/d/shot.abcd\"\nclick Convert.Command3\nclick Convert.Command4\n"));
    const std::string dump = r.dump("Convert");
    expect_in(dump, {"\"caption\":" + json(m.caption)});
    EXPECT_EQ(control_in_dump(dump, "Frame1").find("\"visible\":true") != std::string::npos,
              std::string(m.mode) == "SEGY2SU");
    auto dialogs = r.with({"\"event\":\"dialog\""});
    ASSERT_EQ(dialogs.size(), 2u);
    expect_in(dialogs[0], {"\"title\":" + json(m.title), "\"filter\":" + json(m.filter), "\"file\":" + json(m.file),
                           "\"dir\":\"/d/\"", "\"filter_index\":1"});
    expect_in(dialogs[1], {"\"title\":\"KGS Integer File selection\"", "\"filter\":\"SU File |*.SU|All files|*.*|\"",
                           "\"file\":\"*.SU\"", "\"answer\":\"*.SU\""});
    EXPECT_EQ(text_in(dump, "Text1"), "/d/shot.abcd");
    EXPECT_EQ(text_in(dump, "Text2"), "*.SU");  // the cancelled output dialog's start name
  }
}

// The derived name drops characters by count; a cancelled dialog leaves
// its pattern, and a name too short for the cut ends the routine.
TEST(ConvertPanel, OutputNameIsCutByCharacterCount) {
  struct Case {
    const char* mode;
    const char* answer;
    const char* text2;
  };
  const Case cases[] = {{"SEGY2SU", "/d/noext", "/d/noSU"},
                        {"SU2KGS", "/d/a.su", "/d/a.DAT"},
                        {"SEGY2SU", "ab", " "},
                        {"SU2SEGY", "a", " "}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    auto r = run(convert_dump(c.mode, std::string("dialog \"") + c.answer + "\"\nclick Convert.Command3\n"));
    EXPECT_EQ(text_in(r.dump("Convert"), "Text2"), c.text2);
    EXPECT_FALSE(r.has({"runtime-error"}));
  }
  auto cancelled = run(convert_dump("SEGD2SU", "dialog-cancel\nclick Convert.Command3\n"));
  EXPECT_EQ(texts_in(cancelled.dump("Convert"), {"Text1", "Text2"}), (std::vector<std::string>{"*.SGD", "*.SU"}));
}

// At load the input field takes current_file, or file_in when that is empty.
TEST(ConvertPanel, LoadFillsTheInputFromTheSession) {
  auto r = run("session file_in \"/d/in.su\"\n" + convert_dump("SU2KGS"));
  EXPECT_EQ(texts_in(r.dump("Convert"), {"Text1", "Text2"}), (std::vector<std::string>{"/d/in.su", " "}));
  r = run("session file_in \"/d/in.su\"\nsession current_file \"/d/cur.su\"\n" + convert_dump("SU2KGS"));
  EXPECT_EQ(text_in(r.dump("Convert"), "Text1"), "/d/cur.su");
}

// Stand-in Seismic Unix tools run the composed line through the batch
// interpreter: SEGYREAD's arguments as composed, its output piped through
// SEGYCLEAN into the SU file.
TEST(ConvertPanel, SegyToSuLineRunsThroughTheBatchInterpreter) {
  TempDir dir;
  stand_in(dir, "segyread", "echo \"$@\"\n");
  stand_in(dir, "segyclean", "echo cleaned; cat\n");
  write_text(dir.file("line.sgy"), "x");
  auto r = run_for_real(convert_with_tools(dir, "SEGY2SU", "line.sgy", "line.su", "click Convert.Option1\n"), dir);
  ASSERT_TRUE(r.has({"\"event\":\"shell\"", "\"result\":42"})) << ::testing::PrintToString(r.lines);
  const std::string expected = "cleaned\ntape=" + dir.file("line.sgy") + " endian=1\n";
  for (int i = 0; i < 100 && text_of(dir.file("line.su")) != expected; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(text_of(dir.file("line.su")), expected);
}

// The two lines of SU to SEG-Y run with a stand-in SEGYHDRS that writes the
// 3200-byte text and 400-byte binary headers into its working folder, the
// program's folder, which is here the data folder too: the copy joins them
// before the SU traces.
TEST(ConvertPanel, SuToSegyLinesJoinTheHeadersAndTheSuFile) {
  TempDir dir;
  stand_in(dir, "segyhdrs",
           "for a; do case $a in bfile=*) head -c 400 /dev/zero >${a#bfile=};; "
           "hfile=*) yes C | tr -d \"\\n\" | head -c 3200 >${a#hfile=};; esac; done\n");
  const auto su = su_records(4, 1024, 500);
  write_bytes(dir.file("line.su"), su);
  auto r = run_for_real(convert_with_tools(dir, "SU2SEGY", "line.su", "line.sgy"), dir);
  ASSERT_TRUE(r.has({"\"event\":\"shell\"", "\"result\":42"})) << ::testing::PrintToString(r.lines);
  wait_for_whole_file(dir.file("line.sgy"));
  auto expected = std::vector<uint8_t>(3200, 'C');
  expected.resize(3600, 0);
  expected.insert(expected.end(), su.begin(), su.end());
  EXPECT_EQ(read_bytes(dir.file("line.sgy")), expected);
}

// With the real Seismic Unix tools on the PATH, a public sample goes the
// whole SEG-Y to SU road and segyio checks the traces.
TEST(ConvertPanel, RealSegyreadConvertsThePublicSample) {
  if (find_on_path("segyread").empty() || find_on_path("segyclean").empty())
    GTEST_SKIP() << "Seismic Unix is not installed";
  TempDir dir;
  const std::string sample = std::string(TRACEFOLD_SHARED_DATA) + "/segy/small-lsb.sgy";
  run_for_real(
      "session data_folder \"" + dir.str() + "/\"\n" +
          convert_dump("SEGY2SU", "set Convert.Text1 \"" + sample + "\"\nset Convert.Text2 \"" + dir.file("small.su") +
                                      "\"\nclick Convert.Option1\nclick Convert.Command2\n"),
      dir);
  wait_for_whole_file(dir.file("small.su"));
  const std::string check =
      "/usr/bin/python3 -c \"import segyio,numpy as np,sys; "
      "a=segyio.su.open(sys.argv[1],endian='little',ignore_geometry=True); "
      "b=segyio.open(sys.argv[2],endian='little',ignore_geometry=True); "
      "sys.exit(0 if np.allclose(a.trace.raw[:],b.trace.raw[:]) else 1)\" " +
      dir.file("small.su") + " " + sample;
  EXPECT_EQ(std::system(check.c_str()), 0);
}

// SU2SGY: the trace count with its fraction, the batch with the typed
// parameters (one with a key the filter refuses), the help box.
TEST(Su2SgyPanel, ComposesTheTwoToolLinesWithTheTypedParameters) {
  TempDir dir;
  auto su = su_records(1000, 10, 250);
  su.resize(su.size() - 140);  // the last record half there: 999.5 records
  write_bytes(dir.file("line.su"), su);
  write_text(dir.file("out.sgy"), "old");
  EXPECT_EQ(run_in("su2sgy", dir).lines, expected_transcript("su2sgy"));
  const std::string d = dir.str();
  EXPECT_EQ(text_of(dir.file("convert.bat")),
            d + "/bin/SEGYHDRS <" + d + "/line.su\r\n\r\n" + d + "/bin/SEGYWRITE <" + d + "/line.su tape=" + d +
                "/out.sgy conv=1 trmin=5 trmax=999.5 endian=1 buffer=1 errmax=3\r\npause\r\n");
  EXPECT_FALSE(fs::exists(dir.file("out.sgy")));
}

TEST(Su2SgyPanel, WholeRecordsGiveAWholeCountAndNoAnswerKeepsTheOutput) {
  TempDir dir;
  write_bytes(dir.file("line.su"), su_records(1000, 10, 250));
  write_text(dir.file("line.SGY"), "old");
  auto r = run("click Utility.Option15\ndialog \"" + dir.file("line.su") +
               "\"\nclick SU2SGY.Command3\nreply no\n"
               "click SU2SGY.Command2\ndump SU2SGY\nset SU2SGY.Text1 \"\"\nclick SU2SGY.Command2\n");
  EXPECT_EQ(texts_in(r.dump("SU2SGY"), {"Text2", "Text4"}), (std::vector<std::string>{dir.file("line.SGY"), "1000"}));
  EXPECT_EQ(r.with({"\"event\":\"msgbox\""}).size(), 1u);  // the question only; the empty input does nothing
  EXPECT_FALSE(r.has({"\"event\":\"shell\""}));
  EXPECT_EQ(text_of(dir.file("line.SGY")), "old");
}

// A start that the shell refuses is the only failure reported.
TEST(Su2SgyPanel, ShellFailureSaysConversionProblem) {
  struct Refusing : ScriptPlatform {
    using ScriptPlatform::ScriptPlatform;
    int shell_execute(const ShellRequest&) override { return 0; }
  };
  TempDir dir;
  RunnerOptions options;
  options.app_dir = dir.str();
  Recording<Refusing> rec(options);
  rec.app.panels.show("Utility");
  Panel* panel = rec.app.panels.show("SU2SGY");
  panel->set_text("Text1", "/d/in.su");
  panel->click("Command2");
  EXPECT_EQ(rec.boxes(), (std::vector<std::string>{box_line(" Conversion problem...verify parameters", "stop")}));
}

// Defaults on a SEG-Y file of 4000-sample traces: the count is made from
// 1024 samples, 3600 + 120 x 4336 bytes, and the buffer's one byte more.
TEST(SegyExtractor, DefaultsCopyTheHeadOfTheFileAndOneByteMore) {
  TempDir dir;
  std::vector<uint8_t> segy(3600 + 200 * (240 + 16000));
  for (size_t i = 0; i < segy.size(); ++i) segy[i] = static_cast<uint8_t>(i * 7 + i / 251);
  write_bytes(dir.file("big.sgy"), segy);
  EXPECT_EQ(run_script_file("segy_extract", dir.str()).lines, expected_transcript("segy_extract"));
  const size_t count = 3600 + 120 * 4336 + 1;
  EXPECT_EQ(read_bytes(dir.file("head.sgy")), std::vector<uint8_t>(segy.begin(), segy.begin() + count));
}

// The 16-bit trace size: past 8131 samples no count is made and one byte
// goes out; a short input is padded with zeros to the full count; answers
// of 0 and short names end the routine.
TEST(SegyExtractor, SizesAndEarlyEnds) {
  TempDir dir;
  write_bytes(dir.file("small.sgy"), std::vector<uint8_t>(4000, 9));
  auto extract = [&](const std::string& answers) {
    fs::remove(dir.file("out.sgy"));
    run("dialog \"" + dir.file("small.sgy") + "\"\ndialog \"" + dir.file("out.sgy") + "\"\n" + answers +
        "click Utility.Command11\n");
    return fs::exists(dir.file("out.sgy")) ? read_bytes(dir.file("out.sgy")) : std::vector<uint8_t>{};
  };
  EXPECT_EQ(extract("input \"2\"\ninput \"9000\"\n"), std::vector<uint8_t>(1, 9));
  auto padded = std::vector<uint8_t>(4000, 9);
  padded.resize(3600 + 2 * 280 + 1, 0);
  EXPECT_EQ(extract("input \"2\"\ninput \"10\"\n"), padded);
  EXPECT_TRUE(extract("input \"0\"\n").empty());
  EXPECT_TRUE(extract("input \"3\"\ninput \"abc\"\n").empty());
  auto r = run("dialog \"a.sgy\"\nclick Utility.Command11\n");
  EXPECT_EQ(r.with({"\"event\":\"dialog\""}).size(), 1u);
}

// Missing and garbled inputs: nothing is made where the name points, the
// fields keep what they held, and the extractor writes its count of zeros.
TEST(SegyExtractor, MissingOrGarbledInputsChangeNothingOnDisk) {
  TempDir dir;
  auto r =
      run("click Utility.Option15\ndialog \"" + dir.file("missing.su") + "\"\nclick SU2SGY.Command3\ndump SU2SGY\n");
  EXPECT_EQ(texts_in(r.dump("SU2SGY"), {"Text2", "Text4"}),
            (std::vector<std::string>{dir.file("missing.SGY"), "10000"}));
  EXPECT_FALSE(fs::exists(dir.file("missing.su")));

  std::vector<uint8_t> garbled(300, 0xFF);  // ns -1: the count divides by 236
  write_bytes(dir.file("garbled.su"), garbled);
  r = run("click Utility.Option15\ndialog \"" + dir.file("garbled.su") + "\"\nclick SU2SGY.Command3\ndump SU2SGY\n");
  EXPECT_EQ(text_in(r.dump("SU2SGY"), "Text4"), "1.27118644067797");
  EXPECT_EQ(read_bytes(dir.file("garbled.su")), garbled);

  run("dialog \"" + dir.file("missing.sgy") + "\"\ndialog \"" + dir.file("out.sgy") +
      "\"\ninput \"1\"\ninput \"10\"\nclick Utility.Command11\n");
  EXPECT_FALSE(fs::exists(dir.file("missing.sgy")));
  EXPECT_EQ(read_bytes(dir.file("out.sgy")), std::vector<uint8_t>(3600 + 280 + 1, 0));
}
