#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "frame/batch_interpreter.h"
#include "test_support.h"

using namespace tf;
using namespace tf::test;

namespace fs = std::filesystem;

namespace {

// Stand-ins for the Seismic Unix tools: segyread writes its tape= file to
// its output, segyclean copies its input to its output.
const std::string segyread_script =
    "#!/bin/sh\nfor a in \"$@\"; do case \"$a\" in tape=*) exec cat \"${a#tape=}\";; esac; done\nexit 1\n";
const std::string segyclean_script = "#!/bin/sh\nexec cat\n";

void write_text(const std::string& path, const std::string& text) {
  fs::create_directories(fs::path(path).parent_path());
  write_bytes(path, std::vector<uint8_t>(text.begin(), text.end()));
}

void write_tool(const std::string& path, const std::string& script) {
  write_text(path, script);
  fs::permissions(path, fs::perms::owner_all);
}

std::string text_of(const std::string& path) {
  auto bytes = read_bytes(path);
  return std::string(bytes.begin(), bytes.end());
}

// A record of every byte value, so that a copy that is not byte-exact shows.
std::vector<uint8_t> record_bytes() {
  std::vector<uint8_t> bytes;
  for (int i = 0; i < 600; ++i) bytes.push_back(static_cast<uint8_t>((i * 7) % 256));
  return bytes;
}

// Runs a program in a folder with no terminal and no display, PATH as given;
// -1 when it had to be stopped after the time limit.
int run_detached_from_terminal(const std::vector<std::string>& args, const std::string& folder,
                               const std::string& path) {
  pid_t pid = fork();
  if (pid == 0) {
    setpgid(0, 0);
    if (chdir(folder.c_str()) != 0) _exit(126);
    int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, 0);
    dup2(nothing, 1);
    dup2(nothing, 2);
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    setenv("PATH", path.c_str(), 1);
    std::vector<char*> argv;
    for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  for (int waited = 0; waited < 600; ++waited) {
    if (waitpid(pid, &status, WNOHANG) == pid) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    usleep(50000);
  }
  kill(-pid, SIGKILL);
  waitpid(pid, &status, 0);
  return -1;
}

// An in-process session writing what the batch prints into a log file.
struct Session {
  TempDir dir;
  BatchSession batch;
  int log_fd = -1, nothing_fd = -1;
  Session() {
    log_fd = open(dir.file("session.log").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    nothing_fd = open("/dev/null", O_RDONLY);
    batch.working_dir = dir.str();
    batch.in_fd = nothing_fd;
    batch.out_fd = batch.err_fd = log_fd;
  }
  ~Session() {
    close(log_fd);
    close(nothing_fd);
  }
  std::string log() { return text_of(dir.file("session.log")); }
  std::string file(const std::string& name) { return dir.file(name); }
};

}  // namespace

TEST(BatchInterpreter, SeismicUnixBatchRunsToTheEndInTheBackground) {
  TempDir dir;
  write_tool(dir.file("tools/segyread"), segyread_script);
  write_tool(dir.file("pathbin/segyclean"), segyclean_script);
  const auto record = record_bytes();
  write_bytes(dir.file("a.sgy"), record);
  write_bytes(dir.file("x"), {0x01, 0x00, 0x02});
  write_bytes(dir.file("y"), {0xFF, 0x1A});
  write_bytes(dir.file("m"), {0x4D, 0x00});
  write_bytes(dir.file("t"), {0x54});
  write_text(dir.file("job.bat"),
             "TOOLS\\SEGYREAD.EXE tape=a.sgy | SEGYCLEAN >b.su\r\n"
             "tools\\SUNOTHERE <a.sgy >c.su\r\n"
             "copy/b x+y z\r\n"
             "copy /b x + y w\r\n"
             "Copy m n\r\n"
             "del t\r\n"
             "pause\r\n"
             "command.com /c tools\\segyread tape=a.sgy>d.su\r\n");

  int result = run_detached_from_terminal({std::string(TRACEFOLD_BIN) + "/tracefold-batch", "job.bat"}, dir.str(),
                                          dir.file("pathbin") + ":/usr/bin:/bin");
  ASSERT_NE(result, -1) << "the batch did not end";
  EXPECT_EQ(read_bytes(dir.file("b.su")), record);  // through the pipe
  EXPECT_FALSE(fs::exists(dir.file("c.su")));       // the unknown tool's line did nothing
  EXPECT_EQ(read_bytes(dir.file("z")), (std::vector<uint8_t>{0x01, 0x00, 0x02, 0xFF, 0x1A}));
  EXPECT_EQ(read_bytes(dir.file("w")), (std::vector<uint8_t>{0x01, 0x00, 0x02, 0xFF, 0x1A}));
  EXPECT_EQ(read_bytes(dir.file("n")), (std::vector<uint8_t>{0x4D, 0x00}));
  EXPECT_FALSE(fs::exists(dir.file("t")));
  EXPECT_EQ(read_bytes(dir.file("d.su")), record);  // the last line ran
  std::string log = text_of(dir.file("job.log"));
  EXPECT_NE(log.find("SUNOTHERE' is not a known command, program or batch file."), std::string::npos) << log;
  EXPECT_NE(log.find("Press any key to continue . . . "), std::string::npos) << log;
}

TEST(BatchInterpreter, JoinsCopiesAndDeletions) {
  Session s;
  write_bytes(s.file("out.su"), {1, 2});
  write_bytes(s.file("tempo.su"), {3, 0, 4});
  write_bytes(s.file("1.TMP"), {0});
  write_bytes(s.file("2.tmp"), {0});
  write_bytes(s.file("keep.su"), {9});
  int last = run_batch_text(
      "copy/b out.su+tempo.su out.su\n"  // onto its first source: appended
      "Copy/B tempo.su + out.su joined.su\n"
      "copy tempo.su nowhere/x.su\n"     // fails, the next line runs
      "copy keep.su kept.su\n"
      "del *.tmp\n"
      "del gone.su\n",
      s.batch);
  EXPECT_NE(last, 0);  // the last line found nothing to delete
  EXPECT_EQ(read_bytes(s.file("out.su")), (std::vector<uint8_t>{1, 2, 3, 0, 4}));
  EXPECT_EQ(read_bytes(s.file("joined.su")), (std::vector<uint8_t>{3, 0, 4, 1, 2, 3, 0, 4}));
  EXPECT_EQ(read_bytes(s.file("kept.su")), (std::vector<uint8_t>{9}));
  EXPECT_FALSE(fs::exists(s.file("1.TMP")));
  EXPECT_FALSE(fs::exists(s.file("2.tmp")));
  EXPECT_TRUE(fs::exists(s.file("keep.su")));
  EXPECT_EQ(run_batch_text("copy/b missing.su+tempo.su part.su", s.batch), 1);
  EXPECT_EQ(read_bytes(s.file("part.su")), (std::vector<uint8_t>{3, 0, 4}));  // what is there is joined
}

TEST(BatchInterpreter, RedirectionsWithoutBlanksAndLowerCasedNames) {
  Session s;
  write_tool(s.file("Bin/SEGYREAD.EXE"), segyread_script);
  write_tool(s.file("Bin/SegyClean"), segyclean_script);
  const auto record = record_bytes();
  fs::create_directories(s.file("Data"));
  write_bytes(s.file("Data/LINE1.SGY"), record);
  // names as Run_Batch leaves them: lower case, no blank behind a sign
  int last = run_batch_text(
      "bin\\segyread tape=data\\line1.sgy >data\\out.su\r\n"
      "bin\\segyclean<data\\line1.sgy>data\\clean.su\r\n"
      "bin\\segyclean <data\\line1.sgy >>data\\clean.su\r\n"
      "@echo off\r\n"
      "bin\\segyread tape= data\\line1.sgy >nul\r\n",
      s.batch);
  EXPECT_EQ(last, 1);  // "tape=" alone: the stand-in finds no tape
  EXPECT_EQ(read_bytes(s.file("Data/out.su")), record);
  auto twice = record;
  twice.insert(twice.end(), record.begin(), record.end());
  EXPECT_EQ(read_bytes(s.file("Data/clean.su")), twice);
  std::string log = s.log();
  EXPECT_NE(log.find(s.dir.str() + ">bin\\segyread tape=data\\line1.sgy >data\\out.su\n"), std::string::npos) << log;
  EXPECT_EQ(log.find("tape= data"), std::string::npos);  // not shown after echo off
}

TEST(BatchInterpreter, ProgramsFoundInTheirFolderElseOnPath) {
  TempDir dir;
  write_tool(dir.file("bin/segyread"), segyread_script);
  write_tool(dir.file("su/SUWIND.EXE"), segyclean_script);
  write_text(dir.file("bin/notes.txt"), "not a program");
  const char* saved = std::getenv("PATH");
  std::string old_path = saved ? saved : "";
  setenv("PATH", (dir.file("su") + ":/usr/bin:/bin").c_str(), 1);
  EXPECT_EQ(find_batch_program("BIN\\SEGYREAD.EXE", dir.str()), dir.file("bin/segyread"));
  EXPECT_EQ(find_batch_program(dir.file("bin") + "\\Segyread", ""), dir.file("bin/segyread"));
  // a folder of another system is not here: PATH, in any case, with or without .exe
  EXPECT_EQ(find_batch_program("c:\\larvex\\suwind", dir.str()), dir.file("su/SUWIND.EXE"));
  EXPECT_EQ(find_batch_program("suwind.exe", dir.str()), dir.file("su/SUWIND.EXE"));
  EXPECT_EQ(find_batch_program("bin\\notes.txt", dir.str()), "");
  EXPECT_EQ(find_batch_program("sunothere", dir.str()), "");
  setenv("PATH", old_path.c_str(), 1);
}

TEST(BatchInterpreter, PathsFoundRegardlessOfCase) {
  TempDir dir;
  fs::create_directories(dir.file("Line A"));
  write_bytes(dir.file("Line A/Rec1.SU"), {1});
  EXPECT_EQ(resolve_path("line a/rec1.su", dir.str()), dir.file("Line A/Rec1.SU"));
  EXPECT_EQ(resolve_path("Line A/Rec1.SU", dir.str()), "Line A/Rec1.SU");  // there as written
  EXPECT_EQ(resolve_path("line a/new.su", dir.str()), dir.file("Line A/new.su"));
  EXPECT_EQ(resolve_path("c:/data/x.su", dir.str()), "c:/data/x.su");
  EXPECT_EQ(resolve_path("NUL", dir.str()), "/dev/null");
}

TEST(BatchInterpreter, PauseTakesOneKeyWhereItWaits) {
  Session s;
  int keys[2];
  ASSERT_EQ(pipe(keys), 0);
  ASSERT_EQ(write(keys[1], "ab", 2), 2);
  close(keys[1]);
  s.batch.in_fd = keys[0];
  s.batch.pause_waits = true;
  EXPECT_EQ(run_batch_text("pause\r\n", s.batch), 0);
  char rest[4] = {};
  EXPECT_EQ(read(keys[0], rest, sizeof rest), 1);  // one key was taken, one is left
  EXPECT_EQ(rest[0], 'b');
  close(keys[0]);
}
