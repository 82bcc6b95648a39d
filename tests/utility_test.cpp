// The main panel: option groups and Lance's order, the hover captions and
// help lines, the ASCII question, the programs it starts, Info, the manual
// tab and Quit.
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace {

std::string show(const std::string& panel) { return "{\"event\":\"show\",\"panel\":" + json(panel) + "}"; }

// The last dump of the main panel in a run.
std::string utility_dump(const RunResult& r) {
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"Utility\""});
  return dumps.empty() ? "" : dumps.back();
}

std::string caption_of(const std::string& dump, const std::string& control) {
  std::string c = control_in_dump(dump, control);
  size_t at = c.find("\"caption\":");
  return at == std::string::npos ? "" : c.substr(at, c.find(",\"text\"") - at);
}

bool bold(const std::string& dump, const std::string& control) {
  return control_in_dump(dump, control).find("\"bold\":true") != std::string::npos;
}

int value_of(const std::string& dump, const std::string& control) {
  std::string c = control_in_dump(dump, control);
  size_t at = c.find("\"value\":");
  return at == std::string::npos ? -1 : std::stoi(c.substr(at + 8));
}

// The shows of a run after the main panel's own, in order.
std::vector<std::string> shows(const RunResult& r) {
  std::vector<std::string> out;
  for (const auto& line : r.with({"\"event\":\"show\""}))
    if (line != show("Utility")) out.push_back(line);
  return out;
}

RunnerOptions folders(const TempDir& dir) {
  RunnerOptions options;
  options.app_dir = dir.file("app");
  options.system_dir = dir.file("system");
  std::filesystem::create_directories(options.app_dir);
  std::filesystem::create_directories(options.system_dir);
  return options;
}

void touch(const std::string& path, const std::string& content = "") {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  write_bytes(path, std::vector<uint8_t>(content.begin(), content.end()));
}

}  // namespace

TEST(Utility, PanelReadsLikeItsTable) {
  auto r = run("dump Utility\ndump session\n");
  ASSERT_EQ(r.exit_code, 0);
  const std::string d = utility_dump(r);
  EXPECT_NE(d.find("\"caption\":\"Tracefold 1.2\""), std::string::npos);
  // Opened on the second tab, no option set.
  EXPECT_NE(control_in_dump(d, "SSTab1").find("\"value\":1"), std::string::npos);
  EXPECT_NE(control_in_dump(d, "SSTab1").find("\"items\":[\"General modules\",\"Field record conversion\",\"Info\"]"),
            std::string::npos);
  for (int n = 1; n <= 34; ++n) {
    const std::string name = "Option" + std::to_string(n);
    EXPECT_EQ(value_of(d, name), 0) << name;
  }
  EXPECT_EQ(caption_of(d, "Frame1"), "\"caption\":\"To Seismic Unix\"");
  EXPECT_NE(control_in_dump(d, "Frame1").find("\"tooltip\":\"Select a file format and press on CONVERT\""),
            std::string::npos);
  EXPECT_EQ(caption_of(d, "Frame2"), "\"caption\":\"Reverse conversion\"");
  EXPECT_EQ(caption_of(d, "Frame3"), "\"caption\":\"Radar files to SU\"");
  EXPECT_EQ(caption_of(d, "Frame4"), "\"caption\":\"External record viewer\"");
  EXPECT_NE(control_in_dump(d, "Command2").find("\"caption\":\"Quit\""), std::string::npos);
  EXPECT_NE(control_in_dump(d, "Command2").find("\"tooltip\":\"Click here when conversion is done\""), std::string::npos);
  EXPECT_NE(control_in_dump(d, "Command3").find("\"tooltip\":\"How to use this module\""), std::string::npos);
  EXPECT_NE(control_in_dump(d, "Command4").find("\"tooltip\":" + json("\"Use this option to pick a value ine any file\"")),
            std::string::npos);
  EXPECT_NE(control_in_dump(d, "Check1").find("\"caption\":\"Close SU windows automatically\""), std::string::npos);
  EXPECT_NE(control_in_dump(d, "Check1").find("\"tooltip\":\"This option can make problems, you can cancel this option \""),
            std::string::npos);
  // The crossed pair: captions as they stand, actions the other way round.
  EXPECT_EQ(caption_of(d, "Option32"), "\"caption\":\"SU to Time / CD P/ Amplitude text file\"");
  EXPECT_EQ(caption_of(d, "Option33"), "\"caption\":\"Add SU files\"");
  EXPECT_TRUE(r.has({"\"event\":\"dump\",\"session\":", "\"crlf\":\"\\r\\n\""}));
}

