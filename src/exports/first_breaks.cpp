#include "exports/first_breaks.h"

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

const char* const fbp_mode_prompt = "Input 1 for time in seconds, 2 for FBP time in milliseconds, 3 for exit";
const char* const fbp_done = "FBP files are recorded";
const char* const asc_first_line =
    "Shot Nr.;Shot Station #;Receiver Station #;First Break (seconds),Receiver elevation #, shot elevation #";
const char* const shot_step_prompt = "Enter 1 to use all shots, 2 every 2 shots, 3 every 3 shots..EXIT=99";
const char* const add_ms_prompt = "Enter optionaly a value (ms) to add to all FBP values ";
const char* const renumber_question = "YES=Renumber FIELD records, NO= Keep FLDR header word";
const char* const channels_prompt = "Enter the number of channel per shot";
const char* const asc_written = "ASC file for export to Rayfract have been written";

// fbp holds tenths of a millisecond.
constexpr double fbp_per_second = 10000;
constexpr double fbp_per_millisecond = 10;
constexpr int16_t exit_step = 99;

// The dialog of both buttons.
std::string su_file_dialog(App& app) {
  return record_dialog(app.platform, "SU File selection", "File SU SU |*.SU|", "*.SU", app.state.data_folder, 0);
}

// The name less its last `count` characters; a shorter name fails (error 5).
std::string less_last(const std::string& name, size_t count) {
  if (name.size() < count) throw RunTimeError(err::invalid_call);
  return name.substr(0, name.size() - count);
}

std::string without_blanks(std::string text) {
  Replace_All(text, " ", "");  // one pass: a run of two blanks keeps one
  return text;
}

template <typename T>
void read_word(App& app, const char* key, T& value) {
  app.files[1].read_value(int64_t{app.state.trace_pos} + su::word(key).offset, value);
}

Panel* main_panel(App& app) { return app.panels.loaded("Utility"); }

void show_progress(App& app, const std::string& text) {
  if (Panel* panel = main_panel(app)) panel->set_text("Text1", text);
}

// The scale of the elevations by scalel; 0 where the value has none.
double elevation_scale(int16_t scalel) {
  switch (scalel) {
    case 0: return 1;
    case -1: return 10;
    case -2: return 100;
    case -3: return 1000;
    case -4: return 10000;
    default: return 0;
  }
}

// A division of the elevation: by an unset scale it fails, and the field
// keeps its previous text.
void elevation_text(std::string& text, int32_t elevation, double scale) {
  resume_next([&] {
    if (scale == 0) throw RunTimeError(err::division_by_zero);
    text = fixed_form(elevation / scale, 1);
  });
}

}  // namespace

void Write_FBP(App& app) {
  Platform& platform = app.platform;
  auto& s = app.state;
  const std::string su_file = su_file_dialog(app);
  const std::string mode = ask(platform, fbp_mode_prompt, "1");
  if (mode == "3") return;
  const bool seconds = mode == "1";

  int16_t ns = 0;
  resume_next([&] { app.files.open(1, file_system_name(native_path(su_file))).read_value(su::word("ns").offset, ns); });
  s.ns = ns;
  resume_next([&] { s.nb_traces = su::trace_count(app.files[1].length(), s.ns); });
  int32_t traces = s.nb_traces;
  int16_t stack_flag = 0;
  Calcul_Channel(app, su_file, traces, s.nb_channels, stack_flag);

  std::string stem;
  resume_next([&] { stem = less_last(su_file, 3); });
  auto fbp_name = [&](int16_t number) { return native_path(without_blanks(stem + number_text(number) + ".FBP")); };
  int16_t n = 1;
  auto out = std::make_unique<TextOutput>(fbp_name(n));
  resume_next([&] { app.files.open(1, file_system_name(native_path(su_file))); });
  int16_t channel = 0, fbp = 0;
  for (int32_t k = 1; k <= s.nb_traces; ++k) {
    resume_next([&] { channel = i16_add(channel, 1); });
    resume_next([&] { s.trace_pos = su::trace_position(k, s.ns); });
    resume_next([&] { read_word(app, "fbp", fbp); });
    const std::string pick = seconds ? fixed_form(fbp / fbp_per_second, 4) : fixed_form(fbp / fbp_per_millisecond, 1);
    out->buffer() += PrintedLine().item(int64_t{channel}).item(pick).str();
    show_progress(app, "Processing file " + number_text(n));
    platform.process_events();
    if (channel == s.nb_channels) {
      // The name is made before the number goes up: the next record
      // replaces this one in the same file, and the last record leaves a
      // further file empty.
      out->close();
      const std::string name = fbp_name(n);
      resume_next([&] { n = i16_add(n, 1); });
      out = std::make_unique<TextOutput>(name);
      channel = 0;
    }
  }
  out->close();
  resume_next([&] { app.files.close_all(); });
  show_progress(app, "");
  message(platform, fbp_done, Icon::information);
}

