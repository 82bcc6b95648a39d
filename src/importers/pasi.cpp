#include "importers/pasi.h"

#include <functional>
#include <optional>

#include "frame/helpers.h"
#include "frame/paths.h"
#include "frame/record_selection.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_text =
    " This modules convert LCM-12 seismograph data to SU format, just select files and press on CONVERT button";
}  // namespace

pasi::pasi(App& owner) : Panel(owner, "pasi", "LCM-112") {
  add(Kind::button, "Command5", "Press here to select LCM-12 files").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text3", "Trace number per record", "12").tooltip = "Correct here the trace number if necesssary";
  add(Kind::text, "Text4", "Number of sample", "512").tooltip = "Correct hre the number of sample per trace";
  add(Kind::text, "Text5", "Sample rate (micros)", "500").tooltip = "Don't forget the sample rate !!!";
  add(Kind::text, "Text6", "Number of files to convert", "1").tooltip = "Type here the number of file to convert";
  add(Kind::label, "Label7", "Input file size");
  add(Kind::label, "Label8", " ");
  add(Kind::text, "Text2", "", " ").tooltip = "This will be the SU file";
  add(Kind::button, "Command4", "Output file");  // nothing attached
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");  // no step moves it
}

// Every statement runs with failures skipped. A single file is cut like
// several: it lists nothing.
void pasi::Select_i() {
  const RecordChoice choice =
      Select_cut_records(app, *this, {"LCM-1 file selection", "Record |*.asc|All files|*.*|", "*.asc"});
  // The count goes into the sample rate box too: the operator types the
  // rate in afterwards.
  set_text("Text5", field_text(choice.count));
  set_text("Text6", field_text(choice.count));
  set_text("Text2", choice.folder + sep + "pasi.su");
  int64_t length = 0;  // of the dialog's text as it stands
  resume_next([&] { length = file_length(file_system_name(state.file_in)); });
  resume_next([&] { state.ns = field_i16(text("Text4")); });
  set_caption("Label8", field_text(length) + " bytes");
}

void pasi::info() { message(platform, help_text); }

// Every statement runs with failures skipped. The headers stand where the
// samples count of the selection puts them, the samples where the count
// read now puts them: the two part when Text4 was changed in between.
void pasi::Convert() {
  auto step = [](const std::function<void()>& statement) { resume_next(statement); };
  int32_t file_count = 0, channels = 0;
  int16_t samples = 0;
  step([&] { state.file_out = text("Text2"); });
  step([&] { file_count = field_i32(text("Text6")); });
  step([&] { channels = field_i32(text("Text3")); });
  step([&] { state.dt = field_i16(text("Text5")); });
  step([&] { samples = field_i16(text("Text4")); });
  step([&] {
    if (samples < 1) throw RunTimeError(err::subscript);  // indices from 1
    dim_array(state.r4_trace, samples);
  });
  step([&] { files.open(1, file_system_name(state.file_out)); });

  su::RecordImage image(files, 1);
  int32_t header_record = 0;
  step([&] { header_record = su::record_size(state.ns); });
  int32_t n = -1;
  int32_t samples_at = 0;  // keeps the trace before's place when its product fails
  for (int32_t f = 1; f <= file_count; step([&] { f = i32_add(f, 1); })) {
    std::optional<TokenReader> record;
    step([&] {
      const std::string name = file_system_name(list_entry((*this)["List1"], f - 1));
      open_record(files, 2, name);
      record.emplace(read_whole_file(name));
    });
    for (int32_t c = 1; c <= channels; step([&] { c = i32_add(c, 1); })) {
      step([&] { n = i32_add(n, 1); });
      step([&] {
        image.move_to(i32_mul(n, header_record));
        image.put(su::word("tracl"), 0);
        image.put(su::word("tracr"), 0);
        image.put(su::word("fldr"), f);
        image.put(su::word("tracf"), c);
        for (const char* key : {"ep", "cdp", "cdpt"}) image.put(su::word(key), 0);
        for (const char* key : {"trid", "nvs", "nhs"}) image.put(su::word(key), 1);
        image.put(su::word("duse"), 0);
        image.zero_words(36, 88, 4);
        for (int at = 88; at <= 182; ++at) image.put_i16(at, 0);  // stepping one byte at a time
        image.put_i16(su::word("ns").offset, samples);
        image.put_i16(su::word("dt").offset, state.dt);
        for (const char* key : {"year", "day", "hour", "minute"}) image.put(su::word(key), 0);
      });
      for (int16_t s = 1; s <= samples; ++s)
        step([&] {
          if (!record) throw RunTimeError(err::bad_file_number);
          if (static_cast<int64_t>(state.r4_trace.size()) <= s) throw RunTimeError(err::subscript);
          state.r4_trace[static_cast<size_t>(s)] = static_cast<float>(to_i32(record->next_number()));
        });
      step([&] { samples_at = i32_add(i32_mul(n, i16_add(i16_mul(4, samples), su::header_size)), su::header_size); });
      step([&] {
        if (samples < 1 || static_cast<int64_t>(state.r4_trace.size()) <= samples) throw RunTimeError(err::subscript);
        image.move_to(samples_at);
        image.put_block(0, &state.r4_trace[1], static_cast<size_t>(samples));
      });
    }
    step([&] { image.flush(); });
    step([&] { files.close(2); });
  }
  step([&] { image.flush(); });
  step([&] { files.close_all(); });
  message(platform, "Conversion, done !", Icon::information);
}

}  // namespace tf