// The whole transcript: the first click shows SEGY; the second, in another
// frame, shows SEGY again and then SU2SGY; a third on the set option runs
// nothing; conversion_mode is the one of the first.
TEST(Utility, EarlierFramesRunFirstAndASetOptionRunsNothing) {
  TempDir dir;
  auto r = run_script_file("utility_lance_order", dir.str());
  ASSERT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.lines, expected_transcript("utility_lance_order"));
}

// Each frame is its own group: a click clears its own frame only. Lance runs
// what is set, in its order, whichever option was clicked.
TEST(Utility, FramesAreIndependentGroups) {
  TempDir dir;
  auto r = run(
      "click Utility.Option2\nclick Utility.Option15\nclick Utility.Option12\nclick Utility.Option30\n"
      "click Utility.Option4\ndump Utility\nclick Utility.Option21\nclick Utility.Option22\ndump Utility\n",
      folders(dir));
  ASSERT_EQ(r.exit_code, 0);
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"Utility\""});
  ASSERT_EQ(dumps.size(), 2u);
  EXPECT_EQ(value_of(dumps[0], "Option2"), 0);
  for (const char* set : {"Option4", "Option15", "Option12", "Option30"}) EXPECT_EQ(value_of(dumps[0], set), 1) << set;
  // The two tiny options run nothing but clear their frames.
  EXPECT_EQ(value_of(dumps[1], "Option4"), 0);
  EXPECT_EQ(value_of(dumps[1], "Option15"), 0);
  EXPECT_EQ(value_of(dumps[1], "Option12"), 1);
  EXPECT_EQ(value_of(dumps[1], "Option30"), 1);

  auto s = shows(r);
  const std::vector<std::string> expected{
      show("SEGY"),                                        // Option2
      show("SEGY"),   show("SU2SGY"),                      // Option15
      show("SEGY"),   show("Radar_F"), show("SU2SGY"),     // Option12
      show("SEGY"),   show("Radar_F"), show("SU2SGY"),     // Option30, then its start
      show("es1225"), show("Radar_F"), show("SU2SGY")};    // Option4, then the start
  EXPECT_EQ(s, expected);
  // BinPatch is missing: the start fails with a small number, which the
  // exactly-0 rule passes in silence.
  auto starts = r.with({"\"event\":\"shell\"", json(dir.file("app") + "/BinPatch.EXE")});
  EXPECT_EQ(starts.size(), 2u);
  EXPECT_FALSE(r.has({"\"event\":\"msgbox\""}));
}

