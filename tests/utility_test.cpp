// The main panel: the scripts with whole transcripts (Lance's order, option
// groups, program starts, Info, Quit), the hover captions and help lines,
// the ASCII question and the S2CONV start.
#include <gtest/gtest.h>

#include <filesystem>

#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace {

std::string show(const std::string& panel) { return "{\"event\":\"show\",\"panel\":" + json(panel) + "}"; }

std::string caption(const std::string& text) { return "\"caption\":" + json(text) + ","; }

bool bold(const std::string& dump, const std::string& control) {
  return control_in_dump(dump, control).find("\"bold\":true") != std::string::npos;
}

int value_of(const std::string& dump, const std::string& control) {
  std::string c = control_in_dump(dump, control);
  size_t at = c.find("\"value\":");
  return at == std::string::npos ? -1 : std::stoi(c.substr(at + 8));
}

// Empty application and system folders in `dir`.
RunnerOptions folders(const TempDir& dir) {
  RunnerOptions options;
  options.app_dir = dir.file("app");
  options.system_dir = dir.file("system");
  std::filesystem::create_directories(options.app_dir);
  std::filesystem::create_directories(options.system_dir);
  return options;
}

}  // namespace

// Scripts whose whole transcript is the check, each run in a folder of its
// own with the files it needs; what each shows is said at its head.
TEST(Scripts, GiveTheirExpectedTranscripts) {
  const std::pair<const char*, const char*> scripts[] = {
      {"utility_lance_order", ""}, {"utility_frames", ""},    {"utility_sn388", ""},
      {"utility_sn388_present", "app/segd/SN388_SegY.EXE"},   {"utility_info", ""},
      {"utility_check1", ""},      {"utility_quit", ""},      {"utility_close", ""},
      {"es1225_help", ""},         {"abem_help", ""},         {"program_starts", "app/segd/tape.exe"},
  };
  for (const auto& [name, file] : scripts) {
    TempDir dir;
    RunnerOptions options = folders(dir);
    if (*file) write_text(dir.file(file));
    EXPECT_EQ(run_script_file(name, dir.str(), options).lines, expected_transcript(name)) << name;
  }
}

// Opened on the second tab with no option set; the captions of Option32
// and Option33 are crossed with their actions (see the utility_sn388 scripts).
TEST(Utility, OpensOnTheSecondTabWithCrossedCaptions) {
  const std::string d = run("dump Utility\n").dump("Utility");
  EXPECT_NE(d.find("\"caption\":\"Tracefold 1.2\""), std::string::npos);
  expect_in(control_in_dump(d, "SSTab1"), {"\"value\":1"});
  for (int n = 1; n <= 34; ++n) EXPECT_EQ(value_of(d, "Option" + std::to_string(n)), 0) << n;
  expect_in(control_in_dump(d, "Option32"), {caption("SU to Time / CD P/ Amplitude text file")});
  expect_in(control_in_dump(d, "Option33"), {caption("Add SU files")});
}

