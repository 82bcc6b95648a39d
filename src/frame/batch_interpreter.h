// The batch files that the panels write, run line by line where the
// platform has no batch interpreter of its own: Seismic Unix command lines
// with pipes and redirections, and the copy, del and pause commands.
#pragma once

#include <string>

namespace tf {

// Where a batch runs: its working folder ("" for the current one), the
// standard streams that its commands get, and whether pause waits for a key
// (in a terminal) or passes (in the background).
struct BatchSession {
  std::string working_dir;
  int in_fd = 0;
  int out_fd = 1;
  int err_fd = 2;
  bool pause_waits = false;
  bool echo = true;  // each line is shown before it runs, until "echo off"
};

// Runs one line; 0 when it went well. A line that fails (unknown program,
// missing file) reports on the error stream and leaves the next line free
// to run.
int run_batch_line(const std::string& line, BatchSession& session);

// Runs a whole batch text, every line in turn; gives the result of the last.
int run_batch_text(const std::string& text, BatchSession session);

// The file of a program named in a batch line ("C:\larvex\SEGYREAD.EXE",
// "bin\segyclean", "suwind"): looked up case-insensitively, with or without
// ".exe", in the folder it names, else on PATH. "" when there is none.
std::string find_batch_program(const std::string& name, const std::string& working_dir);

// A path as a case-insensitive file system would find it: each part that is
// not there as written is matched against its folder's entries regardless
// of case. Parts that match nothing are kept as written.
std::string resolve_path(const std::string& path, const std::string& working_dir);

}  // namespace tf