// A hover sets the bold and the hover caption for good, and fills Text1 with
// the help lines; the frames and the tab control take the bold off their
// numbered lists, which leave Command8 and Command12 bold.
TEST(Utility, HoverCaptionsStayAndHelpFillsText1) {
  auto r = run(
      "hover Utility.Commandp12\nhover Utility.Option2\nhover Utility.Option8\nhover Utility.Option15\n"
      "hover Utility.Command8\nhover Utility.Command12\nhover Utility.Command21\nhover Utility.Commandp12\n"
      "hover Utility.Option24\ndump Utility\n"
      "hover Utility.SSTab1\nhover Utility.Frame2\ndump Utility\nhover Utility.Frame1\ndump Utility\n");
  ASSERT_EQ(r.exit_code, 0);
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"Utility\""});
  ASSERT_EQ(dumps.size(), 3u);

  const std::string crlf = "\r\n";
  std::string help;
  for (const char* line : {"Use this module to reverse one or many selected channels", "of one or all SU field records",
                           "For example, you can use this module if you inverted cables !!!", "1.-Select the SU file",
                           "2.-Select the first and last shot to modify",
                           "3.-Select the first and last channel to permute",
                           "The first channel will become last selected channel", "Press REVERSE to modify the SU file"})
    help += line + crlf;
  // Options carry no help lines: Text1 keeps the last button's.
  EXPECT_NE(control_in_dump(dumps[0], "Text1").find("\"text\":" + json(help)), std::string::npos) << dumps[0];
  EXPECT_EQ(caption_of(dumps[0], "Commandp12"), "\"caption\":\"Reverse channel in selected SU file\"");
  EXPECT_EQ(caption_of(dumps[0], "Command21"), "\"caption\":\"SU file uncompress (2 to 4 bytes)\"");
  EXPECT_EQ(caption_of(dumps[0], "Option24"), "\"caption\":\"Seismic Unix to Ascii (1 file with xchannels)\"");
  for (const char* c : {"Commandp12", "Option2", "Option8", "Option15", "Command8", "Command12", "Command21", "Option24"})
    EXPECT_TRUE(bold(dumps[0], c)) << c;

  // The tab control and Frame2.
  for (const char* c : {"Commandp12", "Command21", "Option8", "Option15", "Option24"}) EXPECT_FALSE(bold(dumps[1], c)) << c;
  for (const char* c : {"Command8", "Command12", "Option2"}) EXPECT_TRUE(bold(dumps[1], c)) << c;
  EXPECT_EQ(caption_of(dumps[1], "Commandp12"), "\"caption\":\"Reverse channel in selected SU file\"");
  EXPECT_NE(control_in_dump(dumps[1], "Text1").find("\"text\":" + json(help)), std::string::npos);
  // Frame1.
  EXPECT_FALSE(bold(dumps[2], "Option2"));
  EXPECT_TRUE(bold(dumps[2], "Command8"));
  EXPECT_TRUE(bold(dumps[2], "Command12"));
}

// Exactly 1, read as a number, shows XASCII2SU; anything else ASCII2SU.
TEST(Utility, AsciiQuestionChoosesThePanel) {
  const std::pair<std::string, const char*> answers[] = {
      {"input \"1\"\n", "XASCII2SU"}, {"input \"1.0\"\n", "XASCII2SU"}, {"", "XASCII2SU"},  // unanswered: the default 1
      {"input \"2\"\n", "ASCII2SU"},  {"input \"\"\n", "ASCII2SU"},     {"input-cancel\n", "ASCII2SU"},
      {"input \"one\"\n", "ASCII2SU"}, {"input \"0.5\"\n", "ASCII2SU"},
  };
  for (const auto& [answer, panel] : answers) {
    SCOPED_TRACE(answer);
    auto r = run(answer + "click Utility.Option23\n");
    ASSERT_EQ(r.exit_code, 0);
    EXPECT_EQ(r.with({"\"event\":\"inputbox\",\"prompt\":\"Type 1 to convert many ASCII file with 1 channel/ file, >1 for "
                      "one ASCII file merging many channels\",\"title\":\"Tracefold 1.0\",\"default\":\"1\""})
                  .size(),
              1u);
    EXPECT_EQ(shows(r), std::vector<std::string>{show(panel)});
  }
}

