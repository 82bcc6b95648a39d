// Scripts of tests/scripts and their expected transcripts. A script names
// the test's own folder as ${TF_DIR}; the transcript is given back with that
// folder written as ${TF_DIR} again, so the expected lines hold no temporary
// path.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "test_support.h"

namespace tf::test {

inline std::vector<std::string> script_lines(const std::string& file) {
  std::ifstream in(std::string(TRACEFOLD_SCRIPTS) + "/" + file);
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  return lines;
}

// Runs tests/scripts/NAME.tfs with TF_DIR set to `dir`.
inline RunResult run_script_file(const std::string& name, const std::string& dir, RunnerOptions options = {}) {
  ::setenv("TF_DIR", dir.c_str(), 1);
  std::string script;
  for (const auto& line : script_lines(name + ".tfs")) script += line + "\n";
  RunResult result = run(script, options);
  std::string quoted = json(dir);
  const std::string as_written = quoted.substr(1, quoted.size() - 2);
  for (auto& line : result.lines)
    for (size_t at = line.find(as_written); at != std::string::npos; at = line.find(as_written, at))
      line.replace(at, as_written.size(), "${TF_DIR}");
  return result;
}

// The lines of tests/scripts/NAME.expected.
inline std::vector<std::string> expected_transcript(const std::string& name) {
  return script_lines(name + ".expected");
}

// The JSON object of one control in a panel dump line.
inline std::string control_in_dump(const std::string& dump, const std::string& control) {
  size_t at = dump.find("\"" + control + "\":{");
  if (at == std::string::npos) return "";
  size_t end = dump.find('}', at);
  return dump.substr(at, end - at + 1);
}

}  // namespace tf::test
