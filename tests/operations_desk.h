// An application on the recording platform with one of the SU operation
// panels shown, and the answers for its boxes queued by the test.
#pragma once

#include <cstdlib>
#include <string>

#include "script_transcript.h"
#include "test_support.h"

namespace tf::test {

template <typename P = ScriptPlatform>
struct Desk : Recording<P> {
  explicit Desk(RunnerOptions options = {}) : Recording<P>(std::move(options)) {}
  Panel& show(const std::string& panel) { return *this->app.panels.show(panel); }
  Desk& dialog(const std::string& answer) {
    this->platform.dialog_answers.push_back(answer);
    return *this;
  }
  Desk& reply(Answer answer) {
    this->platform.replies.push_back(answer);
    return *this;
  }
  Desk& input(const std::string& answer) {
    this->platform.input_answers.push_back(answer);
    return *this;
  }
  int beeps() const {
    int n = 0;
    for (const auto& l : this->lines()) n += l.find("\"event\":\"beep\"") != std::string::npos;
    return n;
  }
  // The message boxes shown, each as its text, title, icon and buttons.
  std::vector<std::string> messages() const {
    std::vector<std::string> v;
    for (const auto& l : this->lines())
      if (l.find("\"event\":\"msgbox\"") != std::string::npos) v.push_back(l);
    return v;
  }
};

// A whole message box line with a title of the caller's.
inline std::string titled_box(const std::string& text, const std::string& title, const std::string& icon = "none",
                              const std::string& buttons = "ok", const std::string& answer = "ok") {
  return "{\"event\":\"msgbox\",\"text\":" + json(text) + ",\"title\":" + json(title) + ",\"icon\":\"" + icon +
         "\",\"buttons\":\"" + buttons + "\",\"answer\":\"" + answer + "\"}";
}

// The transcript of tests/scripts/NAME.tfs is NAME.expected. With
// TF_WRITE_EXPECTED set, the transcript is written as the expected one, to
// be read over before it is kept.
inline void expect_transcript(const std::string& name, const RunResult& result) {
  if (std::getenv("TF_WRITE_EXPECTED")) {
    std::string text;
    for (const auto& line : result.lines) text += line + "\n";
    write_text(std::string(TRACEFOLD_SCRIPTS) + "/" + name + ".expected", text);
  }
  EXPECT_EQ(result.lines, expected_transcript(name));
}

// Runs tests/scripts/NAME.tfs with `dir` as TF_DIR and as application folder.
inline void expect_script_in(const std::string& name, const TempDir& dir) {
  RunnerOptions options;
  options.app_dir = dir.str();
  expect_transcript(name, run_script_file(name, dir.str(), options));
}

}  // namespace tf::test
