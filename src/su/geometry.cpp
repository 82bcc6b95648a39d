#include "su/geometry.h"

#include <cmath>

#include "frame/conventions.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const fldr_missing =
    "You must verify the Field Record Number (FLDR), this value is missing. Use HEADER UTILITY to renumber files";
const char* const confirm_channels = "Confirm the number of channels per record";
const char* const update_headers = "Would you update header values with channel numbers ?";

// The channel scan looks at the first 150 traces at most.
constexpr int32_t channel_scan_limit = 150;

// The step of the stack scan by file size. The scan still reads the first
// traces one by one: the step only shortens it to traces / step.
int32_t stack_step(int32_t traces) {
  if (traces < 1000) return 1;
  if (traces < 5000) return 5;
  if (traces < 20000) return 50;
  return 100;
}

// Text5 of the panel that called, the default of the channel question;
// a panel without one leaves it empty.
std::string calling_panel_text5(App& app) {
  Panel* panel = app.panels.active;
  Control* field = panel ? panel->find("Text5") : nullptr;
  return field ? field->text : "";
}

// A header word of the trace at trace_pos read over `value`: a read past
// the end of the file leaves what the previous read gave.
template <typename T>
void read_header(App& app, const char* key, T& value) {
  app.files[1].read_value(int64_t{app.state.trace_pos} + su::word(key).offset, value);
}

// The largest nhs of the first `count` traces.
int16_t largest_fold(App& app, int32_t count) {
  int16_t nhs = 0, largest = 0;
  for (int32_t k = 1; k <= count; ++k) {
    resume_next([&] { app.state.trace_pos = su::trace_position(k, app.state.ns); });
    resume_next([&] { read_header(app, "nhs", nhs); });
    if (nhs > largest) largest = nhs;
  }
  return largest;
}

void read_ns(App& app) {
  int16_t ns = 0;
  app.files[1].read_value(su::word("ns").offset, ns);
  app.state.ns = ns;
}
}  // namespace

void Detect_Geometry(App& app, const std::string& file, int32_t& traces, int16_t& channels, int16_t& stack_flag) {
  auto& s = app.state;
  auto& files = app.files;
  const std::string path = native_path(file);
  resume_next([&] { files.close_all(); });
  resume_next([&] { files.open(1, path); });
  int32_t fldr = 0;
  resume_next([&] { files[1].read_value(su::word("fldr").offset, fldr); });
  if (fldr == 0) message(app.platform, fldr_missing, Icon::stop);  // and on all the same
  resume_next([&] { read_ns(app); });
  resume_next([&] { traces = su::trace_count(files[1].length(), s.ns); });
  const int32_t limit = traces < channel_scan_limit ? traces : channel_scan_limit;
  channels = 0;
  stack_flag = 0;

  int32_t scanned = 0;
  resume_next([&] { scanned = to_i32(static_cast<double>(traces) / stack_step(traces)); });
  if (largest_fold(app, scanned) > 1) {
    stack_flag = stacked;
    channels = 0;
    return;  // file 1 stays open
  }

  int32_t offset = 0, tracf = 0;
  int16_t first = 0, c = 0;
  for (int32_t k = 1; k <= limit; ++k) {
    resume_next([&] { s.trace_pos = su::trace_position(k, s.ns); });
    resume_next([&] { read_header(app, "offset", offset); });  // read and not used
    resume_next([&] { read_header(app, "tracf", tracf); });
    resume_next([&] { c = to_i16(tracf); });
    if (k == 1) first = c;
    if (c > channels) channels = c;
    // The fifth trace numbered as the first: one channel a record, or four.
    if (c == first && k == 5) {
      channels = 0;
      break;
    }
    if (c < channels) break;  // the numbering fell back at a new record
  }
  resume_next([&] { files.close_all(); });

  // Sorted or NMO-corrected files are taken as reordered. The found flag
  // keeps the last search of the name only.
  const std::string name = lower(file);
  bool found = name.find("sort") != std::string::npos;
  if (found) channels = 100;
  found = name.find("nmo") != std::string::npos;
  if (found) channels = 100;

  if (channels >= 3 || stack_flag == stacked) return;
  if (found) return;

  channels = 0;
  InputBoxRequest question;
  question.prompt = confirm_channels;
  question.default_text = calling_panel_text5(app);
  resume_next([&] { channels = to_i16(leading_number(app.platform.input_box(question))); });
  if (channels == 0) return;
  if (message(app.platform, update_headers, Icon::none, Buttons::yes_no) == Answer::no) return;

  resume_next([&] { files.open(1, path); });
  int32_t record = 1, channel = 1;
  for (int32_t k = 1; k <= traces; ++k) {
    resume_next([&] { s.trace_pos = su::trace_position(k, s.ns); });
    resume_next([&] { su::write_word(files[1], s.trace_pos, su::word("fldr"), record); });
    resume_next([&] { su::write_word(files[1], s.trace_pos, su::word("tracf"), channel); });
    if (channel == channels) {
      channel = 0;
      ++record;
    }
    ++channel;
  }
  resume_next([&] { files.close_all(); });
}

