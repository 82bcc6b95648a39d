// The outside tools: the batch file, the program of a file type, joining,
// the tools folder, the archive button and the program starts.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "frame/batch_runner.h"
#include "frame/shell_start.h"
#include "script_transcript.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {

// The recording platform with a temporary folder and a file-type table of
// the test's choosing.
class BenchPlatform : public ScriptPlatform {
 public:
  using ScriptPlatform::ScriptPlatform;
  std::optional<std::string> temp;  // nullopt: the platform's own
  std::string zip_program;          // what opens an existing "*.ZIP"
  std::vector<std::string> asked;   // documents asked about, "!" before a missing one
  std::string temp_folder() override { return temp ? *temp : ScriptPlatform::temp_folder(); }
  std::string find_executable(const std::string& document) override {
    bool there = fs::is_regular_file(document);
    asked.push_back((there ? "" : "!") + document);
    return there && fs::path(document).extension() == ".ZIP" ? zip_program : "";
  }
};

struct Folders {
  TempDir app_dir, system_dir, data_dir, temp;
};

// An application in temporary folders (or in `app_folder`), its main panel
// shown; the transcript starts after that show.
struct Bench : Folders, Recording<BenchPlatform> {
  explicit Bench(const std::string& app_folder = "") : Recording(options(app_folder)) {
    app.panels.show("Utility");
    out.str("");
  }
  RunnerOptions options(const std::string& app_folder) {
    RunnerOptions o;
    o.app_dir = app_folder.empty() ? app_dir.str() : app_folder;
    o.system_dir = system_dir.str();
    return o;
  }
  Panel& main_panel() { return *app.panels.loaded("Utility"); }
  std::string folder() { return platform.application_folder(); }
  // Runs Run_Batch on a command file of this text.
  void run_batch(const std::string& commands, int window_style = 1) {
    write_text(data_dir.file("work.bat"), commands);
    Run_Batch(app, data_dir.file("work.bat"), "", window_style);
  }
  void with_archiver() {
    platform.temp = temp.str() + "/";
    platform.zip_program = "/opt/zip/zip";
  }
};

}  // namespace

// The start is recorded as run_batch_started.expected shows, the
// application folder written as ${TF_DIR}.
TEST(RunBatch, CommandFileIsNormalisedSavedAsBatchBatAndStarted) {
  Bench b;
  b.run_batch("segyread  tape= in.sgy >  out.su\r\n");
  EXPECT_EQ(text_of(b.folder() + "/batch.bat"), "segyread tape =in.sgy >out.su\r\n");
  EXPECT_EQ(b.main_panel().text("RichTextBox1"), "segyread tape =in.sgy >out.su\r\n");
  EXPECT_EQ(with_tf_dir(b.lines(), b.folder()), expected_transcript("run_batch_started"));
  EXPECT_EQ(text_of(b.data_dir.file("work.bat")), "segyread  tape= in.sgy >  out.su\r\n");  // left as written
}

TEST(RunBatch, EachBlankRuleRunsOnePassInOrder) {
  const std::pair<const char*, const char*> cases[] = {
      {"SEGYREAD TAPE=LINE1.SGY", "segyread tape=line1.sgy"},  // lower case first
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
  };
  Bench b;
  for (const auto& [written, saved] : cases) {
    b.run_batch(written, 2);
    EXPECT_EQ(text_of(b.folder() + "/batch.bat"), saved) << written;
  }
  // the window style of the caller reaches the start
  EXPECT_EQ(b.lines().size(), 2 * std::size(cases));
  for (const auto& line : b.lines())
    if (line.find("\"shell\"") != std::string::npos) EXPECT_NE(line.find("\"show\":2,"), std::string::npos) << line;
}

// An application folder that is not there: nothing can be saved, the start
// finds no file and the platform's small number (below 32) is reported.
TEST(RunBatch, FailedStartIsReportedWithTheBatchPath) {
  TempDir gone;
  Bench b(gone.file("not-there"));
  b.run_batch("suwind <a.su >b.su");
  EXPECT_EQ(with_tf_dir(b.lines(), gone.file("not-there")), expected_transcript("run_batch_failed"));
}

// A command file that cannot be read saves what the main panel's box held.
TEST(RunBatch, UnreadableCommandFileSavesWhatTheBoxHeld) {
  Bench b;
  b.run_batch("SUSORT <A.SU >B.SU tracf");
  Run_Batch(b.app, b.data_dir.file("gone.bat"), "", 1);
  EXPECT_EQ(text_of(b.folder() + "/batch.bat"), "susort <a.su >b.su tracf");
  EXPECT_EQ(b.lines().size(), 4u);  // two starts, two arrows, no box
}

