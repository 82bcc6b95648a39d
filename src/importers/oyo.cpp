#include "importers/oyo.h"

#include <filesystem>
#include <iterator>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "su/su_record.h"

namespace tf {

namespace {
// A crlf between the pieces, two after the third.
const char* const help_lines[] = {
    "OYO McSeis 170  to SU format conversion",
    "This module will convert OYO McSeis 170 ( modified SEG-1) 12 channels and 1000 samples records  ",
    "to Seismic Unix format. ",
    " 1- Select all the files of your line (max, 99)",
    "    Use Ctrl or Ucase for multiple files selection",
    " 2- Check record parameters ",
    " 3- click on CONVERT button",
    "Most of SEG header informations are recorded in SU file ",
    "The result will be a single file with all the selected data ",
};
const char* const channels_prompt = "Enter the number of channels";
const char* const overwrite_question = " file name already exists, this will will remplaced !";

// The fixed columns of the text header: byte offset and characters.
struct Column {
  int offset;
  size_t chars;
};
constexpr Column record_number{2816, 4}, channels{2866, 4}, samples{2870, 4}, interval_ms{2875, 5}, delay{2881, 9},
    low_cut{2891, 4}, high_cut{2896, 4}, notch{2901, 4}, first_position{2906, 6}, second_position{2913, 6},
    third_value{2920, 6}, fourth_value{2927, 6};
// The traces: channel after channel, four bytes a sample whatever the type.
constexpr int trace_data = 6144;
constexpr int slot_bytes = 4;

// The characters of a column as they stand; a record too short for them
// leaves the buffer as it was.
std::string column_text(BinaryFile& record, const Column& column, std::string& buffer) {
  buffer.resize(column.chars, ' ');
  record.read_at(column.offset, buffer.data(), column.chars);
  return buffer;
}

// The values of one record's header that go into its traces. They live
// through the whole conversion: a field that fails to fit keeps the value
// of the file before.
struct RecordValues {
  int32_t fldr = 0, sx = 0, sy = 0, third = 0, fourth = 0;
  int16_t delrt = 0, lcf = 0, hcf = 0, nofilf = 0;
  std::string buffers[9];
};

void read_record_values(BinaryFile& record, RecordValues& v) {
  // Each column is read into its own buffer, in the record's order of reading.
  auto number = [&](const Column& column, int i) { return leading_number(column_text(record, column, v.buffers[i])); };
  resume_next([&] { v.fldr = to_i32(number(record_number, 0)); });
  resume_next([&] { v.lcf = to_i16(number(low_cut, 1)); });
  resume_next([&] { v.hcf = to_i16(number(high_cut, 2)); });
  resume_next([&] { v.nofilf = to_i16(number(notch, 3)); });
  resume_next([&] { v.delrt = to_i16(number(delay, 4)); });
  resume_next([&] { v.sx = to_i32(number(first_position, 5)); });
  resume_next([&] { v.sy = to_i32(number(second_position, 6)); });
  // The third and fourth values are in the record; no trace word takes them.
  resume_next([&] { v.third = to_i32(number(third_value, 7)); });
  resume_next([&] { v.fourth = to_i32(number(fourth_value, 8)); });
}
}  // namespace

oyo::oyo(App& owner) : Panel(owner, "oyo", "OYO McSEIS 170 to SU conversion") {
  add(Kind::button, "Command3", "Press here to select OYO McSEIS170 ").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text5", "Number of files", "1").tooltip = "Type here the number of file to convert";
  add(Kind::text, "Text6", "Sample rate", "200");
  add(Kind::text, "Text1", "Record length", "1024");
  add(Kind::text, "Text4", "Number of sample", "2048");
  add(Kind::text, "Text3", "Trace number", " 12");
  add(Kind::text, "Text2", "", " ");
  add(Kind::option, "float", "Floating");
  add(Kind::option, "sinteger", "Short Integer");
  add(Kind::option, "linteger", "Long integer").value = 1;
  add(Kind::button, "Command4", "Out file").on_click = [this] { out_file(); };
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

// Every statement runs with failures skipped. A single file is cut like
// several: it lists nothing and counts 0, so at least two must be chosen.
void oyo::Select_i() {
  resume_next([&] {
    state.file_in = records_dialog(platform, "OYO McSeis file selection", "Record |*.org|All files|*.*|", "*.org",
                                   state.data_folder);
  });
  const RecordChoice choice = read_record_choice(state.file_in, SingleChoice::cut_like_several);
  for (const auto& entry : choice.entries) add_item("List1", entry);
  set_text("Text5", field_text(choice.count));
  // The folder and the name run together: no separator between them.
  set_text("Text2", choice.folder + "oyo.su");

  std::string buffer;
  resume_next([&] { open_record(files, 1, list_entry((*this)["List1"], 0)); });
  resume_next([&] { set_text("Text3", field_text(round_half_even(leading_number(column_text(files[1], channels, buffer))))); });
  // Asked at every selection; a cancel empties the field.
  InputBoxRequest ask;
  ask.prompt = channels_prompt;
  ask.default_text = text("Text3");
  set_text("Text3", platform.input_box(ask));
  resume_next([&] { set_text("Text4", column_text(files[1], samples, buffer)); });
  resume_next([&] { set_text("Text6", column_text(files[1], interval_ms, buffer)); });
  resume_next([&] { files.close(1); });
  set_text("Text1", field_text(leading_number(text("Text6")) * leading_number(text("Text4"))));
}

void oyo::out_file() {
  set_text("Text2", output_name_dialog(platform, ""));
}

void oyo::info() {
  std::string text = help_lines[0];
  for (size_t i = 1; i < std::size(help_lines); ++i) text += state.crlf + (i == 3 ? state.crlf : "") + help_lines[i];
  message(platform, text);
}

// Every failing statement is skipped, leaving what it should have set as it
// was.
void oyo::Convert() {
  if (state.file_in.size() < 5) return;
  resume_next([&] { files.close_all(); });
  set_pointer(Pointer::hourglass);
  resume_next([&] { state.ns = field_i32(text("Text4")); });
  // Milliseconds into microseconds: the default 200 does not fit and leaves
  // dt as it stood.
  resume_next([&] { state.dt = to_i16(leading_number(text("Text6")) * 1000); });
  (void)leading_number(text("Text1"));  // the record length has no effect
  resume_next([&] { state.nb_channels = field_i16(text("Text3")); });
  state.file_out = single_separators(text("Text2"));
  if (File_Exists(state.file_out)) {
    if (message(platform, state.file_out + overwrite_question, Icon::question, Buttons::ok_cancel) != Answer::ok) {
      set_pointer(Pointer::arrow);
      return;
    }
    resume_next([&] {
      std::error_code ec;
      if (!std::filesystem::remove(file_system_name(state.file_out), ec)) throw RunTimeError(err::permission_denied);
    });
  }
  int16_t file_count = 0;
  resume_next([&] { file_count = field_i16(text("Text5")); });
  const bool long_integers = checked("linteger"), short_integers = checked("sinteger");
  const int32_t ns = state.ns;
  resume_next([&] {
    if (ns < 1) throw RunTimeError(err::subscript);  // indices 1 to ns
    if (long_integers)
      state.i4_trace.assign(static_cast<size_t>(ns) + 1, 0);
    else
      state.i2_trace.assign(static_cast<size_t>(ns) + 1, 0);
  });
  resume_next([&] {
    if (ns < 1) throw RunTimeError(err::subscript);
    state.r4_trace.assign(static_cast<size_t>(ns) + 1, 0.0f);
  });
  resume_next([&] { files.open(2, file_system_name(state.file_out)); });
  if (file_count > 99) {
    file_count = 99;
    message(platform, "Maximum 99 records");
  }
  resume_next([&] { set_progress_range("ProgressBar1", 1, file_count); });

  // Buffers of other sizes from an earlier job are not read past their end.
  auto fits = [&](size_t size) { return ns >= 1 && size > static_cast<size_t>(ns); };
  RecordValues header;
  su::RecordImage image(files, 2);
  for (int16_t f = 1; f <= file_count; ++f) {
    resume_next([&] { set_progress("ProgressBar1", f); });
    resume_next([&] { open_record(files, 1, list_entry((*this)["List1"], f - 1)); });
    resume_next([&] { read_record_values(files[1], header); });
    // A 16-bit counter past 32767 fails its step and the loop ends there.
    for (int32_t c = 1; c <= state.nb_channels; ++c) {
      int16_t trace = 0;
      resume_next([&] { trace = i16_add(i16_add(c, i16_mul(state.nb_channels, f - 1)), -1); });
      resume_next([&] { state.trace_pos = i32_mul(trace, su::record_size(ns)); });
      image.move_to(state.trace_pos);
      image.zero_words(36, 88, 4);
      image.zero_words(88, 180, 2);
      image.zero_words(180, 208, 4);
      image.zero_words(208, 224, 2);
      image.put(su::word("tracl"), 0);
      image.put(su::word("tracr"), 0);
      image.put(su::word("fldr"), header.fldr);
      image.put(su::word("tracf"), c);
      image.put(su::word("cdp"), 0);
      image.put(su::word("cdpt"), 0);
      // Four bytes each: the writes overlap and leave 1 in every word.
      image.put_i32(su::word("trid").offset, 1);
      image.put_i32(su::word("nvs").offset, 1);
      image.put_i32(su::word("nhs").offset, 1);
      image.put(su::word("duse"), 1);
      image.put(su::word("scalel"), 0);
      image.put(su::word("scalco"), 0);
      image.put(su::word("sx"), header.sx);
      image.put(su::word("sy"), header.sy);
      image.put(su::word("delrt"), header.delrt);
      image.put_i32(su::word("ns").offset, ns);  // 4 bytes: its upper half falls on dt
      image.put(su::word("dt"), state.dt);
      image.put(su::word("nofilf"), header.nofilf);
      image.put(su::word("lcf"), header.lcf);
      image.put(su::word("hcf"), header.hcf);

      // The same four-byte stride for every type: short integers fill the
      // first half of their slots.
      int32_t at = 0;
      resume_next([&] { at = i32_add(trace_data, i32_mul(i32_mul(c - 1, ns), slot_bytes)); });
      auto& samples = state.r4_trace;
      if (long_integers && fits(state.i4_trace.size()) && fits(samples.size())) {
        resume_next([&] { files[1].read_at(at, &state.i4_trace[1], 4 * static_cast<size_t>(ns)); });
        for (int32_t k = 1; k <= ns; ++k) samples[static_cast<size_t>(k)] = static_cast<float>(state.i4_trace[static_cast<size_t>(k)]);
      } else if (short_integers && fits(state.i2_trace.size()) && fits(samples.size())) {
        resume_next([&] { files[1].read_at(at, &state.i2_trace[1], 2 * static_cast<size_t>(ns)); });
        for (int32_t k = 1; k <= ns; ++k) samples[static_cast<size_t>(k)] = state.i2_trace[static_cast<size_t>(k)];
      } else if (!long_integers && !short_integers && fits(samples.size())) {
        resume_next([&] { files[1].read_at(at, &samples[1], 4 * static_cast<size_t>(ns)); });
      }
      if (fits(samples.size())) image.put_block(su::header_size, &samples[1], static_cast<size_t>(ns));
    }
    // The channels of a record go to the file in one write.
    resume_next([&] { image.flush(); });
    resume_next([&] { files.close(1); });
  }
  resume_next([&] { image.flush(); });
  resume_next([&] { files.close(2); });
  set_pointer(Pointer::arrow);
  message(platform, "Conversion done");
}

}  // namespace tf
