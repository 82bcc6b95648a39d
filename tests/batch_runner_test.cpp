#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "frame/batch_runner.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "frame/shell_start.h"
#include "test_support.h"
#include "ui/headless/script_platform.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {

// The recording platform with a temporary folder and a file-type table of
// the test's choosing.
class BenchPlatform : public ScriptPlatform {
 public:
  using ScriptPlatform::ScriptPlatform;
  std::optional<std::string> temp;          // nullopt: the platform's own
  std::string zip_program;                  // what opens an existing "*.ZIP"
  std::vector<std::string> asked;           // documents asked about, "!" before a missing one
  std::string temp_folder() override { return temp ? *temp : ScriptPlatform::temp_folder(); }
  std::string find_executable(const std::string& document) override {
    bool there = fs::is_regular_file(document);
    asked.push_back((there ? "" : "!") + document);
    return there && fs::path(document).extension() == ".ZIP" ? zip_program : "";
  }
};

// An application in a temporary folder, its main panel shown, everything
// the user would see kept as transcript lines.
struct Bench {
  std::string other_folder;  // the application folder when not app_dir; set before the platform reads it
  TempDir app_dir, system_dir, data_dir;
  std::ostringstream out;
  BenchPlatform platform{options(), out};
  App app{platform};

  explicit Bench(std::string app_folder = "") : other_folder(std::move(app_folder)) {
    app.panels.show("Utility");
    out.str("");
  }
  RunnerOptions options() {
    RunnerOptions o;
    o.app_dir = other_folder.empty() ? app_dir.str() : other_folder;
    o.system_dir = system_dir.str();
    return o;
  }
  std::vector<std::string> lines() const {
    std::vector<std::string> v;
    std::istringstream in(out.str());
    for (std::string l; std::getline(in, l);) v.push_back(l);
    return v;
  }
  Panel& main_panel() { return *app.panels.loaded("Utility"); }
  std::string folder() { return platform.application_folder(); }
};

std::string text_of(const std::string& path) {
  auto bytes = read_bytes(path);
  return std::string(bytes.begin(), bytes.end());
}

void write_text(const std::string& path, const std::string& text) {
  write_bytes(path, std::vector<uint8_t>(text.begin(), text.end()));
}

std::string shell_line(const std::string& file, const std::string& params, const std::string& dir, int show,
                       int result) {
  return "{\"event\":\"shell\",\"verb\":\"open\",\"file\":" + json(file) + ",\"params\":" + json(params) +
         ",\"dir\":" + json(dir) + ",\"show\":" + std::to_string(show) + ",\"result\":" + std::to_string(result) + "}";
}

std::string box_line(const std::string& text, const std::string& icon, const std::string& buttons = "ok",
                     const std::string& answer = "ok") {
  return "{\"event\":\"msgbox\",\"text\":" + json(text) + ",\"title\":\"Tracefold 1.0\",\"icon\":\"" + icon +
         "\",\"buttons\":\"" + buttons + "\",\"answer\":\"" + answer + "\"}";
}

const std::string arrow_line = "{\"event\":\"pointer\",\"panel\":\"Utility\",\"pointer\":\"arrow\"}";

}  // namespace

TEST(RunBatch, CommandFileIsNormalisedSavedAsBatchBatAndStarted) {
  Bench b;
  std::string commands = b.data_dir.file("work.bat");
  write_text(commands, "segyread  tape= in.sgy >  out.su\r\n");
  Run_Batch(b.app, commands, "", 1);

  std::string batch = b.folder() + "/batch.bat";
  EXPECT_EQ(text_of(batch), "segyread tape =in.sgy >out.su\r\n");
  EXPECT_EQ(b.main_panel().text("RichTextBox1"), "segyread tape =in.sgy >out.su\r\n");
  EXPECT_EQ(b.lines(), (std::vector<std::string>{shell_line(batch, "", b.folder(), 1, shell_started), arrow_line}));
  EXPECT_EQ(text_of(commands), "segyread  tape= in.sgy >  out.su\r\n");  // the command file stays as written
}

