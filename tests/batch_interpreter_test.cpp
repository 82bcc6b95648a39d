// The batch interpreter: Seismic Unix lines with pipes and redirections,
// copy, del and pause, programs and paths found regardless of case.
#include <gtest/gtest.h>

#include <fcntl.h>
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

void write_tool(const std::string& path, const std::string& script) {
  write_text(path, script);
  fs::permissions(path, fs::perms::owner_all);
}

// A record of every byte value, so that a copy that is not byte-exact shows.
std::vector<uint8_t> record_bytes() {
  std::vector<uint8_t> bytes;
  for (int i = 0; i < 600; ++i) bytes.push_back(static_cast<uint8_t>((i * 7) % 256));
  return bytes;
}

// An in-process session writing what the batch prints into a log file.
struct Session {
  TempDir dir;
  BatchSession batch;
  int log_fd = open(dir.file("session.log").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  int nothing_fd = open("/dev/null", O_RDONLY);
  Session() {
    batch.working_dir = dir.str();
    batch.in_fd = nothing_fd;
    batch.out_fd = batch.err_fd = log_fd;
  }
  ~Session() {
    close(log_fd);
    close(nothing_fd);
  }
};

}  // namespace

// tracefold-batch with no terminal and no display runs in the background,
// keeping what the lines print in a log beside the batch file.
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
  const std::string command = "cd '" + dir.str() + "' && env -u DISPLAY -u WAYLAND_DISPLAY PATH='" +
                              dir.file("pathbin") + ":/usr/bin:/bin' timeout -s KILL 30 '" + TRACEFOLD_BIN +
                              "/tracefold-batch' job.bat </dev/null >/dev/null 2>&1";
  ASSERT_NE(WEXITSTATUS(std::system(command.c_str())), 137) << "the batch did not end";
  EXPECT_EQ(read_bytes(dir.file("b.su")), record);  // through the pipe
  EXPECT_FALSE(fs::exists(dir.file("c.su")));       // the unknown tool's line did nothing
  EXPECT_EQ(read_bytes(dir.file("z")), (std::vector<uint8_t>{0x01, 0x00, 0x02, 0xFF, 0x1A}));
  EXPECT_EQ(read_bytes(dir.file("w")), read_bytes(dir.file("z")));
  EXPECT_EQ(read_bytes(dir.file("n")), (std::vector<uint8_t>{0x4D, 0x00}));
  EXPECT_FALSE(fs::exists(dir.file("t")));
  EXPECT_EQ(read_bytes(dir.file("d.su")), record);  // the last line ran
  expect_in(text_of(dir.file("job.log")),
            {"SUNOTHERE' is not a known command, program or batch file.", "Press any key to continue . . . "});
}

TEST(BatchInterpreter, JoinsCopiesAndDeletions) {
  Session s;
  write_bytes(s.dir.file("out.su"), {1, 2});
  write_bytes(s.dir.file("tempo.su"), {3, 0, 4});
  write_bytes(s.dir.file("1.TMP"), {0});
  int last = run_batch_text(
      "copy/b out.su+tempo.su out.su\n"  // onto its first source: appended
      "Copy/B tempo.su + out.su joined.su\n"
      "copy tempo.su nowhere/x.su\n"     // fails, the next line runs
      "del *.tmp\n"
      "del gone.su\n",
      s.batch);
  EXPECT_NE(last, 0);  // the last line found nothing to delete
  EXPECT_EQ(read_bytes(s.dir.file("out.su")), (std::vector<uint8_t>{1, 2, 3, 0, 4}));
  EXPECT_EQ(read_bytes(s.dir.file("joined.su")), (std::vector<uint8_t>{3, 0, 4, 1, 2, 3, 0, 4}));
  EXPECT_FALSE(fs::exists(s.dir.file("1.TMP")));
  EXPECT_FALSE(fs::exists(s.dir.file("2.tmp")));
  EXPECT_EQ(run_batch_text("copy/b missing.su+tempo.su part.su", s.batch), 1);
  EXPECT_EQ(read_bytes(s.dir.file("part.su")), (std::vector<uint8_t>{3, 0, 4}));  // what is there is joined
}

TEST(BatchInterpreter, RedirectionsWithoutBlanksAndLowerCasedNames) {
  Session s;
  write_tool(s.dir.file("Bin/SEGYREAD.EXE"), segyread_script);
  write_tool(s.dir.file("Bin/SegyClean"), segyclean_script);
  const auto record = record_bytes();
  fs::create_directories(s.dir.file("Data"));
  write_bytes(s.dir.file("Data/LINE1.SGY"), record);
  // names as Run_Batch leaves them: lower case, no blank behind a sign
  int last = run_batch_text(
      "bin\\segyread tape=data\\line1.sgy >data\\out.su\r\n"
      "bin\\segyclean<data\\line1.sgy>data\\clean.su\r\n"
      "bin\\segyclean <data\\line1.sgy >>data\\clean.su\r\n"
      "@echo off\r\n"
      "bin\\segyread tape= data\\line1.sgy >nul\r\n",
      s.batch);
  EXPECT_EQ(last, 1);  // "tape=" alone: the stand-in finds no tape
  EXPECT_EQ(read_bytes(s.dir.file("Data/out.su")), record);
  auto twice = record;
  twice.insert(twice.end(), record.begin(), record.end());
  EXPECT_EQ(read_bytes(s.dir.file("Data/clean.su")), twice);
  const std::string log = text_of(s.dir.file("session.log"));
  EXPECT_NE(log.find(s.dir.str() + ">bin\\segyread tape=data\\line1.sgy >data\\out.su\n"), std::string::npos) << log;
  EXPECT_EQ(log.find("tape= data"), std::string::npos);  // not shown after echo off
}

// Beyond what the batches above find (a named folder and PATH, in any
// case, with or without .exe): a folder of another system falls back to
// PATH, a file that is no program is not taken, and NUL is nothing.
TEST(BatchInterpreter, ProgramsAndPathsFoundRegardlessOfCase) {
  TempDir dir;
  write_tool(dir.file("su/SUWIND.EXE"), segyclean_script);
  write_text(dir.file("bin/notes.txt"), "not a program");
  const std::string old_path = std::getenv("PATH") ? std::getenv("PATH") : "";
  setenv("PATH", (dir.file("su") + ":/usr/bin:/bin").c_str(), 1);
  EXPECT_EQ(find_batch_program("c:\\larvex\\suwind", dir.str()), dir.file("su/SUWIND.EXE"));
  EXPECT_EQ(find_batch_program("bin\\notes.txt", dir.str()), "");
  EXPECT_EQ(find_batch_program("sunothere", dir.str()), "");
  setenv("PATH", old_path.c_str(), 1);
  EXPECT_EQ(resolve_path("BIN/new.su", dir.str()), dir.file("bin/new.su"));
  EXPECT_EQ(resolve_path("NUL", dir.str()), "/dev/null");
}

// In a terminal pause takes one key and leaves the rest.
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
  EXPECT_EQ(read(keys[0], rest, sizeof rest), 1);
  EXPECT_EQ(rest[0], 'b');
  close(keys[0]);
}