void Read_File_Geometry(App& app, const std::string& file) {
  auto& s = app.state;
  auto& files = app.files;
  const std::string path = native_path(file);
  resume_next([&] { files.close_all(); });
  resume_next([&] { files.open(1, path); });
  int32_t cdp = 0, gx1 = 0, gy1 = 0, gx2 = 0, gy2 = 0;
  float d2 = 0;
  resume_next([&] { files[1].read_value(su::word("cdp").offset, cdp); });
  resume_next([&] { read_ns(app); });
  resume_next([&] { files[1].read_value(su::word("dt").offset, s.dt); });
  resume_next([&] { files[1].read_value(su::word("gx").offset, gx1); });
  resume_next([&] { files[1].read_value(su::word("gy").offset, gy1); });
  resume_next([&] { files[1].read_value(int64_t{su::record_size(s.ns)} + su::word("gx").offset, gx2); });
  resume_next([&] { files[1].read_value(int64_t{su::record_size(s.ns)} + su::word("gy").offset, gy2); });
  resume_next([&] { files[1].read_value(su::word("d2").offset, d2); });
  resume_next([&] { files.close_all(); });
  // A missing trace spacing is worked out from the first two receivers; the
  // value stays in here.
  if (d2 == 0) {
    const double dx = static_cast<double>(gx1) - gx2, dy = static_cast<double>(gy1) - gy2;
    d2 = static_cast<float>(std::fabs(std::trunc(std::sqrt(dx * dx + dy * dy))));
  }
  (void)cdp;
  (void)d2;

  resume_next([&] { s.nb_traces = su::trace_count(file_length(path), s.ns); });
  int16_t flag = 0;
  Detect_Geometry(app, file, s.nb_traces, s.nb_channels, flag);
  if (s.dt == 0) s.dt = 1000;
}

void Calcul_Channel(App& app, const std::string& file, int32_t& traces, int16_t& channels, int16_t& stack_flag) {
  auto& s = app.state;
  auto& files = app.files;
  // A limit of 150 traces is set here and never applied: the whole file is
  // scanned for channels.
  channels = 0;
  // No close first. A name with a wildcard (a cancelled dialog) is refused
  // as a bad file name, not made into a file.
  resume_next([&] { files.open(1, file_system_name(native_path(file))); });
  resume_next([&] { read_ns(app); });
  resume_next([&] { files[1].read_value(su::word("dt").offset, s.dt); });
  resume_next([&] { traces = su::trace_count(files[1].length(), s.ns); });

  int32_t scanned = 0;
  resume_next([&] { scanned = to_i32(static_cast<double>(traces) / 4); });
  const int16_t largest = largest_fold(app, scanned);
  channels = 0;
  if (largest > 1) {
    stack_flag = stacked;
    return;
  }
  stack_flag = 0;
  int32_t tracf = 0;
  for (int32_t k = 1; k <= traces; ++k) {
    resume_next([&] { s.trace_pos = su::trace_position(k, s.ns); });
    resume_next([&] { read_header(app, "tracf", tracf); });
    if (tracf > channels) resume_next([&] { channels = to_i16(tracf); });
    if (tracf < channels) break;
  }
  resume_next([&] { files.close_all(); });
  if (channels < 2) channels = 0;
}

}  // namespace tf
