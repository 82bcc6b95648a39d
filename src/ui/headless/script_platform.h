// The platform of the headless runner: boxes and dialogs answered from a
// queue that the script fills, everything written to a JSON-lines transcript.
#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <ostream>
#include <string>

#include "frame/platform.h"

namespace tf {

struct RunnerOptions {
  std::string app_dir = ".";
  std::string system_dir = ".";
  bool shell_run = false;     // record: log the start only; run: start for real
  bool virtual_clock = true;  // waits return at once
  double max_seconds = 60;    // a run past this ends with exit code 3
  long max_boxes = 1000;      // so does a run that shows more boxes than this
};

class ScriptPlatform : public Platform {
 public:
  ScriptPlatform(RunnerOptions options, std::ostream& out);

  // Answers for the next boxes, in order.
  std::deque<std::optional<std::string>> dialog_answers;  // nullopt: cancel
  std::deque<std::optional<std::string>> input_answers;
  std::deque<Answer> replies;

  void emit(const std::string& json_line);
  bool quit_requested() const { return quit_; }

  Answer show_message_box(const MessageBoxRequest& request) override;
  std::string show_input_box(const InputBoxRequest& request) override;
  std::string show_file_dialog(const FileDialogRequest& request) override;
  void beep() override;
  void set_pointer(const std::string& panel, Pointer pointer) override;
  void process_events() override;
  void wait_ms(int ms) override;
  double seconds_now() override;
  void play_sound(const std::string& file) override;
  void print_text(const std::string& text) override;
  int shell_execute(const ShellRequest& request) override;
  std::string find_executable(const std::string& document) override;
  void panel_shown(const std::string& panel) override;
  void panel_unloaded(const std::string& panel) override;
  void routine_requested(const std::string& routine) override;
  void quit() override;
  std::string application_folder() override { return options_.app_dir; }
  std::string system_folder() override { return options_.system_dir; }

 private:
  void check_limits();
  RunnerOptions options_;
  std::ostream& out_;
  std::chrono::steady_clock::time_point start_;
  double virtual_seconds_ = 0;
  long boxes_ = 0;
  bool quit_ = false;
};

const char* icon_name(Icon icon);
const char* buttons_name(Buttons buttons);
const char* answer_name(Answer answer);
std::optional<Answer> answer_by_name(const std::string& name);
// The first button of a set: what an unanswered box takes.
Answer first_button(Buttons buttons);

}  // namespace tf
