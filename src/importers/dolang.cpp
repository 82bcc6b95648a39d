#include "importers/dolang.h"

#include <filesystem>
#include <iterator>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    "How to convert DOLANG files ",
    "DOLANG files a quite complicated, one ASCII file per channel",
    "another file (extension ADT) contains useful informations",
    "1.- Select All channel files *.A01, *.A02 ...",
    "2.- Select the ADT file and verifiy displayed informations",
    "3.- Check parameters (shot number, channels) then press on CONVERT",
    " For multiselection use Windows ususal keys (CTRL and MAJ)",
    "4.- Display the result to check the conversion",
};
// The ADT file's values that the panel shows.
struct InfoFile {
  int16_t channels = 0;
  double records = 0, recording_ms = 0, samples = 0;
};

// The tokens of an ADT file, commas or line ends between them, each read
// with failures skipped: a short file leaves the values it did not reach.
InfoFile read_adt(const std::string& text, int16_t channels) {
  InfoFile info;
  info.channels = channels;
  TokenReader tokens(text);
  std::string word;
  double number = 0;
  for (int i = 1; i <= 4; ++i) resume_next([&] { word = tokens.next_field(); });  // kept, not used
  resume_next([&] { info.channels = to_i16(tokens.next_number()); });
  resume_next([&] { info.records = tokens.next_number(); });
  // Tokens 7 and 8 go to the same value: the recording time wins.
  resume_next([&] { info.recording_ms = tokens.next_number(); });
  resume_next([&] { info.recording_ms = tokens.next_number(); });
  resume_next([&] { info.samples = tokens.next_number(); });
  resume_next([&] { number = tokens.next_number(); });
  resume_next([&] { word = tokens.next_field(); });
  for (int i = 12; i <= 18; ++i) resume_next([&] { number = tokens.next_number(); });  // read, not used
  return info;
}

// Characters `from` (counted from 1) on, at most `count`, as Mid$ gives them.
std::string mid(const std::string& text, size_t from, size_t count) {
  return from > text.size() ? std::string() : text.substr(from - 1, count);
}
std::string right(const std::string& text, size_t count) {
  return text.substr(text.size() - std::min(count, text.size()));
}
}  // namespace

DOLANG::DOLANG(App& owner) : Panel(owner, "DOLANG", "Dolang to SU ver. 1.2") {
  auto& select = add(Kind::button, "Command6", "Select ALL channel files");
  select.tooltip = "Select all channel files of all shots !";
  select.on_click = [this] {
    Select_i();
    Read_info_file();
  };
  add(Kind::list, "List1");
  add(Kind::button, "Command3", "Info file (xxx.ADT)").on_click = [this] { Read_info_file(); };
  auto& adt = add(Kind::text, "Text8", "", "ADT file");
  adt.tooltip = "Click here to select an Info ADT file";
  adt.on_dblclick = [this] { Read_info_file(); };
  add(Kind::text, "Text2", "Number of channel / record", "24");
  add(Kind::text, "Text3", "Number of records", "1").tooltip = "Modify here the number of rexcords (maximum total 99 traces)";
  add(Kind::text, "Text4", "Sample rate (microS)", " ");
  add(Kind::text, "Text6", "Samples per trace", " ").tooltip = "Number of dsamples per trace";
  add(Kind::text, "Text7", "Recording time (ms)", " ");
  auto& out = add(Kind::text, "Text5", "", "*.SU");
  out.tooltip = "Click here to change the output SU name";
  out.on_dblclick = [this] { Choix_SU(); };
  add(Kind::button, "Command5", "Output SU file name").on_click = [this] { Choix_SU(); };
  add(Kind::label, "Label8", " ");
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command4", "?").on_click = [this] { help(); };
  add(Kind::button, "Command2", "Exit").on_click = [this] { unload(); };
  add(Kind::progress, "ProgressBar1");
}

// Only names ending in a digit reach the list, so the ADT file and other
// files of a select-all drop out. The folder is joined to each name as it
// comes, without a separator of its own.
void DOLANG::Select_i() {
  resume_next([&] {
    state.file_in = records_dialog(platform, "DOLANG file selection", "Record |*.a*|All files|*.*|", "*.*",
                                   state.data_folder);
  });
  const Selection pieces = cut_at_blanks(state.file_in + " ");
  const auto& items = pieces.items;
  for (int k = 1; k < pieces.count; ++k) {
    // Names past the table of 100 are lost: the folder stands alone.
    const std::string name = lower(items[0] + (k < static_cast<int>(items.size()) ? items[static_cast<size_t>(k)] : ""));
    if (!name.empty() && name.back() > 47 && name.back() < 58) add_item("List1", name);
  }
  set_text("Text3", field_text(pieces.count - 1));
  set_text("Text5", items[0] + "dolang.su");
  state.file_in = list_entry((*this)["List1"], 0);
}

void DOLANG::Read_info_file() {
  set_text("Text8", record_dialog(platform, "DOLANG Info File selection", "Info files|*.adt|All files|*.*|", "*.adt",
                                  state.data_folder, 0));
  Lecture_adt();
}

