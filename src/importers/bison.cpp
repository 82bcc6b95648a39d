#include "importers/bison.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <functional>

#include "frame/helpers.h"
#include "frame/paths.h"
#include "frame/record_selection.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    "BISON 5000 module conversion",
    " This module convert BISON 5000 record to SU format ",
    " Sample rate trace number, trace number, file number are recorded ",
    " but you must (re)enter all geometrical data ! ",
};

// The header text: line i (after the i-th line end) holds these values.
constexpr int channels_line = 14;
constexpr int samples_line = 16;
constexpr int interval_line = 17;  // milliseconds
constexpr int stored_starts = 1000;  // line starts kept
constexpr int stored_texts = 201;    // texts 0 to 200
constexpr int progress_top = 32000;

// A channel's words: every fifth is a gain word for the four samples behind it.
constexpr int gain_every = 5;
int16_t gain_multiplier(int16_t gain_word) { return gain_word < -1 ? 2 : 1; }

// Walks a file two characters at a time, as a text file opened for input
// is read by pairs; a last single character is no pair. `pair` returns
// false to stop. A missing file is error 53: opening for input creates none.
void walk_pairs(FileTable& files, const std::string& path, const std::function<bool(char, char)>& pair) {
  open_record(files, 1, path);
  BinaryFile& file = files[1];
  std::vector<char> chunk(1 << 20);
  for (int64_t at = 0; at + 1 < file.length(); at += static_cast<int64_t>(chunk.size())) {
    const auto size = static_cast<size_t>(std::min<int64_t>(static_cast<int64_t>(chunk.size()), file.length() - at)) & ~size_t{1};
    file.read_at(at, chunk.data(), size);
    for (size_t i = 0; i < size; i += 2)
      if (!pair(chunk[i], chunk[i + 1])) return files.close(1);
  }
  files.close(1);
}
}  // namespace

