#include "importers/ambrogeo.h"

#include <functional>
#include <optional>

#include "frame/helpers.h"
#include "frame/paths.h"
#include "frame/record_selection.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    "AMBROGEO module conversion",
    " This module convert AMBREGEO record to SU format ",
    " Sample rate trace number, trace number, file number are recorded ",
    " Just verify the number of channels per record ",
};

// Header lines, counted from 1.
constexpr int date_line = 5;
constexpr int time_line = 6;
constexpr int channels_line = 8;
constexpr int samples_line = 9;
constexpr int length_line = 11;  // recording time, milliseconds
constexpr int header_lines = 37;  // the data rows follow
// Every row holds this many columns, whatever the channels.
constexpr int columns = 24;
constexpr int max_records = 99;
// Each file adds this many days to the running day word.
constexpr int days_per_step = 30;

// Characters `from` (from 1) and the next `count` of a line, read as a number.
double number_in(const std::string& line, size_t from, size_t count) {
  return from - 1 < line.size() ? leading_number(line.substr(from - 1, count)) : 0.0;
}
double last_four(const std::string& line) { return leading_number(line.size() > 4 ? line.substr(line.size() - 4) : line); }
}  // namespace

Ambrogeo::Ambrogeo(App& owner) : Panel(owner, "Ambrogeo", "Ambrogeo files") {
  add(Kind::button, "Command5", "Press here to select files ").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text1", "Trace number per record", "24");
  add(Kind::text, "Text3", "Number of sample", "0");
  add(Kind::text, "Text4", "Sample rate", "0");
  add(Kind::text, "Text6", "Number of files to convert", "1").tooltip = "Type here the number of file to convert";
  add(Kind::text, "Text2", "", " ").tooltip = "This will be the SU file";
  add(Kind::frame, "Frame1", "Data type");
  add_in("Frame1", Kind::option, "Option1", "Integer 2 bytes").tooltip = "Bison 5000 are integer values";
  add_in("Frame1", Kind::option, "Option3", "Floating 4 bytes");
  add_in("Frame1", Kind::option, "Option4", "ASCII");
  add(Kind::label, "Label1", "Label1");
  add(Kind::button, "Command4", "Output file");  // nothing attached
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

// Every statement runs with failures skipped.
void Ambrogeo::Select_i() {
  const RecordChoice choice =
      Select_records(app, *this, {"ambrogeo file selection", "Record |*.dta|All files|*.*|", "*.dta"});
  state.file_out = text("Text2");
  Replace_All(state.file_out, sep + sep, sep);
  Replace_All(state.file_out, " ", "");
  set_text("Text2", state.file_out);
  // With several files the header is read from the second entry of the list.
  const std::string name = choice.multiple ? list_entry((*this)["List1"], 1) : choice.name;
  std::optional<TextLines> lines;
  resume_next([&] { lines.emplace(file_system_name(name)); });
  std::string line[length_line + 1];
  for (int i = 1; i <= length_line; ++i)
    resume_next([&] {
      if (!lines) throw RunTimeError(err::bad_file_number);
      line[i] = lines->next_line();
    });
  resume_next([&] { files.close_all(); });
  set_text("Text1", line[channels_line]);
  set_text("Text3", line[samples_line]);
  resume_next([&] {
    const double samples = leading_number(line[samples_line]);
    if (samples == 0) throw RunTimeError(err::division_by_zero);
    set_text("Text4", field_text(to_i32(leading_number(line[length_line]) / samples * 1000)));
  });
}

void Ambrogeo::info() {
  message(platform, ended_lines(help_lines, state.crlf));
}

// Every statement runs with failures skipped: a column past the channels
// fails on its store and drops out; a file that runs short leaves the
// table as the file before left it.
void Ambrogeo::Convert() {
  auto step = [](const std::function<void()>& statement) { resume_next(statement); };
  step([&] { files.close_all(); });
  set_pointer(Pointer::hourglass);
  int16_t file_count = 0;
  step([&] { state.nb_channels = field_i16(text("Text1")); });
  step([&] { state.ns = field_i32(text("Text3")); });
  step([&] { state.dt = field_i16(text("Text4")); });
  step([&] { file_count = field_i16(text("Text6")); });
  const int32_t ns = state.ns;
  const int32_t width = state.nb_channels + 1;  // channel index from 0
  step([&] {
    if (ns < 1) throw RunTimeError(err::subscript);  // indices from 1
    dim_array(state.r4_trace, ns);
  });
  step([&] {
    if (ns < 1 || width < 1) throw RunTimeError(err::subscript);
    dim_array(state.i2_trace, static_cast<int64_t>(ns + 1) * width - 1);
  });
  step([&] { state.file_out = text("Text2"); });
  set_visible("ProgressBar1", true);
  step([&] { set_progress_range("ProgressBar1", 1, file_count); });
  step([&] { files.close_all(); });
  step([&] { files.open(2, file_system_name(state.file_out)); });
  if (file_count > max_records) {
    file_count = max_records;
    message(platform, "Maximum 99 records");
  }

  // The working table: row s (sample, from 1), column i (channel, from 0).
  auto table = [&](int32_t s, int32_t i) -> int16_t& {
    const int64_t at = static_cast<int64_t>(s) * width + i;
    if (at < 0 || at >= static_cast<int64_t>(state.i2_trace.size())) throw RunTimeError(err::subscript);
    return state.i2_trace[static_cast<size_t>(at)];
  };
  su::RecordImage image(files, 2);
  int16_t year = 0, day = 0, hour = 0, minute = 0;  // day runs on over the files
  for (int16_t f = 1; f <= file_count; step([&] { f = i16_next(f); })) {
    step([&] { set_progress("ProgressBar1", f); });
    std::optional<TokenReader> record;
    step([&] {
      const std::string name = file_system_name(list_entry((*this)["List1"], f - 1));
      open_record(files, 1, name);
      record.emplace(read_whole_file(name));
    });
    auto next_line = [&] {
      if (!record) throw RunTimeError(err::bad_file_number);
      return record->next_line();
    };
    for (int i = 1; i <= header_lines; ++i) {
      std::string line;
      step([&] { line = next_line(); });
      if (i == date_line) {
        step([&] { year = to_i16(2000 + last_four(line)); });
        step([&] { day = i16_add(i16_mul(days_per_step, to_i16(number_in(line, 5, 2))), day); });
      } else if (i == time_line) {
        step([&] { hour = to_i16(number_in(line, 2, 2)); });
        step([&] { minute = to_i16(number_in(line, 5, 2)); });
      }
    }
    for (int32_t s = 1; s <= ns; ++s)
      for (int32_t i = 1; i <= columns; ++i)
        step([&] {
          if (!record) throw RunTimeError(err::bad_file_number);
          const int16_t value = to_i16(record->next_number());
          if (i >= width) throw RunTimeError(err::subscript);
          table(s, i) = value;
        });
    for (int16_t c = 1; c <= state.nb_channels; step([&] { c = i16_next(c); })) {
      int16_t trace = 0;
      step([&] { trace = i16_add(i16_mul(f - 1, state.nb_channels), c - 1); });
      step([&] { state.trace_pos = i32_mul(trace, su::record_size(ns)); });
      image.move_to(state.trace_pos);
      su::put_record_header(image, f, c, ns, state.dt, true);
      image.put(su::word("year"), year);
      image.put(su::word("day"), day);
      image.put(su::word("hour"), hour);
      image.put(su::word("minute"), minute);
      step([&] {
        if (static_cast<int64_t>(state.r4_trace.size()) <= ns) throw RunTimeError(err::subscript);
        for (int32_t s = 1; s <= ns; ++s) state.r4_trace[static_cast<size_t>(s)] = table(s, c);
        image.put_block(su::header_size, &state.r4_trace[1], static_cast<size_t>(ns));
      });
    }
    step([&] { image.flush(); });
    step([&] { files.close(1); });
  }
  step([&] { image.flush(); });
  step([&] { files.close(2); });
  set_visible("ProgressBar1", false);
  set_pointer(Pointer::arrow);
  message(platform, "OK, Conversion done");
}

}  // namespace tf
