#include "importers/abem.h"

#include <filesystem>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "su/su_record.h"

namespace tf {

namespace {
// The first piece is joined directly to the second; a crlf follows each of
// the others.
const char* const help_lines[] = {
    "ABEM Terralock Mark 3 to SU format conversion",
    "This module will convert Terralock Mark 3 records to SU format. ",
    " 1- Select the first file of your line",
    " 2- Enter the number of files (numbers must be increasing!) ",
    "    without gap number",
    " 3- IMPORTANT enter the sample rate ",
    " 4- Click on CONVERT Button ",
    "You MUST enter the sample rate, default is 480 ns  ",
    "The result will be a single file with all the selected data ",
};
const char* const sample_rate_prompt = "Enter the samplerate in microS";

// dt in microseconds by the sample-rate code of header line 11.
constexpr int16_t dt_by_code[] = {24, 48, 100, 200, 500, 1000, 2000, 5000};

// The record: a 2048-byte header, then each channel's ns int16 samples.
constexpr int header_bytes = 2048;
constexpr int code_line = 11;
constexpr int channels_line = 113;
// The text fields at the head of the header (first field, second field,
// date YYMMDD, time HH MM) come from its first 601 bytes.
constexpr int text_fields_bytes = 601;

// Records are opened for reading: a missing one is error 53, not a new
// empty file.
void open_record(FileTable& files, int number, const std::string& name) {
  const std::string path = file_system_name(name);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) throw RunTimeError(err::file_not_found);
  files.open(number, path);
}
}  // namespace

