// Scripts of tests/scripts and their expected transcripts, in which the
// test's own folder is written ${TF_DIR}; and reading panel dumps.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "test_support.h"

namespace tf::test {

// Transcript lines with the folder `dir` written as ${TF_DIR}.
inline std::vector<std::string> with_tf_dir(std::vector<std::string> lines, const std::string& dir) {
  const std::string quoted = json(dir), as_written = quoted.substr(1, quoted.size() - 2);
  for (auto& line : lines)
    for (size_t at = line.find(as_written); !dir.empty() && at != std::string::npos; at = line.find(as_written, at))
      line.replace(at, as_written.size(), "${TF_DIR}");
  return lines;
}

// Runs tests/scripts/NAME.tfs with TF_DIR set to `dir`.
inline RunResult run_script_file(const std::string& name, const std::string& dir = "", RunnerOptions options = {}) {
  ::setenv("TF_DIR", dir.c_str(), 1);
  RunResult result = run(text_of(std::string(TRACEFOLD_SCRIPTS) + "/" + name + ".tfs"), options);
  result.lines = with_tf_dir(result.lines, dir);
  return result;
}

// The lines of tests/scripts/NAME.expected.
inline std::vector<std::string> expected_transcript(const std::string& name) {
  return split_lines(text_of(std::string(TRACEFOLD_SCRIPTS) + "/" + name + ".expected"));
}

// The JSON object of one control in a panel dump.
inline std::string control_in_dump(const std::string& dump, const std::string& control) {
  size_t at = dump.find("\"" + control + "\":{");
  if (at == std::string::npos) return "";
  return dump.substr(at, dump.find('}', at) - at + 1);
}

// The text of one control in a panel dump, as the transcript writes it.
inline std::string text_in(const std::string& dump, const std::string& control) {
  size_t at = dump.find("\"text\":\"", dump.find("\"" + control + "\":{"));
  size_t end = at == std::string::npos ? at : at + 8;
  while (end < dump.size() && dump[end] != '"') end += dump[end] == '\\' ? 2 : 1;
  return at == std::string::npos ? "" : dump.substr(at + 8, end - at - 8);
}

inline std::vector<std::string> texts_in(const std::string& dump, std::initializer_list<const char*> controls) {
  std::vector<std::string> texts;
  for (const char* c : controls) texts.push_back(text_in(dump, c));
  return texts;
}

}  // namespace tf::test