// A hover sets the bold and the hover caption for good and puts the help in
// Text1 (options have none); the tab control and frames unbold their lists,
// which leave out Command8 and Command12.
TEST(Utility, HoverCaptionsStayAndHelpFillsText1) {
  auto r = run(
      "hover Utility.Commandp12\nhover Utility.Option2\nhover Utility.Option8\nhover Utility.Command8\n"
      "hover Utility.Command12\nhover Utility.Commandp12\nhover Utility.Option24\ndump Utility\n"
      "hover Utility.SSTab1\nhover Utility.Frame2\ndump Utility\nhover Utility.Frame1\ndump Utility\n");
  auto dumps = r.with({"\"event\":\"dump\",\"panel\":\"Utility\""});
  ASSERT_EQ(dumps.size(), 3u);
  std::string help;
  for (const char* line : {"Use this module to reverse one or many selected channels", "of one or all SU field records",
                           "For example, you can use this module if you inverted cables !!!", "1.-Select the SU file",
                           "2.-Select the first and last shot to modify", "3.-Select the first and last channel to permute",
                           "The first channel will become last selected channel", "Press REVERSE to modify the SU file"})
    help += line + std::string("\r\n");
  for (const auto& d : {dumps[0], dumps[1]}) {
    expect_in(control_in_dump(d, "Text1"), {"\"text\":" + json(help)});
    expect_in(control_in_dump(d, "Commandp12"), {caption("Reverse channel in selected SU file")});
  }
  expect_in(control_in_dump(dumps[0], "Option24"), {caption("Seismic Unix to Ascii (1 file with xchannels)")});
  for (const char* c : {"Commandp12", "Option2", "Option8", "Command8", "Command12", "Option24"})
    EXPECT_TRUE(bold(dumps[0], c)) << c;
  // After the tab control and Frame2; then Frame1.
  for (const char* c : {"Commandp12", "Option8", "Option24"}) EXPECT_FALSE(bold(dumps[1], c)) << c;
  for (const char* c : {"Command8", "Command12", "Option2"}) EXPECT_TRUE(bold(dumps[1], c)) << c;
  EXPECT_FALSE(bold(dumps[2], "Option2"));
  EXPECT_TRUE(bold(dumps[2], "Command8") && bold(dumps[2], "Command12"));
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
    EXPECT_EQ(r.with({"\"event\":\"inputbox\",\"prompt\":\"Type 1 to convert many ASCII file with 1 channel/ file, >1 for "
                      "one ASCII file merging many channels\",\"title\":\"Tracefold 1.0\",\"default\":\"1\""})
                  .size(),
              1u);
    EXPECT_EQ(r.with({"\"event\":\"show\""}), (std::vector<std::string>{show("Utility"), show(panel)}));
  }
}

// Option1 takes the suite's data file from Larvex32.INI in the system folder
// and starts S2CONV.EXE of the application folder on that file's folder.
TEST(Utility, S2convStartsOnTheSuiteDataFolder) {
  TempDir dir;
  const std::string data = dir.file("data/DEMO1.LX5"), spaced = dir.file("my data/LINE.LX5");
  const std::string long_name = dir.file(std::string(120, 'x') + ".LX5");
  const struct {
    const char* what;
    std::string ini;  // "" for no INI file
    std::string data;  // the data file to create, "" for none
    std::string current_file, params;
    bool warned;  // the blank in the folder
  } cases[] = {
      {"the INI's file", "[LARVEX]\r\nFile=nothing\r\n[PLANTA]\r\nFile=" + data + "\r\n", data, data,
       "999 " + dir.file("data/"), false},
      {"no INI: the default", "", "", "C:\\LARVEX\\DATA\\DEMO1\\DEMO1.LX5", "999 ", false},
      {"a folder with a blank", "[PLANTA]\nFile=" + spaced + "\n", spaced, spaced, "999 " + dir.file("my data/"), true},
      {"a value cut to 89 characters", "[PLANTA]\nFile=" + long_name + "\n", "", long_name.substr(0, 89), "999 ", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    std::filesystem::remove_all(dir.file("system"));
    RunnerOptions options = folders(dir);
    if (!c.ini.empty()) write_text(dir.file("system/Larvex32.INI"), c.ini);
    if (!c.data.empty()) write_text(c.data);
    const std::string warning = " path name contain a space, VEDRA module cannot work properly, you must correct it "
                                "using WINDOWS tools ";
    auto r = run("click Utility.Option1\ndump session\n", options);
    EXPECT_TRUE(r.has({"\"event\":\"dump\",\"session\":{\"current_file\":" + json(c.current_file) + ","}));
    auto starts = r.with({"\"event\":\"shell\""});
    ASSERT_EQ(starts.size(), 1u);
    expect_in(starts[0], {"\"verb\":\"open\",\"file\":" + json(dir.file("app/S2CONV.EXE")) + ",\"params\":" +
                              json(c.params) + ",\"dir\":" + json(dir.file("app")) + ",\"show\":1"});
    EXPECT_EQ(r.has({box_line(dir.file("my data/") + warning, "stop")}), c.warned);
    EXPECT_EQ(r.with({"\"event\":\"msgbox\""}).size(), c.warned ? 1u : 0u);
  }
}