TEST(RunBatch, EachBlankRuleRunsOnePassInOrder) {
  struct Case {
    const char* written;
    const char* saved;
  };
  const Case cases[] = {
      // lower case first
      {"SEGYREAD TAPE=LINE1.SGY", "segyread tape=line1.sgy"},
      // a run of two blanks behind a sign goes, a run of four keeps two
      {"suwind <  a.su >  b.su", "suwind <a.su >b.su"},
      {"suwind <    a.su >    b.su", "suwind <  a.su >  b.su"},
      {"suwind <   a.su", "suwind < a.su"},
      // the blank behind an equals sign moves in front of it
      {"sushw key= fldr a= 1", "sushw key =fldr a =1"},
      {"suwind key=tracf min=  2", "suwind key=tracf min =2"},
      // blanks beside a backslash go
      {"C:\\LARVEX\\ SEGYCLEAN", "c:\\larvex\\segyclean"},
      {"C:\\LARVEX \\SEGYCLEAN", "c:\\larvex\\segyclean"},
      {"c:\\my data\\ \\x.su", "c:\\my data\\\\x.su"},
      {"", ""},
  };
  Bench b;
  for (const auto& c : cases) {
    std::string commands = b.data_dir.file("work.bat");
    write_text(commands, c.written);
    Run_Batch(b.app, commands, "", 2);
    EXPECT_EQ(text_of(b.folder() + "/batch.bat"), c.saved) << c.written;
  }
  // the window style of the caller reaches the start
  for (const auto& line : b.lines())
    if (line.find("\"shell\"") != std::string::npos) EXPECT_NE(line.find("\"show\":2,"), std::string::npos) << line;
}

TEST(RunBatch, FailedStartIsReportedWithTheBatchPath) {
  // An application folder that is not there: nothing can be saved, the start
  // finds no file and the platform's small number comes back.
  TempDir gone;
  std::string missing_folder = gone.file("not-there");
  Bench b(missing_folder);
  std::string commands = b.data_dir.file("work.bat");
  write_text(commands, "suwind <a.su >b.su");
  Run_Batch(b.app, commands, "", 1);
  std::string batch = missing_folder + "/batch.bat";
  EXPECT_EQ(b.lines(), (std::vector<std::string>{shell_line(batch, "", missing_folder, 1, shell_file_not_found),
                                                 box_line("Unable to shell application:" + batch, "none"),
                                                 arrow_line}));
}

TEST(RunBatch, UnreadableCommandFileSavesWhatTheBoxHeld) {
  Bench b;
  std::string commands = b.data_dir.file("work.bat");
  write_text(commands, "SUSORT <A.SU >B.SU tracf");
  Run_Batch(b.app, commands, "", 1);
  Run_Batch(b.app, b.data_dir.file("gone.bat"), "", 1);
  EXPECT_EQ(text_of(b.folder() + "/batch.bat"), "susort <a.su >b.su tracf");
  EXPECT_EQ(b.lines().size(), 4u);  // two starts, two arrows, no box
}

TEST(FindToolsFolder, SuiteIniOrApplicationFolder) {
  {
    Bench b;  // no INI at all: the default folder has no segyread.exe
    b.app.state.su_tools_folder = "before";
    Find_Tools_Folder(b.app);
    EXPECT_EQ(b.app.state.su_tools_folder, b.folder() + "/");
  }
  {
    Bench b;
    std::string tools = b.data_dir.str() + "/tools/";
    fs::create_directories(tools);
    write_text(tools + "segyread.exe", "");
    write_text(b.system_dir.file("Larvex32.INI"), "[LARVEX]\r\nRepertoire=/elsewhere/\r\nDirectory1=" + tools + "\r\n");
    Find_Tools_Folder(b.app);
    EXPECT_EQ(b.app.state.su_tools_folder, tools);
  }
  {
    Bench b;  // a folder without the tool, and a folder named without its closing separator
    std::string tools = b.data_dir.str() + "/tools";
    fs::create_directories(tools);
    write_text(tools + "/segyread.exe", "");
    write_text(b.system_dir.file("Larvex32.INI"), "[LARVEX]\r\nDirectory1=" + tools + "\r\n");
    Find_Tools_Folder(b.app);
    EXPECT_EQ(b.app.state.su_tools_folder, b.folder() + "/");
  }
  {
    Bench b;  // the value is read into 90 characters: a longer folder is cut and missed
    std::string tools = b.data_dir.str() + "/" + std::string(90, 'd') + "/";
    fs::create_directories(tools);
    write_text(tools + "segyread.exe", "");
    write_text(b.system_dir.file("Larvex32.INI"), "[LARVEX]\r\nDirectory1=" + tools + "\r\n");
    Find_Tools_Folder(b.app);
    EXPECT_EQ(b.app.state.su_tools_folder, b.folder() + "/");
  }
}

