#include "ui/headless/script_platform.h"

#include <thread>

#include "frame/conventions.h"
#include "frame/shell_start.h"
#include "ui/headless/json_line.h"

namespace tf {

const char* icon_name(Icon icon) {
  switch (icon) {
    case Icon::stop: return "stop";
    case Icon::question: return "question";
    case Icon::exclamation: return "exclamation";
    case Icon::information: return "information";
    default: return "none";
  }
}

const char* buttons_name(Buttons buttons) {
  switch (buttons) {
    case Buttons::ok_cancel: return "okcancel";
    case Buttons::abort_retry_ignore: return "abortretryignore";
    case Buttons::yes_no_cancel: return "yesnocancel";
    case Buttons::yes_no: return "yesno";
    case Buttons::retry_cancel: return "retrycancel";
    default: return "ok";
  }
}

namespace {
constexpr std::pair<Answer, const char*> answer_names[] = {
    {Answer::ok, "ok"},         {Answer::cancel, "cancel"}, {Answer::abort, "abort"}, {Answer::retry, "retry"},
    {Answer::ignore, "ignore"}, {Answer::yes, "yes"},       {Answer::no, "no"},
};
}  // namespace

const char* answer_name(Answer answer) {
  for (const auto& [a, n] : answer_names)
    if (a == answer) return n;
  return "ok";
}

std::optional<Answer> answer_by_name(const std::string& name) {
  for (const auto& [a, n] : answer_names)
    if (name == n) return a;
  return std::nullopt;
}

Answer first_button(Buttons buttons) {
  switch (buttons) {
    case Buttons::abort_retry_ignore: return Answer::abort;
    case Buttons::yes_no_cancel:
    case Buttons::yes_no: return Answer::yes;
    case Buttons::retry_cancel: return Answer::retry;
    default: return Answer::ok;
  }
}

ScriptPlatform::ScriptPlatform(RunnerOptions options, std::ostream& out)
    : options_(std::move(options)), out_(out), start_(std::chrono::steady_clock::now()) {}

void ScriptPlatform::emit(const std::string& json_line) { out_ << json_line << "\n"; }

void ScriptPlatform::check_limits() {
  double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  if (elapsed > options_.max_seconds) throw RunAborted("the run went past its time limit");
  if (++boxes_ > options_.max_boxes) throw RunAborted("the run showed more boxes than its limit");
}

Answer ScriptPlatform::show_message_box(const MessageBoxRequest& r) {
  check_limits();
  Answer answer = first_button(r.buttons);
  if (!replies.empty()) {
    answer = replies.front();
    replies.pop_front();
  }
  JsonLine line;
  line.add("event", "msgbox").add("text", r.text).add("title", r.title).add("icon", icon_name(r.icon));
  line.add("buttons", buttons_name(r.buttons)).add("answer", answer_name(answer));
  if (r.autoclose_ms) line.add("autoclose_ms", r.autoclose_ms);
  emit(line.str());
  return answer;
}

std::string ScriptPlatform::show_input_box(const InputBoxRequest& r) {
  check_limits();
  std::string answer = r.default_text;
  bool cancelled = false;
  if (!input_answers.empty()) {
    if (input_answers.front()) answer = *input_answers.front();
    else answer.clear(), cancelled = true;
    input_answers.pop_front();
  }
  JsonLine line;
  line.add("event", "inputbox").add("prompt", r.prompt).add("title", r.title).add("default", r.default_text);
  line.add("answer", answer);
  if (cancelled) line.add("cancelled", true);
  emit(line.str());
  return answer;
}

std::string ScriptPlatform::show_file_dialog(const FileDialogRequest& r) {
  check_limits();
  std::string answer = r.file_name;  // a cancel gives back the start name
  bool cancelled = true;
  if (!dialog_answers.empty()) {
    if (dialog_answers.front()) answer = *dialog_answers.front(), cancelled = false;
    dialog_answers.pop_front();
  }
  JsonLine line;
  line.add("event", "dialog").add("kind", r.save ? "save" : "open").add("title", r.title).add("filter", r.filter);
  line.add("file", r.file_name).add("dir", r.initial_dir).add("flags", r.flags).add("filter_index", r.filter_index);
  line.add("answer", answer);
  if (cancelled) line.add("cancelled", true);
  emit(line.str());
  return answer;
}

void ScriptPlatform::beep() { emit(JsonLine().add("event", "beep").str()); }

void ScriptPlatform::set_pointer(const std::string& panel, Pointer pointer) {
  const char* name = pointer == Pointer::hourglass ? "hourglass" : pointer == Pointer::cross ? "cross" : "arrow";
  emit(JsonLine().add("event", "pointer").add("panel", panel).add("pointer", name).str());
}

void ScriptPlatform::process_events() {}

void ScriptPlatform::wait_ms(int ms) {
  if (options_.virtual_clock) {
    virtual_seconds_ += ms / 1000.0;
    return;
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

double ScriptPlatform::seconds_now() {
  double real = std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  return options_.virtual_clock ? virtual_seconds_ : real;
}

void ScriptPlatform::play_sound(const std::string& file) { emit(JsonLine().add("event", "sound").add("file", file).str()); }

void ScriptPlatform::print_text(const std::string& text) { emit(JsonLine().add("event", "print").add("text", text).str()); }

int ScriptPlatform::shell_execute(const ShellRequest& r) {
  int result = 0;
  if (options_.shell_run) {
    result = shell_start(r);
  } else {
    // Recorded only: a missing file still fails as the platform would say.
    ShellRequest probe = r;
    result = shell_start_would_find(probe) ? shell_started : shell_file_not_found;
  }
  JsonLine line;
  line.add("event", "shell").add("verb", r.verb).add("file", r.file).add("params", r.params).add("dir", r.dir);
  line.add("show", r.show).add("result", result);
  emit(line.str());
  return result;
}

std::string ScriptPlatform::find_executable(const std::string& document) { return tf::find_executable(document); }

void ScriptPlatform::panel_shown(const std::string& panel) { emit(JsonLine().add("event", "show").add("panel", panel).str()); }

void ScriptPlatform::panel_unloaded(const std::string& panel) {
  emit(JsonLine().add("event", "unload").add("panel", panel).str());
}

void ScriptPlatform::routine_requested(const std::string& routine) {
  emit(JsonLine().add("event", "routine").add("name", routine).str());
}

void ScriptPlatform::quit() {
  quit_ = true;
  emit(JsonLine().add("event", "quit").str());
}

}  // namespace tf