// SN388_SegY.EXE missing: the stop message, and Lance ends before Option32
// and Option33. Present: it is started and the rest of the list runs.
TEST(Utility, MissingSn388EndsLance) {
  TempDir dir;
  auto r = run_script_file("utility_sn388", dir.str(), folders(dir));
  ASSERT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.lines, expected_transcript("utility_sn388"));

  RunnerOptions options = folders(dir);
  auto missing = run("click Utility.Option33\nclick Utility.Option31\n", options);
  EXPECT_EQ(missing.with({"\"event\":\"routine\",\"name\":\"Convert_2_X_Y_Z\""}).size(), 1u);

  touch(dir.file("app/segd/SN388_SegY.EXE"));
  auto present = run("click Utility.Option33\nclick Utility.Option31\n", options);
  auto lines = present.lines;
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[1], "{\"event\":\"routine\",\"name\":\"Convert_2_X_Y_Z\"}");
  EXPECT_NE(lines[2].find("\"event\":\"shell\",\"verb\":\"open\",\"file\":" + json(dir.file("app/segd/SN388_SegY.EXE")) +
                          ",\"params\":\"\",\"dir\":" + json(dir.file("app")) + ",\"show\":1"),
            std::string::npos)
      << lines[2];
  EXPECT_EQ(lines[3], "{\"event\":\"routine\",\"name\":\"Convert_2_X_Y_Z\"}");
}

// Check1 gives the prefix at the next Lance and runs nothing by itself.
TEST(Utility, CloseSuWindowsSetsTheCommandPrefix) {
  auto r = run("check Utility.Check1 on\ndump session\nclick Utility.Option2\ndump session\n"
               "check Utility.Check1 off\nclick Utility.Option3\ndump session\n");
  ASSERT_EQ(r.exit_code, 0);
  auto sessions = r.with({"\"event\":\"dump\",\"session\":"});
  ASSERT_EQ(sessions.size(), 3u);
  EXPECT_NE(sessions[0].find("\"command_prefix\":\"\""), std::string::npos);
  EXPECT_NE(sessions[1].find("\"command_prefix\":\"command.com /c \""), std::string::npos);
  EXPECT_NE(sessions[2].find("\"command_prefix\":\"\""), std::string::npos);
  EXPECT_NE(sessions[2].find("\"conversion_mode\":\"KGSI2SU\""), std::string::npos);
  EXPECT_EQ(shows(r), (std::vector<std::string>{show("SEGY"), show("Convert")}));
}

