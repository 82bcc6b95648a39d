// The programs run as a user's machine runs them: a child process with its
// exit code or signal, its output and its peak memory.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace tf::test {

struct ProcessResult {
  int exit_code = -1;  // -1 when a signal ended it
  int signal = 0;
  long peak_kb = 0;    // the child's largest resident size
  std::vector<std::string> lines;  // standard output
  std::string err;                 // standard error
};

// Runs bin/PROGRAM with `args`, standard input from `input`, in `dir`.
inline ProcessResult run_program(const std::string& program, const std::vector<std::string>& args,
                                 const std::string& dir, const std::string& input = "") {
  const std::string out_path = dir + "/.stdout", err_path = dir + "/.stderr", in_path = dir + "/.stdin";
  write_text(in_path, input);
  pid_t pid = fork();
  if (pid == 0) {
    int in = open(in_path.c_str(), O_RDONLY), out = open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644),
        err = open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(in, 0), dup2(out, 1), dup2(err, 2);
    if (chdir(dir.c_str()) != 0) _exit(127);
    const std::string path = std::string(TRACEFOLD_BIN) + "/" + program;
    std::vector<char*> argv{const_cast<char*>(path.c_str())};
    for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    execv(path.c_str(), argv.data());
    _exit(127);
  }
  ProcessResult r;
  int status = 0;
  rusage usage{};
  wait4(pid, &status, 0, &usage);
  if (WIFEXITED(status)) r.exit_code = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) r.signal = WTERMSIG(status);
  r.peak_kb = usage.ru_maxrss;
  r.lines = split_lines(text_of(out_path));
  r.err = text_of(err_path);
  return r;
}

// tracefold-run on a script, with the folder as application and system folder.
inline ProcessResult run_runner(const std::string& script, const std::string& dir, std::vector<std::string> options = {}) {
  for (const char* o : {"--app-dir", dir.c_str(), "--system-dir", dir.c_str()}) options.push_back(o);
  options.push_back("-");
  return run_program("tracefold-run", options, dir, script);
}

// Whether a text is well-formed UTF-8.
inline bool is_utf8(const std::string& s) {
  for (size_t i = 0; i < s.size();) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    size_t n = c < 0x80 ? 1 : c >= 0xC2 && c < 0xE0 ? 2 : c >= 0xE0 && c < 0xF0 ? 3 : c >= 0xF0 && c < 0xF5 ? 4 : 0;
    if (n == 0 || i + n > s.size()) return false;
    for (size_t k = 1; k < n; ++k)
      if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return false;
    i += n;
  }
  return true;
}

}  // namespace tf::test