TEST(FindToolsFolder, SuiteIniOrApplicationFolder) {
  const struct {
    const char* what;
    std::string folder;  // below the data folder, holding segyread.exe
    const char* after;   // what follows the folder in Directory1; nullptr: no INI
    bool kept;
  } cases[] = {
      {"no INI", "tools", nullptr, false},
      {"Directory1 with segyread.exe", "tools", "/", true},
      {"a folder named without its closing separator", "tools", "", false},
      {"read into 90 characters: a longer folder is cut", std::string(90, 'd'), "/", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Bench b;
    const std::string tools = b.data_dir.file(c.folder);
    write_text(tools + "/segyread.exe");
    if (c.after)
      write_text(b.system_dir.file("Larvex32.INI"), "[LARVEX]\r\nRepertoire=/x/\r\nDirectory1=" + tools + c.after + "\r\n");
    b.app.state.su_tools_folder = "before";
    Find_Tools_Folder(b.app);
    EXPECT_EQ(b.app.state.su_tools_folder, c.kept ? tools + "/" : b.folder() + "/");
  }
}

TEST(JoinFiles, SecondAfterFirstWrittenInPlace) {
  Bench b;
  auto file = [&](const std::string& name) { return b.data_dir.file(name); };
  const std::vector<uint8_t> first{0x00, 0x41, 0xFF, 0x10, 0x00}, second{0x7F, 0x00, 0x80};
  const std::vector<uint8_t> both{0x00, 0x41, 0xFF, 0x10, 0x00, 0x7F, 0x00, 0x80};
  write_bytes(file("a.su"), first);
  write_bytes(file("b.su"), second);
  Join_Files(b.app, file("a.su"), file("b.su"), file("ab.su"));
  EXPECT_EQ(read_bytes(file("ab.su")), both);
  // the output may be the first file itself: the second is added behind it
  Join_Files(b.app, file("a.su"), file("b.su"), file("a.su"));
  EXPECT_EQ(read_bytes(file("a.su")), both);
  // an output that exists is written over in place, not emptied
  write_bytes(file("long.su"), std::vector<uint8_t>(10, 0xEE));
  Join_Files(b.app, file("b.su"), file("b.su"), file("long.su"));
  EXPECT_EQ(read_bytes(file("long.su")), (std::vector<uint8_t>{0x7F, 0, 0x80, 0x7F, 0, 0x80, 0xEE, 0xEE, 0xEE, 0xEE}));
  // missing inputs are passed over; every file number is given back
  Join_Files(b.app, file("none1.su"), file("none2.su"), file("nothing.su"));
  EXPECT_FALSE(fs::exists(file("none1.su")));
  EXPECT_EQ(b.app.files.free_number(), 1);
  EXPECT_TRUE(b.lines().empty());
}

TEST(FindExecForExt, AsksForAFileOfThatTypeAndRemovesIt) {
  Bench b;
  b.with_archiver();
  EXPECT_EQ(Find_Exec_For_Ext(b.app, "ZIP"), "/opt/zip/zip");  // the file was there when asked
  ASSERT_EQ(b.platform.asked.size(), 1u);
  EXPECT_EQ(fs::path(b.platform.asked[0]).parent_path(), fs::path(b.temp.str()));
  EXPECT_EQ(Find_Exec_For_Ext(b.app, "XYZ"), "");  // no program for the type
  EXPECT_TRUE(fs::is_empty(b.temp.str()));         // nothing left behind

  // a dot in the temporary folder's path: the rename fails, nothing is found
  fs::create_directories(b.temp.file("with.dot"));
  b.platform.temp = b.temp.file("with.dot") + "/";
  b.platform.asked.clear();
  EXPECT_EQ(Find_Exec_For_Ext(b.app, "ZIP"), "");
  EXPECT_EQ(b.platform.asked, std::vector<std::string>{"!" + b.temp.file("with.ZIP")});
}

// Each selected file is archived beside itself (zip_files.expected, the
// application folder as ${TF_DIR}): several are cut at the first dot of
// the whole name, one file at its last; a cancel gives back "*.SU",
// archived all the same.
TEST(ZipFiles, EachSelectedFileIsArchivedBesideItself) {
  Bench b;
  b.with_archiver();
  b.app.state.data_folder = "/field/line1/";
  b.platform.dialog_answers = {"/field/line1/ rec.1.su rec2.su", "/field/line.1/rec.1.su", std::nullopt};
  for (int i = 0; i < 3; ++i) b.main_panel().click("Command5");
  EXPECT_EQ(with_tf_dir(b.lines(), b.folder()), expected_transcript("zip_files"));
}

TEST(ZipFiles, NoArchiverNoDialog) {
  Bench b;
  b.platform.temp = b.temp.str() + "/";
  b.main_panel().click("Command5");
  EXPECT_EQ(b.lines(), (std::vector<std::string>{box_line("You must install WINZIP ")}));
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