// Option1 takes the suite's data file from Larvex32.INI in the system folder
// and starts S2CONV.EXE of the application folder on that file's folder.
TEST(Utility, S2convStartsOnTheSuiteDataFolder) {
  struct Case {
    const char* what;
    std::string ini;       // "" for no INI file
    std::string data;      // the data file to create, "" for none
    bool program_there;
    std::string current_file;
    std::string params;
    const char* box;       // the one message box, or nullptr
  };
  TempDir dir;
  const std::string data = dir.file("data/DEMO1.LX5");
  const std::string spaced = dir.file("my data/LINE.LX5");
  const std::string long_name = dir.file(std::string(120, 'x') + ".LX5");
  const Case cases[] = {
      {"the INI's file", "[LARVEX]\r\nFile=nothing\r\n[PLANTA]\r\nFile=" + data + "\r\n", data, false, data,
       "999 " + dir.file("data/"), nullptr},
      {"no INI: the default", "", "", false, "C:\\LARVEX\\DATA\\DEMO1\\DEMO1.LX5", "999 ", nullptr},
      {"program there", "[PLANTA]\nFile=" + data + "\n", data, true, data, "999 " + dir.file("data/"), nullptr},
      {"a folder with a blank", "[PLANTA]\nFile=" + spaced + "\n", spaced, false, spaced, "999 " + dir.file("my data/"),
       " path name contain a space, VEDRA module cannot work properly, you must correct it using WINDOWS tools "},
      {"a value cut to 89 characters", "[PLANTA]\nFile=" + long_name + "\n", "", false, long_name.substr(0, 89), "999 ",
       nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::filesystem::remove_all(dir.file("app"));
    std::filesystem::remove_all(dir.file("system"));
    RunnerOptions options = folders(dir);
    if (!c.ini.empty()) touch(dir.file("system/Larvex32.INI"), c.ini);
    if (!c.data.empty()) touch(c.data);
    if (c.program_there) touch(dir.file("app/S2CONV.EXE"));
    auto r = run("click Utility.Option1\ndump session\n", options);
    ASSERT_EQ(r.exit_code, 0);
    EXPECT_TRUE(r.has({"\"event\":\"dump\",\"session\":{\"current_file\":" + json(c.current_file) + ","}));
    auto starts = r.with({"\"event\":\"shell\""});
    ASSERT_EQ(starts.size(), 1u);
    EXPECT_NE(starts[0].find("\"verb\":\"open\",\"file\":" + json(dir.file("app/S2CONV.EXE")) +
                             ",\"params\":" + json(c.params) + ",\"dir\":" + json(dir.file("app")) + ",\"show\":1"),
              std::string::npos)
        << starts[0];
    auto boxes = r.with({"\"event\":\"msgbox\""});
    if (c.box) {
      ASSERT_EQ(boxes.size(), 1u);
      EXPECT_NE(boxes[0].find("\"text\":" + json(dir.file("my data/") + c.box) + ",\"title\":\"Tracefold 1.0\",\"icon\":\"stop\""),
                std::string::npos)
          << boxes[0];
    } else {
      EXPECT_TRUE(boxes.empty());
    }
  }
}

TEST(Utility, InfoBox) {
  auto r = run("click Utility.Command3\n");
  ASSERT_EQ(r.exit_code, 0);
  std::string text;
  for (const char* line : {"Select the type of file and press on CONVERT",
                           " If you don't know what type of file your seismograph",
                           " produce, you must read the owner manual. ",
                           " If your seismograph don't appears on the panel  ", " you can contact Brenholt.  ",
                           " E-mail us some file sample and all available informations ",
                           " Number of samples, sample rate, traces per record...  ",
                           " ALL TYPE OF FILES CAN BE CONVERTED !",
                           " If you are familiar with \xC2\xA8seismic data use OTHER FILE TO SU menu !",
                           " This module can convert nearly all type of seismic file "})
    text += std::string(line) + "\r\n";
  EXPECT_EQ(r.with({"\"event\":\"msgbox\",\"text\":" + json(text) +
                    ",\"title\":\"Tracefold 1.0\",\"icon\":\"information\",\"buttons\":\"ok\""})
                .size(),
            1u);
}

// The third tab loads manual/utility.rtf of the application folder when it
// is there; otherwise the box stays empty.
TEST(Utility, InfoTabLoadsTheManual) {
  TempDir dir;
  RunnerOptions options = folders(dir);
  auto without = run("tab Utility.SSTab1 2\ndump Utility\n", options);
  EXPECT_NE(control_in_dump(utility_dump(without), "RichTextBox1").find("\"text\":\"\""), std::string::npos);

  const std::string manual = "{\\rtf1\\ansi Tracefold manual\\par}";
  touch(dir.file("app/manual/utility.rtf"), manual);
  auto r = run("tab Utility.SSTab1 0\ndump Utility\ntab Utility.SSTab1 2\ndump Utility\n", options);
  ASSERT_EQ(r.exit_code, 0);
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"Utility\""});
  ASSERT_EQ(dumps.size(), 2u);
  EXPECT_NE(control_in_dump(dumps[0], "RichTextBox1").find("\"text\":\"\""), std::string::npos);
  EXPECT_NE(dumps[1].find("\"RichTextBox1\":{\"kind\":\"rich_text\",\"caption\":\"\",\"text\":" + json(manual)),
            std::string::npos)
      << dumps[1];
}

// Quit unloads the main panel and ends the run, other panels open or not.
TEST(Utility, QuitEndsTheRun) {
  TempDir dir;
  auto r = run_script_file("utility_quit", dir.str());
  ASSERT_EQ(r.exit_code, 0);
  EXPECT_EQ(r.lines, expected_transcript("utility_quit"));
}

TEST(UtilityLifecycle, UnloadingTheMainPanelEndsTheRun) {
  auto result = tf::test::run("close Utility\nshow es1225\n");
  EXPECT_TRUE(result.has({"\"event\":\"quit\""}));
  EXPECT_FALSE(result.has({"\"panel\":\"es1225\""}));  // nothing runs after the end
}
