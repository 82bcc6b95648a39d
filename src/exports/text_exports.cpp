#include "exports/text_exports.h"

#include <algorithm>
#include <filesystem>

#include "exports/text_formats.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "su/geometry.h"
#include "su/su_record.h"

namespace tf {

namespace {

const char* const per_channel_notice =
    " This module writes one file per channel in ASCII format of the current data  ";
const char* const columns_question =
    "This module allow you to export data (amplitudes) from any SU file to a text file. Continue ? This file can be "
    "edited using any spread sheet ";
const char* const xyz_question =
    "Use this module to export to a text file TIME(Ms) / CDP / AMPLITUDE . Continue ? This file can be edited using "
    "any spread sheet ";
const char* const recorded = " has been recorded";

// Channel files are numbered from this base: its last two digits name them.
constexpr int16_t channel_number_base = 1000;

// An SU file opened for reading as file `number`; a name with a wildcard (a
// cancelled dialog) is a bad file name.
BinaryFile& open_su(App& app, int number, const std::string& name) {
  return app.files.open(number, file_system_name(native_path(name)));
}

// The samples of trace k (from 1) over `samples`. A trace cut by the end of
// the file leaves the rest of the buffer as the previous read left it.
void read_samples(App& app, int number, int32_t k, std::vector<float>& samples) {
  app.state.trace_pos = su::trace_position(k, app.state.ns);
  app.files[number].read_at(int64_t{app.state.trace_pos} + su::header_size, samples.data(), samples.size() * sizeof(float));
}

// The name of the text: the SU name less its last three characters + ".txt".
std::string text_name(const std::string& su_file) {
  if (su_file.size() < 3) throw RunTimeError(err::invalid_call);
  return su_file.substr(0, su_file.size() - 3) + ".txt";
}

// What su2Ascii and Convert_2_X_Y_Z share: the question, the dialog, the
// header words and the trace range. False when the user says No.
struct TraceRange {
  std::string input;
  std::string output;
};
bool ask_trace_range(App& app, const char* question, TraceRange& range, bool with_dt) {
  Platform& platform = app.platform;
  auto& s = app.state;
  if (message(platform, question, Icon::none, Buttons::yes_no) != Answer::yes) return false;
  FileDialogRequest dialog;
  dialog.title = "SU file to export ";
  dialog.filter = "SU files|*.SU|";
  dialog.file_name = s.current_file;
  range.input = platform.file_dialog(dialog);

  resume_next([&] { open_su(app, 1, range.input); });
  int16_t ns = 0;
  resume_next([&] { app.files[1].read_value(su::word("ns").offset, ns); });
  s.ns = ns;
  if (with_dt) resume_next([&] { app.files[1].read_value(su::word("dt").offset, s.dt); });
  resume_next([&] { s.nb_traces = su::trace_count(app.files[1].length(), s.ns); });

  resume_next([&] { s.first_trace = to_i32(leading_number(ask(platform, "First trace to export", "1"))); });
  resume_next([&] { s.last_trace = to_i32(leading_number(ask(platform, "Last trace to export", field_text(s.nb_traces)))); });
  if (s.first_trace > s.last_trace) std::swap(s.first_trace, s.last_trace);
  if (s.first_trace < 1) s.first_trace = 1;
  if (s.last_trace > s.nb_traces) s.last_trace = s.nb_traces;

  resume_next([&] { range.output = text_name(range.input); });
  std::error_code ec;
  std::filesystem::remove(native_path(range.output), ec);
  return true;
}

// Where the next printed item starts: the next multiple of 14 at or past
// the end of the line so far.
size_t next_column(size_t line_length) { return (line_length + 13) / 14 * 14; }

void sample_buffer(App& app) {
  resume_next([&] {
    if (app.state.ns < 0) throw RunTimeError(err::subscript);
    app.state.r4_trace.assign(static_cast<size_t>(app.state.ns), 0.0f);
  });
}

}  // namespace

void su2ascii2(App& app) {
  Platform& platform = app.platform;
  auto& s = app.state;
  // OK and Cancel both go on: the answer is not looked at.
  message(platform, per_channel_notice, Icon::none, Buttons::ok_cancel);
  FileDialogRequest dialog;
  dialog.title = "Seismic Unix File selection";
  dialog.filter = "SU File |*.SU|All files|*.*|";
  dialog.file_name = "*.SU";
  s.current_file = platform.file_dialog(dialog);

  Read_ns_dt(app, s.current_file);
  int16_t stack_flag = 0;
  Calcul_Channel(app, s.current_file, s.nb_traces, s.nb_channels, stack_flag);
  resume_next([&] { open_su(app, 3, s.current_file); });
  int16_t base = channel_number_base;
  int16_t first = 0, last = 0;
  resume_next([&] { first = to_i16(leading_number(ask(platform, "First channel to print", "1"))); });
  resume_next([&] { last = to_i16(leading_number(ask(platform, "Last channel to print", field_text(s.nb_channels)))); });
  sample_buffer(app);

  const std::string stem = s.current_file.size() >= 2 ? s.current_file.substr(0, s.current_file.size() - 2) : "";
  for (int32_t c = first; c <= last; ++c) {
    resume_next([&] { base = i16_add(base, 1); });
    // The last two digits of the base: the first channel written is 01
    // whichever channel it is.
    const std::string number = field_text(base);
    const std::string digits = number.substr(number.size() - 2);
    // Channels count from the start of the file: the first record only.
    resume_next([&] { read_samples(app, 3, c, s.r4_trace); });
    TextOutput out(native_path(stem + digits));
    for (float sample : s.r4_trace) {
      append_exponent_form(out.buffer(), sample);
      out.buffer() += "\r\n";
      out.write_if_large();
    }
  }
  resume_next([&] { app.files.close(3); });
  message(platform, "Conversion OK");
}

void su2Ascii(App& app) {
  auto& s = app.state;
  TraceRange range;
  if (!ask_trace_range(app, columns_question, range, false)) return;
  sample_buffer(app);
  const int32_t first = s.first_trace, last = s.last_trace;
  // Each value once took a fresh read of its whole trace; the reads give the
  // same samples each time, so every trace of the range is read once here,
  // in the order that leaves a cut last trace completed by the one before.
  // The samples are laid out by lines, a block of traces at a time.
  const size_t ns = s.r4_trace.size();
  const size_t width = last >= first ? static_cast<size_t>(last - first + 1) : 0;
  std::vector<float> lines(width * ns);
  constexpr size_t block = 64;
  std::vector<float> traces(block * ns);
  for (size_t start = 0; start < width; start += block) {
    const size_t count = std::min(block, width - start);
    for (size_t j = 0; j < count; ++j) {
      resume_next([&] { read_samples(app, 1, first + static_cast<int32_t>(start + j), s.r4_trace); });
      std::copy(s.r4_trace.begin(), s.r4_trace.end(), traces.begin() + static_cast<ptrdiff_t>(j * ns));
    }
    for (size_t i = 0; i < ns; ++i)
      for (size_t j = 0; j < count; ++j) lines[i * width + start + j] = traces[j * ns + i];
  }
  TextOutput out(native_path(range.output));
  std::string& text = out.buffer();
  for (size_t i = 0; i < ns; ++i) {
    // Room for the longest line, cut to what was written.
    const size_t start = text.size();
    text.resize(start + width * (exponent_form_size + 1) + 2);
    char* at = text.data() + start;
    for (size_t k = 0; k < width; ++k) {
      at = put_exponent_form(at, lines[i * width + k]);
      *at++ = ',';
    }
    *at++ = '\r';
    *at++ = '\n';
    text.resize(static_cast<size_t>(at - text.data()));
    out.write_if_large();
  }
  out.close();
  resume_next([&] { app.files.close_all(); });
  message(app.platform, range.output + recorded, Icon::information);
}

void Convert_2_X_Y_Z(App& app) {
  auto& s = app.state;
  TraceRange range;
  if (!ask_trace_range(app, xyz_question, range, true)) return;
  sample_buffer(app);
  // Three printed items a line in columns of 14: cdp, the time in ms and
  // the sample. The cdp item (12 characters at most) always ends before
  // column 14, so the time starts there; its item and the blanks up to the
  // next column are the same for every trace, and made once. Times are
  // negative down the trace; the first sample lies at one interval, not at 0.
  std::vector<std::string> times;
  for (size_t i = 1; i <= s.r4_trace.size(); ++i) {
    std::string item = number_text(-(s.dt / 1000.0) * static_cast<double>(i)) + " ";
    item.resize(next_column(14 + item.size()) - 14, ' ');
    times.push_back(item);
  }
  TextOutput out(native_path(range.output));
  std::string& text = out.buffer();
  int32_t cdp = 0;
  for (int32_t k = s.first_trace; k <= s.last_trace; ++k) {
    resume_next([&] { read_samples(app, 1, k, s.r4_trace); });
    resume_next([&] { app.files[1].read_value(int64_t{s.trace_pos} + su::word("cdp").offset, cdp); });
    std::string cdp_item = number_text(int64_t{cdp}) + " ";
    cdp_item.resize(next_column(cdp_item.size()), ' ');
    for (size_t i = 0; i < s.r4_trace.size(); ++i) {
      // The sample is a single, printed with its 7 digits.
      const size_t start = text.size();
      text.resize(start + cdp_item.size() + times[i].size() + number_text_size + 3);
      char* at = std::copy(cdp_item.begin(), cdp_item.end(), text.data() + start);
      at = std::copy(times[i].begin(), times[i].end(), at);
      at = put_number_text(at, s.r4_trace[i]);
      at = std::copy_n(" \r\n", 3, at);
      text.resize(static_cast<size_t>(at - text.data()));
    }
    out.write_if_large();
  }
  out.close();
  resume_next([&] { app.files.close_all(); });
  message(app.platform, range.output + recorded, Icon::information);
}

}  // namespace tf