Bison::Bison(App& owner) : Panel(owner, "Bison", "Bison 5000") {
  add(Kind::button, "Command5", "Press here to select BISON files ").on_click = [this] { Select_i(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text3", "Trace number per record", "12").tooltip = "Correct here the trace number if necesssary";
  add(Kind::text, "Text4", "Number of sample", "1000").tooltip = "Correct hre the number of sample per trace";
  add(Kind::text, "Text5", "Sample rate", "480").tooltip = "Don't forget the sample rate !!!";
  add(Kind::text, "Text6", "Number of files to convert", "1").tooltip = "Type here the number of file to convert";
  add(Kind::text, "Text7", "File Header size", "1161").tooltip = "File header size (is automatically computed)";
  add(Kind::label, "Label8", " ");
  add(Kind::frame, "Frame1", "Data type");
  add_in("Frame1", Kind::option, "Option1", "Integer 2 bytes").tooltip = "Bison 5000 are integer values";
  add_in("Frame1", Kind::option, "Option2", "Float 4 bytes");
  add_in("Frame1", Kind::option, "Option3", "Floating 4 bytes");
  add_in("Frame1", Kind::option, "Option4", "ASCII");
  auto& out = add(Kind::text, "Text2", "", " ");
  out.tooltip = "This will be the SU file";
  out.on_dblclick = [this] { Outputfile(); };
  add(Kind::button, "Command4", "Output file").on_click = [this] { Outputfile(); };
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}
void Bison::Select_i() {
  Select_records(app, *this, {"BISON file selection", "Record |*.dat|All files|*.*|", "*.dat"});
  const RecordChoice choice = read_record_choice(state.file_in);
  state.file_in = choice.name;
  Replace_All(state.file_in, sep + sep, sep);
  Replace_All(state.file_in, " ", "");
  int64_t length = 0;
  resume_next([&] { length = file_length(state.file_in); });
  resume_next([&] { state.ns = field_i32(text("Text4")); });
  set_caption("Label8", field_text(length) + " bytes");
  Header_Size();
}

// The header's size and its lines 14, 16 and 17, with failing statements
// skipped.
void Bison::Header_Size() {
  set_visible("ProgressBar1", true);
  set_progress_range("ProgressBar1", 1, progress_top);
  // Line starts from 1, each the place (counted from 1) behind a line end.
  std::vector<int16_t> starts(stored_starts + 1, 0);
  int32_t pairs = 0, lines = 0;
  resume_next([&] {
    walk_pairs(files, file_system_name(state.file_in), [&](char a, char b) {
      ++pairs;
      if (a == '\r' && b == '\n') {
        ++lines;
        if (lines <= stored_starts) resume_next([&] { starts[static_cast<size_t>(lines)] = i16_add(i32_mul(pairs, 2), 1); });
      }
      return true;
    });
  });
  std::vector<std::string> texts(stored_texts);
  resume_next([&] { open_record(files, 1, file_system_name(state.file_in)); });
  for (int32_t i = 2; i <= lines && i <= stored_starts; ++i) {
    resume_next([&] {
      const int32_t from = starts[static_cast<size_t>(i - 1)], to = starts[static_cast<size_t>(i)];
      if (from < 1) throw RunTimeError(err::bad_file_number);
      if (i - 1 >= stored_texts) throw RunTimeError(err::subscript);
      const int32_t size = to - from - 2;
      if (size < 0) throw RunTimeError(err::invalid_call);
      BinaryFile& file = files[1];
      if (from - 1 + size > file.length()) throw RunTimeError(err::input_past_end);
      std::string text(static_cast<size_t>(size), '\0');
      file.read_at(from - 1, text.data(), text.size());
      texts[static_cast<size_t>(i - 1)] = text;
    });

  }
  resume_next([&] { files.close(1); });
  int32_t count = 0;
  resume_next([&] {
    walk_pairs(files, file_system_name(state.file_in), [&](char a, char b) {
      ++count;
      if (count <= progress_top) set_progress("ProgressBar1", count);
      return !(a == 3 && b == 3);
    });
  });
  resume_next([&] { set_text("Text7", field_text(i32_mul(count, 2))); });
  set_text("Text3", texts[channels_line]);
  set_text("Text4", texts[samples_line]);
  set_text("Text5", field_text(leading_number(texts[interval_line]) * 1000));
}

void Bison::Outputfile() { set_text("Text2", output_name_dialog(platform, "")); }

void Bison::info() {
  message(platform, ended_lines(help_lines, state.crlf));
}

void Bison::Convert() {
  // Every failing statement shows the conversion error box and runs again.
  auto step = [this](const std::function<void()>& statement) { retry_statement(platform, statement); };
  step([&] { files.close_all(); });
  set_pointer(Pointer::hourglass);
  int16_t words = 0, file_count = 0;  // W, the words of a channel
  int32_t header = 0;                 // H
  step([&] { state.nb_channels = field_i16(text("Text3")); });
  step([&] { state.ns = field_i32(text("Text4")); });
  step([&] { words = to_i16(state.ns * 1.25); });
  step([&] { state.dt = field_i16(text("Text5")); });
  step([&] { file_count = field_i16(text("Text6")); });
  step([&] { header = field_i32(text("Text7")); });
  const int32_t ns = state.ns;
  step([&] {
    if (ns < 1 || words < 1) throw RunTimeError(err::subscript);  // indices from 1
    dim_array(state.r4_trace, ns);
    dim_array(state.i2_trace, words);
  });
  step([&] { state.file_out = text("Text2"); });
  set_visible("ProgressBar1", true);
  step([&] { set_progress_range("ProgressBar1", 1, i16_mul(state.nb_channels, file_count)); });
  step([&] { files.close_all(); });
  step([&] { files.open(2, file_system_name(state.file_out)); });
  if (file_count > 99) {
    file_count = 99;
    message(platform, "Maximum 99 records");
  }

  su::RecordImage image(files, 2);
  for (int16_t f = 1; f <= file_count; step([&] { f = i16_next(f); })) {
    step([&] { open_record(files, 1, list_entry((*this)["List1"], f - 1)); });
    for (int16_t c = 1; c <= state.nb_channels; step([&] { c = i16_next(c); })) {
      step([&] { set_progress("ProgressBar1", i16_add(i16_mul(f - 1, c), c)); });
      step([&] {
        files[1].read_at(i32_add(header, i32_mul(i32_mul(c - 1, 2), words)), &state.i2_trace[1], 2 * static_cast<size_t>(words));
      });
      int16_t trace = 0;
      step([&] { trace = i16_add(i16_mul(f - 1, state.nb_channels), c - 1); });
      step([&] { state.trace_pos = i32_mul(trace, su::record_size(ns)); });
      image.move_to(state.trace_pos);
      su::put_record_header(image, 0, c, ns, state.dt, true);  // fldr is written and never given a value
      int16_t multiplier = 1, sample = 0;
      if (words < INT16_MAX && words - words / gain_every <= ns) {
        // No statement of the walk can fail: the counter stays in 16 bits
        // and the samples in the trace.
        // A group is four samples and its gain word, which sets the
        // multiplier of the next group; the words past the last whole group
        // are samples. A sample times 1 or 2 is exact in a single, so the
        // product of singles is the single of the integer product.
        const int16_t* word = &state.i2_trace[1];
        float* out = &state.r4_trace[1];
        const int32_t groups = words / gain_every;
        for (int32_t g = 0; g < groups; ++g, word += gain_every, out += gain_every - 1) {
          const auto m = static_cast<float>(multiplier);
          for (int i = 0; i < gain_every - 1; ++i) out[i] = static_cast<float>(word[i]) * m;
          multiplier = gain_multiplier(word[gain_every - 1]);
        }
        for (int32_t i = 0; i < words % gain_every; ++i) out[i] = static_cast<float>(word[i] * multiplier);
        image.put_block(su::header_size, &state.r4_trace[1], static_cast<size_t>(ns));
        continue;
      }
      for (int16_t k = 1; k <= words; step([&] { k = i16_next(k); })) {
        const int16_t value = state.i2_trace[static_cast<size_t>(k)];
        if (k % gain_every == 0) {
          multiplier = gain_multiplier(value);
          continue;
        }
        step([&] { sample = i16_next(sample); });
        step([&] {
          if (sample > ns) throw RunTimeError(err::subscript);
          state.r4_trace[static_cast<size_t>(sample)] = static_cast<float>(value * multiplier);
        });
      }
      image.put_block(su::header_size, &state.r4_trace[1], static_cast<size_t>(ns));
    }
    step([&] { image.flush_behind(); });  // written while the next record is read
    step([&] { files.close(1); });
  }
  step([&] { files.close(2); });
  set_visible("ProgressBar1", false);
  set_pointer(Pointer::arrow);
  message(platform, "OK, Conversion done");
}

}  // namespace tf
