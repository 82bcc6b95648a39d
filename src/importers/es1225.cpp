#include "importers/es1225.h"

#include <iterator>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    "ES-1225 to SU format conversion",
    "This module will convert ES-1225 (SEG-1) 12 channels and 1000 samples records  ",
    "to SU format. ",
    "",
    " 1- Select all the files of your line",
    " 2- Select the record length ",
    " 3- click on convert ",
    "",
    "You MUST enter the record length, default value is 250 ms  ",
    "The result will be a single file with all the selected data ",
};
const char* const record_lengths[] = {"25 ms", "50 ms", "100 ms", "250 ms", "500 ms", "1000 ms", "2000 ms"};
const char* const retry_ending = " Check if all files are in the folder !";
// Each channel block: the samples at 2 bytes each, then 48 bytes.
constexpr int block_tail = 48;
}  // namespace

es1225::es1225(App& owner) : Panel(owner, "es1225", " SEG-1 / ES-1225 to SU (min=2 records)") {
  add(Kind::button, "Command3", "Press here to select ES1225 files (Min=2 records)").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text3", "Number of files").key_filter = "0123456789";
  auto& channels = add(Kind::text, "Text5", "Traces / rec", "12");
  channels.tooltip = "Type here the number of file to convert";
  channels.key_filter = "0123456789";
  add(Kind::text, "Text4", "Number of sample", "1000").key_filter = "0123456789";
  add(Kind::text, "Text1", "Samplerate", "500");
  auto& length = add(Kind::combo, "Combo1", "Record length", "250 ms");
  length.tooltip = "Select ghere the record length";
  add(Kind::label, "Label3", "Trace number");
  add(Kind::check, "Check1", "Short Integer Input data").value = 1;
  add(Kind::check, "Check2", "Long Integer Input  Data");
  add(Kind::check, "Check3", "Floating point Input data");
  add(Kind::text, "Text2", "", " ");
  add(Kind::button, "Command4", "Out file").on_click = [this] { out_file(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::progress, "ProgressBar1");
}

void es1225::form_load() {
  for (const char* length : record_lengths) add_item("Combo1", length);
}

void es1225::Select_i() {
  state.file_in = records_dialog(platform, "ES1225 file selection", "Record |*.dat|All files|*.*|", "*.dat",
                                 state.data_folder);
  auto selection = cut_at_blanks(state.file_in + " ");
  // Names past the hundredth piece are lost; the count still has them.
  for (int i = 1; i < selection.count && i < selection_capacity; ++i) add_item("List1", selection.items[0] + selection.items[i]);
  set_text("Text3", field_text(selection.count - 1));
  set_text("Text2", single_separators(selection.items[0] + native_path("\\es1225.su")));
}

void es1225::out_file() {
  set_text("Text2", output_name_dialog(platform, ""));
}

void es1225::info() {
  // The lines are joined by crlf: nothing follows the last one.
  std::string text = help_lines[0];
  for (size_t i = 1; i < std::size(help_lines); ++i) text += state.crlf + help_lines[i];
  message(platform, text);
}

void es1225::Convert() {
  // Every failing statement shows the conversion error box and runs again.
  auto step = [this](const std::function<void()>& statement) { retry_statement(platform, statement, retry_ending); };
  int16_t file_count = 0;
  step([&] { files.close_all(); });
  set_pointer(Pointer::hourglass);
  step([&] { state.ns = field_i32(text("Text4")); });
  step([&] { state.dt = field_i16(text("Text1")); });
  step([&] { state.nb_channels = field_i16(text("Text5")); });
  step([&] { file_count = field_i16(text("Text3")); });
  step([&] { (void)leading_number(text("Combo1")); });  // the record length has no effect
  const int32_t ns = state.ns;
  step([&] {
    dim_array(state.i2_trace, ns);
    dim_array(state.r4_trace, ns);
    dim_array(state.i4_trace, ns);
  });
  if (state.file_in == ".DAT") return;
  step([&] { state.file_out = single_separators(text("Text2")); });
  step([&] { files.close_all(); });
  step([&] { files.open(2, state.file_out); });
  if (file_count > 99) {
    file_count = 99;
    message(platform, "Maximum 99 records");
  }
  set_progress_range("ProgressBar1", 1, file_count);

  const int32_t channel_block = i32_add(i32_mul(2, ns), block_tail);  // B
  su::RecordImage image(files, 2);
  for (int16_t i = 1; i <= file_count; ++i) {
    set_progress("ProgressBar1", i);
    std::string record;
    step([&] {
      record = single_separators(list_entry((*this)["List1"], i - 1));  // past the end: an empty name
    });
    step([&] { files.open(1, record); });
    for (int16_t j = 1; j <= state.nb_channels; step([&] { j = i16_next(j); })) {
      int32_t p = 0;
      step([&] { p = to_i32(static_cast<double>(files[1].length()) - static_cast<double>(channel_block) * state.nb_channels - 1); });
      if (p < 48) {
        message(platform, "Wrong file length", Icon::stop);
        resume_next([&] { files.close_all(); });
        set_pointer(Pointer::arrow);
        return;
      }
      int32_t r = 0;
      step([&] { r = i32_add(i32_mul(channel_block, j - 1), p); });
      const int64_t read_at = int64_t{r} - 1;  // R counts from 1
      if (checked("Check1")) {
        step([&] { files[1].read_block(read_at, state.i2_trace); });
        for (int32_t k = 0; k < ns; ++k) state.r4_trace[static_cast<size_t>(k)] = state.i2_trace[static_cast<size_t>(k)];
      }
      if (checked("Check2")) {
        step([&] { files[1].read_block(read_at, state.i4_trace); });
        for (int32_t k = 0; k < ns; ++k)
          state.r4_trace[static_cast<size_t>(k)] = static_cast<float>(state.i4_trace[static_cast<size_t>(k)]);
      }
      if (checked("Check3")) step([&] { files[1].read_block(read_at, state.r4_trace); });

      int16_t t = 0;
      step([&] { t = i16_add(i16_mul(i - 1, state.nb_channels), j - 1); });
      step([&] { state.trace_pos = i32_mul(t, su::record_size(ns)); });
      image.move_to(state.trace_pos);
      su::put_channel_words(image, 0, j);  // the record number is not stored
      image.put_i32(su::word("tstat").offset, 0);  // 4 bytes: tstat and laga
      image.put_i32(su::word("muts").offset, 0);   // 4 bytes: muts and mute
      image.put_i32(su::word("mute").offset, 0);   // 4 bytes: mute and, for now, ns
      step([&] { image.put(su::word("ns"), ns); });
      image.put(su::word("dt"), state.dt);
      // ns + 1 floats: the last lands on the next record's first word.
      image.put_block(su::header_size, state.r4_trace.data(), state.r4_trace.size());
    }
    // The channels of a record go to the file in one write.
    step([&] { image.flush(); });
    step([&] { files.close(1); });
  }
  step([&] { files.close_all(); });
  set_pointer(Pointer::arrow);
  message(platform, "Conversion done");
  unload();
}

}  // namespace tf
