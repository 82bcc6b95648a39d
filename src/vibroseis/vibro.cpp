#include "vibroseis/vibro.h"

#include <iterator>

#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

namespace {

const char* const info_lines[] = {
    " Vibrator data input ",
    "",
    "This module will write all vibrator parameters into the trace header",
    "Just enter the correct values and press on WRITE DATA button",
};
const char* const does_not_exist = " does not exists!";
const char* const done = "Header update done done !";
const char* const sound_file = "\\notify.wav";

// The fields in the order they are read and written, and the word of each.
struct VibratorField {
  const char* control;
  const char* label;
  const char* default_text;
  const char* keys;
  const char* key;
};
constexpr VibratorField vibrator_fields[] = {
    {"Text2", "Correlation (1=yes 2=not correlated)", "1", "1234567890", "corr"},
    {"Text3", "Sweep frequency at start", "10", "0123456789", "sfs"},
    {"Text4", "Sweep frequency at end", "100", "1234567890", "sfe"},
    {"Text5", "Sweep lenght in ms", "6000", "1234567890", "slen"},
    {"Text6", "Sweep type (1= linear 2=cos-squared 3= other)", "1", "123", "styp"},
    {"Text7", "Sweep trace length at start in ms", "10", "1234567890", "stas"},
    {"Text8", "Sweep trace length at end in ms", "100", "1234567890", "stae"},
};
// The seven words follow each other from corr on: one write a trace.
constexpr int first_word_offset = su::word("corr").offset;
constexpr int word_count = static_cast<int>(std::size(vibrator_fields));

}  // namespace

vibro::vibro(App& owner) : Panel(owner, "vibro", "Vibrator data input") {
  add(Kind::text, "Text1", "SU file");
  for (const auto& f : vibrator_fields) add(Kind::text, f.control, f.label, f.default_text).key_filter = f.keys;
  add(Kind::text, "Text9", "Trace").locked = true;
  add(Kind::progress, "ProgressBar1").visible = false;
  add(Kind::button, "Command3", "File").on_click = [this] { Command3_Click(); };
  add(Kind::button, "Command1", "Write data").on_click = [this] { Command1_Click(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { Command2_Click(); };
}

void vibro::show_progress_bar(bool shown) {
  auto& bar = (*this)["ProgressBar1"];
  bar.visible = shown;
  changed(bar);
}

// The words already in the first trace show in their fields; a word of 0
// leaves the field's default.
void vibro::form_load() {
  set_text("Text1", state.current_file);
  resume_next([&] { files.close_all(); });
  if (File_Exists(state.current_file) == 0) {
    message(platform, state.current_file + does_not_exist, Icon::exclamation);
    return;
  }
  if (!text("Text1").empty()) resume_next([&] { files.open(1, native_path(text("Text1"))); });
  for (const auto& f : vibrator_fields) {
    int16_t value = 0;
    resume_next([&] { files[1].read_value(su::word(f.key).offset, value); });
    if (value != 0) set_text(f.control, field_text(value));
  }
  resume_next([&] { files.close(1); });
}

void vibro::Command1_Click() {
  const std::string name = text("Text1");
  resume_next([&] { files.close_all(); });
  if (File_Exists(name) == 0) {
    message(platform, name + does_not_exist, Icon::exclamation);
    return;
  }
  resume_next([&] { files.open(1, native_path(name)); });
  int16_t ns = 0;
  resume_next([&] { files[1].read_value(su::word("ns").offset, ns); });
  state.ns = ns;
  resume_next([&] { state.nb_traces = su::trace_count(files[1].length(), ns); });
  set_pointer(Pointer::hourglass);
  show_progress_bar(true);
  resume_next([&] { set_progress_range("ProgressBar1", 0, to_i32(state.nb_traces / 10.0)); });

  // One value carries from word to word: a field that cannot be narrowed to
  // 16 bits leaves the previous word's value in it, written again.
  int16_t value = 0;
  int16_t words[word_count];
  for (int32_t t = 1; t <= state.nb_traces; ++t) {
    resume_next([&] { set_progress("ProgressBar1", to_i32(t / 10.0) + 1); });
    resume_next([&] { state.trace_pos = i32_mul(su::record_size(ns), t - 1); });
    set_text("Text9", number_text(t) + "/" + number_text(state.nb_traces));
    platform.process_events();
    // The fields are read again for every trace: an edit made during the
    // run holds for the traces that follow.
    for (int w = 0; w < word_count; ++w) {
      resume_next([&] { value = to_i16(leading_number(text(vibrator_fields[w].control))); });
      words[w] = value;
    }
    resume_next([&] { files[1].write_at(int64_t{state.trace_pos} + first_word_offset, words, sizeof words); });
  }
  resume_next([&] { files.close_all(); });
  set_pointer(Pointer::arrow);
  show_progress_bar(false);
  // A missing sound file is passed over by the platform.
  platform.play_sound(platform.application_folder() + native_path(sound_file));
  unload();
  message(platform, done, Icon::information);
}

void vibro::Command2_Click() {
  message(platform, ended_lines(info_lines, state.crlf), Icon::information);
}

void vibro::Command3_Click() {
  FileDialogRequest dialog;
  dialog.title = "SU raw data file ";
  dialog.filter = "SU files|*.SU|";
  dialog.file_name = "*.SU";
  const std::string chosen = platform.file_dialog(dialog);
  // A cancel only puts the main panel's pointer back; the fields are not
  // read again from a new file.
  if (chosen == "*.SU")
    platform.set_pointer("Utility", Pointer::arrow);
  else
    set_text("Text1", chosen);
}

}  // namespace tf
