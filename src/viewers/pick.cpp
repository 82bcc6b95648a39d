#include "viewers/pick.h"

#include <iterator>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

const std::array<std::string_view, 79> explorer_word_texts{{
    "1   Trace sequence number within line.",
    "2   Trace sequence number within reel.",
    "3   Original field record number.",
    "4   Trace sequence number within original field record.",
    "5   Energy source point number.",
    "6   CDP ensemble number.",
    "7   Trace sequence number within CDP ensemble.",
    "8   Trace identification code:1=data, 2=dead...",
    "9   Number of vertically summed traces yielding this trace.",
    "10  Number of horizontally stacked traced yielding this trace.",
    "11  Data use (1 = production, 2 = test).",
    "12  Distance from source point to receiver group.",
    "13  Receiver group elevation.",
    "14  Surface elevation at source.",
    "15  Source depth below surface.",
    "16  Datum elevation at receiver group.",
    "17  Datum elevation at source.",
    "18  Water depth at source.",
    "19  Water depth at receiver group.",
    "20  Scalar for elevations and depths (+ = multiplier,",
    "21  Scalar for coordinates (+ = multiplier,",
    "22  X source coordinate.",
    "23  Y source coordinate.",
    "24  X receiver group coordinate.",
    "25  Y receiver group coordinate.",
    "26  Coordinate units (1 = length in meters or feet, 2 = arc seconds).",
    "27  Weathering velocity.",
    "28  Subweathering velocity.",
    "29  Uphole time at source.",
    "30  Uphole time at receiver group.",
    "31  Source static correction.",
    "32  Receiver group static correction.",
    "33  Total static applied.",
    "34  Lag time between end of header and time break in milliseconds.",
    "35  Lag time between time break and shot in milliseconds.",
    "36  Lag time beteen shot and recording start in milliseconds.",
    "37  Start of mute time",
    "38  End of mute time.",
    "39  Number of samples in this trace.",
    "40  Sample interval of this trace in microseconds.",
    "41  Field instrument gain type code:3=FPT,1=fixed",
    "42  Instrument gain constant.",
    "43  Intrument early gain in decibels.",
    "44  Correlated (1 = no, 2 = yes).",
    "45  Sweep frequency at start.",
    "46  Sweep fequency at end.",
    "47  Sweep length in milliseconds.",
    "48  Sweep type code:",
    "49  Sweep taper trace length at start in milliseconds.",
    "50  Sweep taper trace length at end in milliseconds.",
    "51  Taper type code:",
    "52  Alias filter frequency.",
    "53  Alias filter slope.",
    "54  Notch filter frequency.",
    "55  Notch filter slope.",
    "56  Low cut frequency.",
    "57  High cut frequency.",
    "58  Low cut slope.",
    "59  High cut slope.",
    "60  Year data recorded.",
    "61  Day of year.",
    "62  Hour of day (24-h clock)",
    "63  Minute of hour.",
    "64  Second of minute.",
    "65  Time basis (1 = local, 2 = GMT, 3 = other).",
    "66  Trace weighting factor for fixed",
    "67  Geophone group number of roll switch position one.",
    "68  Geophone group number of first trace of original field record.",
    "69  Geophone group number of last trace of original field record.",
    "70  Gap size (total number of groups dropped).",
    "71  Overtravel associated with taper (1 = down/behind, 2 = up/ahead).",
    "72  sample spacing for non-seismic data",
    "73  first sample location for non-seismic data",
    "74  sample spacing between traces",
    "75  first trace location",
    "75  negative of power used for dynamic range compression",
    "77  reciprocal of scaling factor to normalize range",
    "78  number of traces",
    "79  mark selected traces",
}};

namespace {
constexpr int default_row_index = 38;  // ns
constexpr int last_readable_row = 71;
// The statics, lags and mute start are read as 4-byte words: each read takes
// the following word in as well.
constexpr int first_wide_row = 31, last_wide_row = 37;

const char* const help_lines[] = {
    "How to use this module ? ",
    "You can read any value of a SU or SEG-Y seismic file ",
    " 1.- Select the word to display ",
    " 2.- Select the file type SU or SEG-Y",
    " 3.- click on GO",
    "The first bit of this word and the value are displayed ",
};
}  // namespace

ExplorerWord explorer_word(int row) {
  if (row < 1 || row > last_readable_row) return {};
  for (const auto& w : su::header_words)
    if (w.number == row) return {w.offset, row >= first_wide_row && row <= last_wide_row ? 4 : w.width};
  return {};
}