abem::abem(App& owner) : Panel(owner, "abem", "ABEM mark 3 to SU ") {
  add(Kind::button, "Command4", "Click here to select ABEM files").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text6", "Number of files", "1").tooltip = "Type here the number of file to convert";
  add(Kind::text, "Text5", "Sample rate", "480").tooltip = "Don't forget the sample rate !!!";
  add(Kind::text, "Text4", "Number of sample", "1024");
  add(Kind::text, "Text3", "Trace number", " ").tooltip = "Correct here the trace number if necesssary";
  add(Kind::text, "Text2", "", " ").tooltip = "This will be the SU file";
  add(Kind::button, "Command3", "Out file").on_click = [this] { out_file(); };
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

// Every statement runs with failures skipped: a failing step leaves things
// as they were.
void abem::Select_i() {
  resume_next([&] {
    state.file_in = records_dialog(platform, "ABEM file selection", "Record |*.abm|All files|*.*|", "*.abm", state.data_folder);
  });
  const RecordChoice choice = read_record_choice(state.file_in);
  for (const auto& entry : choice.entries) add_item("List1", entry);
  set_text("Text6", field_text(choice.count));
  // With several files the header is read from the second entry of the list
  // (older entries included), on purpose.
  const std::string name = choice.multiple ? list_entry((*this)["List1"], 1) : choice.name;
  resume_next([&] { set_text("Text2", su_name(choice.name)); });
  read_record_header(name);
  resume_next([&] { set_text("Text3", field_text(state.nb_channels)); });
  resume_next([&] { set_text("Text4", field_text(state.ns)); });
  resume_next([&] { set_text("Text5", field_text(state.dt)); });

  state.file_in = name;
  std::vector<uint8_t> head(text_fields_bytes, 0);
  resume_next([&] { open_record(files, 1, name); });
  resume_next([&] { files[1].read_block(0, head); });
  resume_next([&] { files.close(1); });
  // First field, second field, date and time: decoded and kept nowhere.
  const std::string fields(head.begin(), head.end());
  const double year = leading_number(fields.substr(23, 2)) + 1900, month = leading_number(fields.substr(25, 2)),
               day = leading_number(fields.substr(27, 2)), hours = leading_number(fields.substr(31, 2)),
               minutes = leading_number(fields.substr(34, 2));
  (void)year, (void)month, (void)day, (void)hours, (void)minutes;
}

// Header lines 11 and 113, the dt of the code, and ns from the length.
void abem::read_record_header(const std::string& name) {
  std::string text;
  resume_next([&] { text = read_whole_file(file_system_name(name)); });
  TokenReader lines(text);
  std::string line;
  int16_t code = 0;  // an unread code counts as 0
  for (int i = 1; i <= channels_line; ++i) {
    resume_next([&] { line = lines.next_line(); });
    if (i == code_line) resume_next([&] { code = to_i16(leading_number(line)); });
    if (i == channels_line) resume_next([&] { state.nb_channels = to_i16(leading_number(line)); });
  }
  resume_next([&] { files.close_all(); });
  if (code >= 0 && code < static_cast<int>(std::size(dt_by_code)))
    state.dt = dt_by_code[code];
  else if (state.dt == 0)
    state.dt = 100;
  resume_next([&] {
    if (state.nb_channels == 0) throw RunTimeError(err::division_by_zero);
    state.ns = to_i32((static_cast<double>(file_length(file_system_name(name))) - header_bytes) / state.nb_channels / 2);
  });
}

void abem::out_file() {
  set_text("Text2", output_name_dialog(platform, ""));
}

void abem::info() {
  std::string text = help_lines[0];
  for (size_t i = 1; i < std::size(help_lines); ++i) text += help_lines[i] + state.crlf;
  message(platform, text);
}

void abem::Convert() {
  // Every failing statement shows the conversion error box and runs again.
  auto step = [this](const std::function<void()>& statement) { retry_statement(platform, statement); };
  set_pointer(Pointer::hourglass);
  step([&] { state.dt = field_i16(text("Text5")); });
  while (state.dt == 0) {
    InputBoxRequest ask;
    ask.prompt = sample_rate_prompt;
    step([&] { state.dt = to_i16(leading_number(platform.input_box(ask))); });
  }
  set_text("Text5", field_text(state.dt));
  int16_t samples = 0, file_count = 0;  // samples: the 16-bit bound of the sample loop
  step([&] { state.ns = field_i32(text("Text4")); });
  step([&] { samples = field_i16(text("Text4")); });
  step([&] { state.nb_channels = field_i16(text("Text3")); });
  step([&] { file_count = field_i16(text("Text6")); });
  const int32_t ns = state.ns;
  step([&] {
    if (ns < 1) throw RunTimeError(err::subscript);  // indices 1 to ns
    state.i2_trace.assign(static_cast<size_t>(ns) + 1, 0);
    state.r4_trace.assign(static_cast<size_t>(ns) + 1, 0.0f);
  });

  step([&] { state.file_out = text("Text2"); });
  step([&] { files.close_all(); });
  // An existing output is written over in place: a longer one keeps its tail.
  step([&] { files.open(2, file_system_name(state.file_out)); });
  if (file_count > 99) {
    file_count = 99;
    message(platform, "Maximum 99 records");
  }
  step([&] { set_progress_range("ProgressBar1", 1, i16_mul(state.nb_channels, file_count)); });

  su::RecordImage image(files, 2);
  for (int16_t f = 1; f <= file_count; ++f) {
    step([&] { open_record(files, 1, list_entry((*this)["List1"], f - 1)); });
    for (int16_t c = 1; c <= state.nb_channels; ++c) {
      // The product, not a running count.
      step([&] { set_progress("ProgressBar1", i16_mul(f, c)); });
      step([&] { state.trace_pos = i32_add(i32_mul(i32_mul(c - 1, ns), 2), header_bytes); });
      step([&] { files[1].read_at(state.trace_pos, &state.i2_trace[1], 2 * static_cast<size_t>(ns)); });
      int16_t trace = 0;
      step([&] { trace = i16_add(i16_mul(f - 1, state.nb_channels), c - 1); });
      step([&] { state.trace_pos = i32_mul(trace, i32_add(i32_mul(4, ns), su::header_size)); });
      image.move_to(state.trace_pos);
      image.put(su::word("tracl"), 0);
      image.put(su::word("tracr"), 0);
      su::put_channel_words(image, f, c);
      image.zero_words(36, 88, 4);
      image.zero_words(88, 114, 2);
      image.put_i32(su::word("ns").offset, ns);  // 4 bytes: its upper half falls on dt
      image.put(su::word("dt"), state.dt);
      image.zero_words(118, 180, 2);
      // The zeroing runs 16 bytes past the header; the samples cover them.
      image.zero_words(180, 256, 4);
      for (int16_t k = 1; k <= samples; ++k) state.r4_trace[static_cast<size_t>(k)] = state.i2_trace[static_cast<size_t>(k)];
      image.put_block(su::header_size, &state.r4_trace[1], static_cast<size_t>(ns));
    }
    // The channels of a record go to the file in one write.
    step([&] { image.flush(); });
    step([&] { files.close(1); });
  }
  step([&] { files.close(2); });
  set_pointer(Pointer::arrow);
  message(platform, "OK, Conversion done");
  unload();
}

}  // namespace tf