void Write_Rayfract(App& app) {
  Platform& platform = app.platform;
  auto& s = app.state;
  const std::string su_file = su_file_dialog(app);
  std::string asc;
  resume_next([&] { asc = less_last(su_file, 3) + ".ASC"; });
  if (File_Exists(asc) == 1) {
    if (message(platform, asc + " already exists, overwrite ?", Icon::none, Buttons::yes_no) == Answer::yes) {
      std::error_code ec;
      std::filesystem::remove(native_path(asc), ec);
    } else {
      std::string other;
      resume_next([&] { other = less_last(asc, 4) + "2.ASC"; });
      asc = ask(platform, "Enter the new ASC file name ", other);
    }
  }
  asc = without_blanks(asc);
  platform.set_pointer("Utility", Pointer::hourglass);

  int16_t step = 0;
  do {
    resume_next([&] { step = to_i16(leading_number(ask(platform, shot_step_prompt, "1"))); });
  } while (step == 0);
  if (step == exit_step) return;
  int32_t add_ms = 0;
  resume_next([&] { add_ms = to_i32(leading_number(ask(platform, add_ms_prompt, ""))); });
  const bool renumber = message(platform, renumber_question, Icon::none, Buttons::yes_no) == Answer::yes;

  int32_t traces = 0;
  int16_t stack_flag = 0;
  Calcul_Channel(app, su_file, traces, s.nb_channels, stack_flag);
  resume_next([&] { s.nb_channels = to_i16(leading_number(ask(platform, channels_prompt, field_text(s.nb_channels)))); });
  if (s.nb_channels == 0) return;

  resume_next([&] { app.files.open(1, file_system_name(native_path(su_file))); });
  TextOutput out(native_path(asc));
  int16_t ns = 0;
  resume_next([&] { app.files[1].read_value(su::word("ns").offset, ns); });
  s.ns = ns;
  resume_next([&] { s.nb_traces = su::trace_count(app.files[1].length(), s.ns); });
  int16_t records = 0;
  resume_next([&] { records = to_i16(static_cast<double>(s.nb_traces) / s.nb_channels); });
  // The scale comes from the last header that the channel count read.
  int16_t scalel = 0;
  resume_next([&] { read_word(app, "scalel", scalel); });
  const double scale = elevation_scale(scalel);
  out.buffer() += std::string(asc_first_line) + "\r\n";

  int16_t shot = 0, r = 0, c = 0, trid = 0, fbp = 0;
  int32_t tracf = 0, fldr = 0, shot_station = 0, receiver_station = 0, gelev = 0, selev = 0;
  std::string shot_text, shot_station_text, receiver_station_text, gelev_text, selev_text;
  const int16_t last_record = static_cast<int16_t>(records - 1);
  auto within = [&](int16_t at, int16_t end, int16_t by) { return by > 0 ? at <= end : at >= end; };
  for (r = 0; within(r, last_record, step); r = static_cast<int16_t>(r + step)) {
    resume_next([&] { shot = i16_add(shot, 1); });
    for (c = 1; c <= s.nb_channels; ++c) {
      resume_next([&] { s.trace_pos = su::trace_position(i32_add(i32_mul(r, s.nb_channels), c), s.ns); });
      resume_next([&] { read_word(app, "trid", trid); });
      // A dead trace loses its pick in the SU file itself.
      if (trid > 1) resume_next([&] { su::write_word(app.files[1], s.trace_pos, su::word("fbp"), -1); });
      resume_next([&] { read_word(app, "tracf", tracf); });  // read and not used
      resume_next([&] { read_word(app, "fldr", fldr); });
      shot_text = fixed_form(renumber ? shot : fldr, 0);
      resume_next([&] { read_word(app, "shot_station", shot_station); });
      resume_next([&] { read_word(app, "receiver_station", receiver_station); });
      resume_next([&] { read_word(app, "gelev", gelev); });
      resume_next([&] { read_word(app, "selev", selev); });
      shot_station_text = fixed_form(shot_station, 1);
      receiver_station_text = fixed_form(receiver_station, 1);
      elevation_text(gelev_text, gelev, scale);
      elevation_text(selev_text, selev, scale);
      resume_next([&] { read_word(app, "fbp", fbp); });
      double time = fbp / fbp_per_second;
      if (time <= 0)
        time = -1;
      else
        time = time + add_ms / 1000.0;
      // The trace at the shot breaks at 0, picked or not.
      if (shot_station_text == receiver_station_text) time = 0;
      const std::string line = shot_text + ";" + shot_station_text + ";" + receiver_station_text + ";" +
                               fixed_form(time, 4) + ";" + gelev_text + ";" + selev_text;
      out.buffer() += without_blanks(line) + "\r\n";
      out.write_if_large();
    }
  }
  out.close();
  resume_next([&] { app.files.close_all(); });
  platform.set_pointer("Utility", Pointer::arrow);
  s.editor_file = asc;
  app.panels.show("editor");

  // The line count is never counted up: any run that exported a shot ends
  // with the counts, and only an empty run with the first text.
  const int16_t lines = 0;
  const int16_t shots = static_cast<int16_t>(r / step);
  if (static_cast<int32_t>(shots) * c == lines)
    message(platform, asc_written, Icon::information);
  else
    message(platform,
            "Check your file line number0" + number_text(lines) + "; Records= " + number_text(shots) +
                " ; channel%= " + number_text(s.nb_channels),
            Icon::information);
}

}  // namespace tf
