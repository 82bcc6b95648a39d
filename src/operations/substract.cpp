#include "operations/substract.h"

#include <algorithm>
#include <filesystem>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "operations/su_traces.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    " How to use SUBSTRACTION MODULE",
    "",
    "You can use this module to substract 2 files  ",
    "Amplitudes of all samples of File2  will be subsbtract or added from File1 ",
    "You can check what has been removed during any filtering or processing.",
    "This module can also be used to enhance S waves ",
};
constexpr const char* output_ending = "_sub.su";

// The name less its last three characters, then the ending.
std::string with_ending(const std::string& name, const std::string& ending) {
  return (name.size() >= 3 ? name.substr(0, name.size() - 3) : std::string()) + ending;
}
}  // namespace

substract::substract(App& owner) : Panel(owner, "substract", "Subtraction file module") {
  // Each field stands before the button that fills it.
  add(Kind::text, "Text1");
  add(Kind::button, "Command1", "SU File 1").on_click = [this] {
    std::string chosen = choose();
    if (chosen.empty()) return;
    state.file_in = chosen;
    set_text("Text1", chosen);
    set_text("Text3", with_ending(chosen, output_ending));
  };
  add(Kind::text, "Text2");
  add(Kind::button, "Command2", "SU File 2").on_click = [this] {
    std::string chosen = choose();
    if (!chosen.empty()) set_text("Text2", chosen);
  };
  add(Kind::text, "Text3");
  add(Kind::button, "Command3", "Output SU file").on_click = [this] {
    std::string chosen = choose();
    if (chosen.empty()) return;
    state.file_out = chosen;
    set_text("Text3", chosen);
  };
  add(Kind::label, "Label1", "Inverse");
  add(Kind::check, "Check1", "Check1");
  add(Kind::check, "Check2", "Check2");
  add(Kind::button, "Command5", "Substract File2 from file 1").on_click = [this] { Combine(Operator::subtract); };
  add(Kind::button, "Command7", "Add File 1 and File 2").on_click = [this] { Combine(Operator::add); };
  add(Kind::button, "Command4", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1").visible = false;
}

void substract::form_load() {
  if (state.current_file.empty()) return;
  set_text("Text1", state.current_file);
  set_text("Text3", with_ending(state.current_file, output_ending));
  resume_next([&] { Folder_Of(platform, state.current_file, state.data_folder); });
}

// The file dialog from the data folder; "" for a cancel, which only sets
// the main panel's pointer.
std::string substract::choose() {
  std::string chosen;
  resume_next([&] {
    std::error_code ec;
    if (!state.data_folder.empty()) std::filesystem::current_path(native_path(state.data_folder), ec);
    chosen = record_dialog(platform, "SU File selection", "SU File |*.SU|All files|*.*|", "*.SU", state.data_folder, 0);
  });
  if (chosen == "*.SU") {
    platform.set_pointer("Utility", Pointer::arrow);
    return "";
  }
  return chosen;
}

void substract::info() {
  message(platform, ended_lines(help_lines), Icon::information);
}

// No handler of its own past the checks: a failing statement stops the run.
void substract::Combine(Operator op) {
  const float s1 = checked("Check1") ? -1.0f : 1.0f;
  const float s2 = checked("Check2") ? -1.0f : 1.0f;
  state.file_in = text("Text1");
  if (File_Exists(state.file_in) == 0) {
    message(platform, "Input file 1 does not exists", Icon::stop);
    return;
  }
  const std::string file2 = text("Text2");
  if (File_Exists(file2) == 0) {
    message(platform, "Input file 2 does not exists", Icon::stop);
    return;
  }
  state.file_out = text("Text3");
  const std::string in1 = native_path(state.file_in), in2 = native_path(file2), out = native_path(state.file_out);
  if (file_length(in1) != file_length(in2)) {
    message(platform, "File1 must have the same size as File2", Icon::stop);
    return;
  }
  files.close_all();
  if (File_Exists(state.file_out) == 1 &&
      message(platform, state.file_out + " This file already exists, overwrite ?", Icon::none, Buttons::yes_no) !=
          Answer::yes)
    return;

  set_pointer(Pointer::hourglass);
  message(platform, "Copying file, please wait", Icon::exclamation);
  copy_whole_file(in1, out, err::permission_denied);
  set_pointer(Pointer::arrow);

  files.close_all();
  BinaryFile& f1 = files.open(1, in1);
  BinaryFile& f2 = files.open(2, in2);
  BinaryFile& f3 = files.open(3, out);
  int16_t ns = 0;
  f1.read_value(su::word("ns").offset, ns);
  state.ns = ns;
  const int32_t record = i32_add(i32_mul(state.ns, 4), su::header_size);
  state.nb_traces = traces_by_record_size(f1.length(), record);

  if (state.ns < 1) throw RunTimeError(err::subscript);  // no buffer of indices 1 to ns
  const auto samples = static_cast<size_t>(state.ns);
  state.r4_trace.assign(samples, 0.0f);
  std::vector<float> file2_trace(samples, 0.0f), result(samples, 0.0f);
  (*this)["ProgressBar1"].visible = true;
  changed((*this)["ProgressBar1"]);
  set_progress_range("ProgressBar1", 0, to_i32(state.nb_traces / 5.0));
  auto combine = [&] {
    if (op == Operator::subtract)
      for (size_t k = 0; k < samples; ++k) result[k] = s1 * state.r4_trace[k] - s2 * file2_trace[k];
    else
      for (size_t k = 0; k < samples; ++k) result[k] = s1 * state.r4_trace[k] + s2 * file2_trace[k];
  };
  // Whole records go by blocks: both inputs are read a block at a time, the
  // results take the place of File 1's samples, and the block is written
  // back whole, its headers being the bytes that the copy holds. The blocks
  // are held as floats: a record is 60 words of header and ns samples.
  const size_t record_words = static_cast<size_t>(record) / 4;
  const int32_t whole = static_cast<int32_t>(std::min<int64_t>(state.nb_traces, f1.length() / record));
  // The next block of both inputs is read while this one is worked out and
  // written: its bytes lie past every byte written before it.
  std::vector<float> blocks1[2], blocks2[2];
  auto read = [&](int32_t first, int32_t count, int slot) {
    const int64_t start = static_cast<int64_t>(record) * (first - 1);
    blocks1[slot].resize(static_cast<size_t>(count) * record_words);
    blocks2[slot].resize(blocks1[slot].size());
    f1.read_block(start, blocks1[slot]);
    f2.read_block(start, blocks2[slot]);
  };
  int32_t i = 1;
  auto work = [&](int32_t first, int32_t count, int slot) {
    std::vector<float>& block1 = blocks1[slot];
    const std::vector<float>& block2 = blocks2[slot];
    // The buffers hold the block's last trace, as a walk trace by trace leaves them.
    const size_t last = (static_cast<size_t>(count) - 1) * record_words + su::header_size / 4;
    std::copy_n(block1.begin() + static_cast<long>(last), samples, state.r4_trace.begin());
    std::copy_n(block2.begin() + static_cast<long>(last), samples, file2_trace.begin());
    for (size_t j = 0; j < static_cast<size_t>(count); ++j, ++i) {
      set_progress("ProgressBar1", to_i32(i / 5.0));
      float* a = block1.data() + j * record_words + su::header_size / 4;
      const float* b = block2.data() + j * record_words + su::header_size / 4;
      if (op == Operator::subtract)
        for (size_t k = 0; k < samples; ++k) a[k] = s1 * a[k] - s2 * b[k];
      else
        for (size_t k = 0; k < samples; ++k) a[k] = s1 * a[k] + s2 * b[k];
    }
    f3.write_block(static_cast<int64_t>(record) * (first - 1), block1);
  };
  read_blocks_ahead(whole, traces_per_write(record), true, read, work);
  // A last trace that the rounded count reaches past the end: read as far
  // as the files go, the samples of the trace before filling the rest.
  for (; i <= state.nb_traces; ++i) {
    set_progress("ProgressBar1", to_i32(i / 5.0));
    const int64_t at = static_cast<int64_t>(record) * (i - 1) + su::header_size;
    f1.read_block(at, state.r4_trace);
    f2.read_block(at, file2_trace);
    combine();
    f3.write_block(at, result);
  }
  (*this)["ProgressBar1"].visible = false;
  changed((*this)["ProgressBar1"]);
  message(platform, "Substraction done !", Icon::information);
}

}  // namespace tf
