#include "operations/trace_edits.h"

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/panel.h"
#include "operations/su_files.h"
#include "su/su_record.h"

namespace tf {

namespace {
constexpr int file_must_exist = 4096;

// The lines of the mode question, in the order the user reads them; the
// modes that follow are not in that order.
const char* const mode_lines[] = {"To remove all FBP below XX ms Type 1", "add/remove a time(ms) Type 2",
                                  "To scale all FBP value Type 3", "To Exit Type 0"};
const char* const value_prompts[] = {"", " Enter the limit (ms), all smaller FBP will be removed ",
                                     " Enter the scale factor to apply to all FBP values ",
                                     " Enter the value (ms) to add or remove (negative) to all FBP"};

std::string ask_number(Platform& platform, const std::string& prompt) {
  InputBoxRequest ask;
  ask.prompt = prompt;
  ask.default_text = "0";
  return platform.input_box(ask);
}

std::string choose_su_file(Platform& platform, const std::string& title) {
  FileDialogRequest dialog;
  dialog.flags = file_must_exist;
  dialog.title = title;
  dialog.filter = "Seismic Unix (SU)|*.SU|All files|*.*|";
  dialog.file_name = "*.SU";
  return platform.file_dialog(dialog);
}
}  // namespace

void Replace_Trace(App& app) {
  Platform& platform = app.platform;
  FileTable& files = app.files;
  SessionState& state = app.state;
  if (message(platform, "This module allow you to import a trace from a SU file to replace an existing trace on another SU file",
              Icon::none, Buttons::ok_cancel) == Answer::cancel)
    return;
  const std::string target = choose_su_file(platform, "Qualtor File where to IMPORT a new trace");
  const std::string source = choose_su_file(platform, "Qualtor File where to EXTRACT a  trace");
  int16_t a = 0, b = 0;
  resume_next([&] { a = field_i16(ask_number(platform, " Enter the trace number to be changed in " + target)); });
  resume_next([&] { b = field_i16(ask_number(platform, " Enter the trace number to be extracted from " + source)); });
  int16_t ns[3] = {}, dt[3] = {};
  for (int n : {1, 2})
    resume_next([&] { first_ns_dt(open_existing(files, n, n == 1 ? target : source), ns[n], dt[n]); });
  if (dt[1] != dt[2] || ns[1] != ns[2]) {
    message(platform, "Samplerate or number of sample are not equals", Icon::stop);
    resume_next([&] { files.close_all(); });
    return;
  }
  state.ns = ns[1];
  // A trace past the end of the source reads nothing and leaves zeros.
  resume_next([&] { size_samples(state.r4_trace, state.ns); });
  const int64_t size = su::header_size + 4 * int64_t{state.ns};
  const size_t bytes = 4 * static_cast<size_t>(std::max(state.ns, 0));
  auto samples = [&] {
    if (state.r4_trace.size() < 2) throw RunTimeError(err::subscript);
    return &state.r4_trace[1];
  };
  resume_next([&] { files[2].read_at((b - 1) * size + su::header_size, samples(), bytes); });
  // Trace 0, the default, lies before the first record: the write fails.
  resume_next([&] { files[1].write_at((a - 1) * size + su::header_size, samples(), bytes); });
  resume_next([&] { files.close_all(); });
  message(platform, "Trace " + number_text(a) + " of file " + target + "has been replaced by trace n\xC2\xB0" +
                        number_text(b) + " of the file " + source,
          Icon::information);
}

void Modify_FBP(App& app) {
  Platform& platform = app.platform;
  FileTable& files = app.files;
  SessionState& state = app.state;
  state.file_in = record_dialog(platform, "SU file selection", "Record |*.SU|", "*.SU*", state.data_folder, 0);

  std::string prompt;
  for (const char* line : mode_lines) prompt += (prompt.empty() ? "" : state.crlf) + line;
  int16_t mode = 0;
  resume_next([&] { mode = field_i16(ask_number(platform, prompt)); });
  if (mode == 0) return;
  const double value = leading_number(ask_number(platform, mode >= 1 && mode <= 3 ? value_prompts[mode] : ""));
  if (value == 0) return;

  resume_next([&] { state.ns = first_ns(open_existing(files, 1, state.file_in)); });
  resume_next([&] { state.nb_traces = su::trace_count(files[1].length(), state.ns); });
  const auto& fbp_word = su::word("fbp");
  for (int32_t k = 1; k <= state.nb_traces; ++k) {
    resume_next([&] { state.trace_pos = su::trace_position(k, state.ns); });
    int16_t fbp = 0;
    resume_next([&] { fbp = static_cast<int16_t>(su::read_word(files[1], state.trace_pos, fbp_word)); });
    bool remove = false;
    if (mode == 1) {
      remove = fbp / 10.0 < value;  // tenths of a millisecond against milliseconds
    } else if (mode == 2 || mode == 3) {
      // Scaling and shifting are computed in 16 bits (an overflow leaves the
      // pick as it was, in the count, not in milliseconds); only a result
      // below 0 reaches the file, and as 0.
      resume_next([&] { fbp = mode == 2 ? to_i16(fbp * value) : to_i16(fbp + value); });
      remove = fbp < 0;
    }
    if (remove) resume_next([&] { su::write_word(files[1], state.trace_pos, fbp_word, 0); });
  }
  resume_next([&] { files.close(1); });
  // The result text is built and not shown: the box says only "OK, done".
  std::string result;
  if (mode == 1) result = "All FBP values smaller than " + number_text(value) + "have been removed from " + state.file_in;
  if (mode == 2) result = "FBP have been scaled in" + state.file_in;
  if (mode == 3) result = "FBP have been updated in" + state.file_in;
  (void)result;
  message(platform, "OK, done", Icon::exclamation);
}

}  // namespace tf