TEST(JoinFiles, SecondAfterFirst) {
  Bench b;
  const std::vector<uint8_t> first{0x00, 0x41, 0xFF, 0x10, 0x00};
  const std::vector<uint8_t> second{0x7F, 0x00, 0x80};
  write_bytes(b.data_dir.file("a.su"), first);
  write_bytes(b.data_dir.file("b.su"), second);
  write_bytes(b.data_dir.file("empty.su"), {});

  Join_Files(b.app, b.data_dir.file("a.su"), b.data_dir.file("b.su"), b.data_dir.file("ab.su"));
  EXPECT_EQ(read_bytes(b.data_dir.file("ab.su")), (std::vector<uint8_t>{0x00, 0x41, 0xFF, 0x10, 0x00, 0x7F, 0x00, 0x80}));

  Join_Files(b.app, b.data_dir.file("a.su"), b.data_dir.file("empty.su"), b.data_dir.file("copy.su"));
  EXPECT_EQ(read_bytes(b.data_dir.file("copy.su")), first);

  // the output may be the first file itself: the second is added behind it
  write_bytes(b.data_dir.file("out.su"), first);
  Join_Files(b.app, b.data_dir.file("out.su"), b.data_dir.file("b.su"), b.data_dir.file("out.su"));
  EXPECT_EQ(read_bytes(b.data_dir.file("out.su")), (std::vector<uint8_t>{0x00, 0x41, 0xFF, 0x10, 0x00, 0x7F, 0x00, 0x80}));

  // an output that exists is written over in place, not emptied
  write_bytes(b.data_dir.file("long.su"), std::vector<uint8_t>(10, 0xEE));
  Join_Files(b.app, b.data_dir.file("b.su"), b.data_dir.file("b.su"), b.data_dir.file("long.su"));
  EXPECT_EQ(read_bytes(b.data_dir.file("long.su")),
            (std::vector<uint8_t>{0x7F, 0x00, 0x80, 0x7F, 0x00, 0x80, 0xEE, 0xEE, 0xEE, 0xEE}));

  // missing inputs are passed over; every file number is given back
  Join_Files(b.app, b.data_dir.file("none1.su"), b.data_dir.file("none2.su"), b.data_dir.file("nothing.su"));
  EXPECT_FALSE(fs::exists(b.data_dir.file("none1.su")));
  EXPECT_EQ(b.app.files.free_number(), 1);
  EXPECT_TRUE(b.lines().empty());
}

TEST(FindExecForExt, AsksForAFileOfThatTypeAndRemovesIt) {
  Bench b;
  TempDir temp;
  b.platform.temp = temp.str() + "/";
  b.platform.zip_program = "/opt/zip/zip";
  EXPECT_EQ(Find_Exec_For_Ext(b.app, "ZIP"), "/opt/zip/zip");
  ASSERT_EQ(b.platform.asked.size(), 1u);
  // "-" and a number, its extension replaced; the file was there when asked
  std::string asked = b.platform.asked[0];
  EXPECT_EQ(fs::path(asked).parent_path(), fs::path(temp.str()));
  EXPECT_EQ(fs::path(asked).filename().string().substr(0, 1), "-");
  EXPECT_EQ(fs::path(asked).extension(), ".ZIP");
  EXPECT_TRUE(fs::is_empty(temp.str()));  // nothing left behind

  EXPECT_EQ(Find_Exec_For_Ext(b.app, "XYZ"), "");  // no program for the type
  EXPECT_TRUE(fs::is_empty(temp.str()));

  // a dot in the temporary folder's path: the rename fails, nothing is found
  fs::create_directories(temp.file("with.dot"));
  b.platform.temp = temp.file("with.dot") + "/";
  b.platform.asked.clear();
  EXPECT_EQ(Find_Exec_For_Ext(b.app, "ZIP"), "");
  ASSERT_EQ(b.platform.asked.size(), 1u);
  EXPECT_EQ(b.platform.asked[0], "!" + temp.file("with.ZIP"));

  // no temporary folder: no file is made and nothing asked
  b.platform.temp = "";
  b.platform.asked.clear();
  EXPECT_EQ(Find_Exec_For_Ext(b.app, "ZIP"), "");
  EXPECT_TRUE(b.platform.asked.empty());
}

TEST(ZipFiles, EachSelectedFileIsArchivedBesideItself) {
  Bench b;
  TempDir temp;
  b.platform.temp = temp.str() + "/";
  b.platform.zip_program = "/opt/zip/zip";
  b.app.state.data_folder = "/field/line1/";
  b.platform.dialog_answers.push_back("/field/line1/ rec.1.su rec2.su");
  b.main_panel().click("Command5");
  auto dialog = "{\"event\":\"dialog\",\"kind\":\"open\",\"title\":\"LCM-1 file selection\",\"filter\":" +
                json("Record |*.SU|All files|*.*|") +
                ",\"file\":\"*.SU\",\"dir\":\"/field/line1/\",\"flags\":512,\"filter_index\":0,\"answer\":" +
                json("/field/line1/ rec.1.su rec2.su") + "}";
  std::string folder = b.folder();
  // the archive name is cut at the first dot of the whole name
  EXPECT_EQ(b.lines(),
            (std::vector<std::string>{
                dialog,
                shell_line("/opt/zip/zip -min -a /field/line1/rec.ZIP /field/line1/rec.1.su", "", folder, 1,
                           shell_file_not_found),
                box_line("/field/line1/rec.1.su has been zipped", "information"),
                shell_line("/opt/zip/zip -min -a /field/line1/rec2.ZIP /field/line1/rec2.su", "", folder, 1,
                           shell_file_not_found),
                box_line("/field/line1/rec2.su has been zipped", "information"),
            }));
}