void DOLANG::Lecture_adt() {
  const std::string path = text("Text8");
  if (!File_Exists(path)) {
    message(platform, "does not exist", Icon::stop);
    return;
  }
  std::string content;
  resume_next([&] { content = read_whole_file(case_blind_name(path)); });
  const InfoFile info = read_adt(content, state.nb_channels);
  state.nb_channels = info.channels;
  // No samples: the division fails and dt keeps its value.
  resume_next([&] {
    if (info.samples == 0) throw RunTimeError(err::division_by_zero);
    state.dt = to_i16(info.recording_ms / info.samples * 1000);
  });
  set_text("Text2", field_text(state.nb_channels));
  set_text("Text3", field_text(info.records));
  set_text("Text4", field_text(state.dt));
  set_text("Text6", field_text(info.samples));
  set_text("Text7", field_text(info.recording_ms));
  resume_next([&] { set_text("Text5", su_name(path)); });
}

void DOLANG::Choix_SU() {
  set_text("Text5", output_name_dialog(platform, state.data_folder, "Seismic Unix Output file selection", "SU files|*.SU|"));
}

void DOLANG::help() {
  std::string text = help_lines[0];
  for (size_t i = 1; i < std::size(help_lines); ++i) text += state.crlf + help_lines[i];
  message(platform, text, Icon::information);
}

// Every failing statement is passed over.
void DOLANG::Convert() {
  state.file_out = text("Text5");
  resume_next([&] { state.dt = field_i16(text("Text4")); });
  if (state.dt == 0) {
    message(platform, "Sample rate missing, you must read the ADT file", Icon::stop);
    return;
  }
  int16_t records = 0, ns = 0;
  resume_next([&] { state.nb_channels = field_i16(text("Text2")); });
  resume_next([&] { records = field_i16(text("Text3")); });
  resume_next([&] { ns = field_i16(text("Text6")); });
  state.ns = ns;

  // The short date is read as day, month, year.
  std::string date, time;
  resume_next([&] { std::tie(date, time) = file_date_time(case_blind_name(state.file_in)); });
  const int16_t year = to_i16(leading_number(right(date, 2))), month = to_i16(leading_number(mid(date, 4, 2))),
                day = to_i16(leading_number(date.substr(0, 2))), hour = to_i16(leading_number(time.substr(0, 2))),
                minute = to_i16(leading_number(right(time, 2)));
  // Every month counts 30 days.
  const int16_t day_of_year = static_cast<int16_t>((month - 1) * 30 + day);

  resume_next([&] { set_progress_range("ProgressBar1", 1, i16_mul(state.nb_channels, records)); });
  state.trace_pos = 0;
  int cursor = 1;  // reading starts at the second entry of the list
  resume_next([&] {
    if (ns < 1) throw RunTimeError(err::subscript);
    dim_array(state.r4_trace, ns);
  });
  resume_next([&] { files.open(3, file_system_name(state.file_out)); });

  su::RecordImage image(files, 3);
  auto next = [](int16_t& counter) { resume_next([&] { counter = i16_next(counter); }); };
  for (int16_t r = 1; r <= records; next(r)) {
    for (int16_t c = 1; c <= state.nb_channels; next(c)) {
      int16_t n = 0;
      resume_next([&] { n = i16_add(i16_mul(r - 1, state.nb_channels), c); });
      resume_next([&] { set_progress("ProgressBar1", n); });
      const std::string name = list_entry((*this)["List1"], cursor++);
      set_caption("Label8", "Converting " + name);
      platform.process_events();
      // A channel file that does not open leaves the trace before.
      std::string content;
      bool opened = false;
      resume_next([&] {
        content = read_whole_file(case_blind_name(file_system_name(name)));
        opened = true;
      });
      if (opened) {
        TokenReader values(content);
        for (int k = 1; k <= ns; ++k)
          resume_next([&] { state.r4_trace[static_cast<size_t>(k)] = static_cast<float>(values.next_number()); });
      }
      // The samples are placed in 32 bits; the header by a 16-bit record
      // size, which fails past 8131 samples and leaves trace_pos where it was.
      int32_t samples_at = 0;
      resume_next([&] { samples_at = i32_mul(n - 1, su::record_size(ns)); });
      resume_next([&] { state.trace_pos = i32_mul(n - 1, i16_add(su::header_size, i16_mul(4, ns))); });
      if (ns >= 1) {
        image.move_to(samples_at);
        image.put_block(su::header_size, &state.r4_trace[1], static_cast<size_t>(ns));
      }
      image.move_to(state.trace_pos);
      image.put(su::word("tracl"), 0);
      image.put(su::word("tracr"), 0);
      image.put(su::word("fldr"), r);
      image.put(su::word("tracf"), c);
      for (const char* key : {"ep", "cdp", "cdpt"}) image.put(su::word(key), 0);
      image.put(su::word("trid"), 1);
      for (const char* key : {"nvs", "nhs", "duse"}) image.put(su::word(key), 0);
      image.zero_words(36, 88, 4);
      // Two-byte zeros stepping one byte at a time, 88 to 182: bytes 88 to 183.
      image.zero_words(88, 184, 1);
      image.put(su::word("ns"), ns);
      image.put(su::word("dt"), state.dt);
      image.put(su::word("year"), year);
      image.put(su::word("day"), day_of_year);
      image.put(su::word("hour"), hour);
      image.put(su::word("minute"), minute);
      image.zero_words(164, 184, 2);
    }
  }
  resume_next([&] { image.flush(); });
  resume_next([&] { files.close(3); });
  message(platform, "OK Conversion done", Icon::information);
}

}  // namespace tf