pick::pick(App& owner) : Panel(owner, "pick", "Pick any header word") {
  add(Kind::text, "Text1");
  add(Kind::button, "Command1", "Select a file").on_click = [this] { Command1_Click(); };
  add(Kind::combo, "Combo1");
  add(Kind::frame, "Frame1", "File type");
  auto& su_mode = add_in("Frame1", Kind::option, "Option1", "SU");
  su_mode.value = 1;
  su_mode.on_click = [this] { set_mode(false); };
  add_in("Frame1", Kind::option, "Option2", "SEG-Y").on_click = [this] { set_mode(false); };
  add_in("Frame1", Kind::option, "Option3", "Other").on_click = [this] { set_mode(true); };
  add(Kind::text, "Text2", "First bit  position", "0").locked = true;
  auto& value = add(Kind::text, "Text3", "Word value");
  value.locked = true;
  value.bold = true;
  add(Kind::text, "Text4", "File size").locked = true;
  add(Kind::frame, "Frame2", "Word type");
  add_in("Frame2", Kind::option, "Option4", "Short int.").value = 1;
  add_in("Frame2", Kind::option, "Option5", "Long int.");
  add_in("Frame2", Kind::option, "Option6", "word");
  add_in("Frame2", Kind::option, "Option7", "Float");
  add(Kind::check, "Check1", "Swap bytes");
  add(Kind::button, "Command2", "GO").on_click = [this] { Command2_Click(); };
  add(Kind::button, "Command3", " ?").on_click = [this] { Command3_Click(); };
  add(Kind::button, "Command4", "Edit File").on_click = [this] { Command4_Click(); };
}

void pick::form_load() {
  for (auto text : explorer_word_texts) add_item("Combo1", std::string(text));
  select_item("Combo1", default_row_index);
  set_text("Text1", state.current_file);
  show_file_size();
}

void pick::Command1_Click() {
  constexpr int file_must_exist = 4096;
  set_text("Text1", record_dialog(platform, "Qualtor File selection",
                                  "Seismic Unix (SU)|*.SU|SEG-Y files|*.SGY|All files|*.*|", "*.SU", state.data_folder, 1,
                                  file_must_exist));
  state.current_file = text("Text1");
  show_file_size();
}

// The length of current_file, by an open for reading as file 1. A file
// left open by an earlier GO keeps the number: the open fails and the
// length is that file's.
void pick::show_file_size() {
  std::string size;
  resume_next([&] {
    std::string path = native_path(state.current_file);
    if (File_Exists(path) == 0) throw RunTimeError(err::file_not_found);
    files.open(1, path);
  });
  resume_next([&] { size = field_text(files[1].length()); });
  resume_next([&] { files.close_all(); });
  set_text("Text4", size);
}

void pick::set_mode(bool other) {
  (*this)["Combo1"].enabled = !other;
  changed((*this)["Combo1"]);
  (*this)["Text2"].locked = !other;
  changed((*this)["Text2"]);
}

void pick::Command2_Click() {
  if (checked("Option3")) read_at_position();
  else read_listed_word();
}

void pick::read_listed_word() {
  ExplorerWord w = explorer_word((*this)["Combo1"].list_index + 1);
  int64_t position = w.offset;
  if (checked("Option2")) position += su::segy_file_header;
  resume_next([&] { files.open(1, native_path(text("Text1"))); });
  if (w.width == 2) {
    int16_t value = 0;
    resume_next([&] { files[1].read_value(position, value); });
    resume_next([&] { files.close(1); });
    if (checked("Check1")) Swap2(value, value);
    set_text("Text3", field_text(value));
    set_text("Text2", field_text(position + 1));
    set_value("Option4", 1);
    set_value("Option5", 0);
  } else if (w.width == 4) {
    if (checked("Check1")) message(platform, "Not available", Icon::stop);
    int32_t value = 0;
    resume_next([&] { files[1].read_value(position, value); });
    resume_next([&] { files.close(1); });
    set_text("Text3", field_text(value));
    set_text("Text2", field_text(position + 1));
    set_value("Option5", 1);
    set_value("Option4", 0);
  } else {
    // File 1 stays open: the next GO's open fails and reads from this file.
    message(platform, "Not possible");
  }
}

void pick::read_at_position() {
  const std::string name = text("Text1");
  if (name.size() < 4) return;
  resume_next([&] { files.open(1, native_path(name)); });
  int32_t position = 0;  // one-based
  resume_next([&] { position = field_i32(text("Text2")); });
  const int64_t at = int64_t{position} - 1;
  auto show = [&](auto value) {
    resume_next([&] { files[1].read_value(at, value); });
    resume_next([&] { files.close(1); });
    set_text("Text3", field_text(value));
  };
  if (checked("Option4")) {
    show(int16_t{0});
  } else if (checked("Option5")) {
    show(int32_t{0});
  } else if (checked("Option6")) {
    // A read into an empty text takes no bytes.
    resume_next([&] { files.close(1); });
    set_text("Text3", "");
  } else if (checked("Option7")) {
    show(0.0f);
  }
}

void pick::Command3_Click() {
  message(platform, ended_lines(help_lines), Icon::information);
}

void pick::Command4_Click() {
  state.editor_file = text("Text1");
  app.panels.show("editor");
}

}  // namespace tf