TEST(ZipFiles, SingleFileCancelAndNoArchiver) {
  {
    Bench b;
    TempDir temp;
    b.platform.temp = temp.str() + "/";
    b.platform.zip_program = "/opt/zip/zip";
    b.platform.dialog_answers.push_back("/field/line.1/rec.1.su");
    b.platform.dialog_answers.push_back(std::nullopt);
    b.main_panel().click("Command5");
    b.main_panel().click("Command5");
    // one file: cut at its last dot; a cancel gives back "*.SU", archived all the same
    EXPECT_TRUE(b.platform.asked.size() == 2);
    auto lines = b.lines();
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[1], shell_line("/opt/zip/zip -min -a /field/line.1/rec.1.ZIP /field/line.1/rec.1.su", "",
                                   b.folder(), 1, shell_file_not_found));
    EXPECT_EQ(lines[2], box_line("/field/line.1/rec.1.su has been zipped", "information"));
    EXPECT_EQ(lines[4], shell_line("/opt/zip/zip -min -a *.ZIP *.SU", "", b.folder(), 1, shell_file_not_found));
    EXPECT_EQ(lines[5], box_line("*.SU has been zipped", "information"));
  }
  {
    Bench b;  // no program for ".ZIP": the message, and no dialog
    TempDir temp;
    b.platform.temp = temp.str() + "/";
    b.main_panel().click("Command5");
    EXPECT_EQ(b.lines(), (std::vector<std::string>{box_line("You must install WINZIP ", "none")}));
  }
}

TEST(ProgramStarts, MainPanelTableTestsAndMessages) {
  TempDir app;
  fs::create_directories(app.file("segd"));
  write_text(app.file("segd/tape.exe"), "");
  RunnerOptions options;
  options.app_dir = app.str();
  auto r = run(
      "click Utility.Commandp21\n"   // missing viewer: below 32 is reported
      "click Utility.Option26\n"     // present: started in the application folder
      "click Utility.Option27\n"     // tested first and missing: no start
      "click Utility.Option29\n"     // exactly 0 only: a missing program passes in silence
      "reply no\nclick Utility.Commandp6\n"
      "reply yes\nclick Utility.Commandp6\n",
      options);
  std::string a = app.str();
  std::vector<std::string> expected{
      shell_line(a + "/RECVIEW.EXE", "999", a, 1, shell_file_not_found),
      box_line("Unable to shell application:" + a + "/RECVIEW.EXE", "none"),
      shell_line(a + "/segd/tape.exe", "", a, 1, shell_started),
      box_line("Download RADVIEW.EXE from web and put this file in BIN folder", "stop"),
      shell_line(a + "/SAC_2_SU.EXE", "", a, 1, shell_file_not_found),
      box_line("If you installed The RENAME FreeWare (found on CD) click YES", "none", "yesno", "no"),
      box_line("Install RENAME from CD-ROM...", "information"),
      box_line("If you installed The RENAME FreeWare (found on CD) click YES", "none", "yesno", "yes"),
      shell_line("C:\\program files\\The Rename\\rename.exe", "", a, 1, shell_file_not_found),
  };
  std::vector<std::string> seen;
  for (const auto& line : r.lines)
    if (line.find("\"event\":\"shell\"") != std::string::npos || line.find("\"event\":\"msgbox\"") != std::string::npos)
      seen.push_back(line);
  EXPECT_EQ(seen, expected);
}

TEST(ShellStart, MissingFileAndDetachedProgram) {
  TempDir dir;
  ShellRequest missing;
  missing.file = dir.file("nothing.exe");
  EXPECT_EQ(shell_start(missing), shell_file_not_found);
  missing.file = "";
  EXPECT_EQ(shell_start(missing), shell_file_not_found);

  // A program that takes a second: the start comes back before it is done.
  write_text(dir.file("slow"), "#!/bin/sh\nsleep 1\necho \"$1\" > done.txt\n");
  fs::permissions(dir.file("slow"), fs::perms::owner_all);
  ShellRequest slow;
  slow.file = dir.file("slow");
  slow.params = "finished";
  slow.dir = dir.str();
  EXPECT_TRUE(shell_start_would_find(slow));
  EXPECT_EQ(shell_start(slow), shell_started);
  EXPECT_FALSE(fs::exists(dir.file("done.txt")));
  for (int i = 0; i < 100 && text_of(dir.file("done.txt")) != "finished\n"; ++i) usleep(100000);
  EXPECT_EQ(text_of(dir.file("done.txt")), "finished\n");
}
