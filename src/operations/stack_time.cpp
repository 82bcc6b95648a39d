#include "operations/stack_time.h"

#include <filesystem>

#include "frame/batch_runner.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "operations/su_traces.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    " How to use STACK TIME MODULE",
    "You can use this module to add all traces 1,2,xxx of different record   ",
    "to produce a long time record",
    "This module is usefull to produce long record from small time records.",
    "You can have or not a time overlap",
};
constexpr const char* too_long_prompt =
    "You have more then 36'000 traces, Impossible for a SEG-Y or SU file. 0=exit 1=Record ASCII File 3= Record a "
    "Unstandard SU (Sample number in LONG INTEGER instead SHORT)";
// Asked above this length, refused from it on: exactly 36000 passes the
// question and fails at the first channel.
constexpr int32_t longest_trace = 36000;
constexpr int batch_window = 2;

std::string base_of(const std::string& name) { return name.size() >= 3 ? name.substr(0, name.size() - 3) : std::string(); }

void delete_file(const std::string& name) {
  std::error_code ec;
  std::filesystem::remove(native_path(name), ec);
}
}  // namespace

Stack_Time::Stack_Time(App& owner) : Panel(owner, "Stack_Time", "Append traces") {
  add(Kind::text, "Text1");
  auto& input = add(Kind::button, "Command3", "Input file");
  input.tooltip = "click here and find the first ABEM file to convert";
  input.on_click = [this] { choose_input(); };
  add(Kind::text, "Text2");
  auto& output = add(Kind::button, "Command4", "Output file");
  output.tooltip = "This will be the SU file";
  output.on_click = [this] { set_text("Text2", choose()); };
  const std::pair<const char*, const char*> number_fields[] = {
      {"Text3", "Number of samples / trace"}, {"Text4", "Sample rate (microsec.)"}, {"Text5", "Recording time (ms)"},
      {"Text6", "Time overlap (ms)"},         {"Text7", "Number of records"},       {"Text8", "Channels / record"},
      {"Text9", "Number 1st record"},         {"Text10", "Overlap in samples"},
  };
  for (const auto& [name, label] : number_fields) add(Kind::text, name, label, "0");
  // The two overlap fields follow each other; with Text4 at 0 the division
  // fails and Text10 stays as it was.
  (*this)["Text10"].on_change = [this] {
    resume_next([&] { set_text("Text6", field_text(leading_number(text("Text10")) * leading_number(text("Text4")))); });
  };
  (*this)["Text6"].on_change = [this] {
    resume_next([&] {
      const double rate = leading_number(text("Text4"));
      if (rate == 0) throw RunTimeError(err::division_by_zero);
      set_text("Text10", field_text(leading_number(text("Text6")) / rate));
    });
  };
  add(Kind::button, "Command1", "Process").on_click = [this] { Process(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1");
}

void Stack_Time::info() {
  message(platform, ended_lines(help_lines), Icon::information);
}

// The dialog of both buttons; a cancel gives its start name back.
std::string Stack_Time::choose() {
  FileDialogRequest r;
  r.title = "SU file selection";
  r.filter = "Record |*.SU*|All files|*.*|";
  r.file_name = "*.SU*";
  std::string chosen;
  resume_next([&] { chosen = platform.file_dialog(r); });
  return chosen;
}

void Stack_Time::choose_input() {
  const std::string chosen = choose();
  state.file_in = chosen;
  set_text("Text1", chosen);
  set_text("Text2", base_of(chosen) + "_stack.su");

  int16_t ns = 0, dt = 0;
  int32_t fldr = 0;
  resume_next([&] { files.close_all(); });
  read_first_ns_dt(files, 1, chosen, ns, dt);
  resume_next([&] { files[1].read_value(su::word("fldr").offset, fldr); });
  resume_next([&] { state.nb_traces = traces_by_record_size(files[1].length(), i32_add(i32_mul(ns, 4), su::header_size)); });
  state.ns = ns;
  state.dt = dt;
  // The walk counts in 16 bits: past 32767 traces it does not run, and the
  // channel count stays as it was. A file whose numbering never falls back
  // is one record.
  resume_next([&] {
    const int16_t traces = to_i16(state.nb_traces);
    const int64_t record = su::header_size + 4 * static_cast<int64_t>(ns);
    int32_t before = 0, tracf = 0;
    for (int32_t k = 1; k <= traces; ++k) {
      resume_next([&] { files[1].read_value((k - 1) * record + su::word("tracf").offset, tracf); });
      if (tracf < before) {
        state.nb_channels = static_cast<int16_t>(k - 1);
        return;
      }
      before = tracf;
    }
    state.nb_channels = traces;
  });
  resume_next([&] { files.close_all(); });
  set_text("Text3", field_text(ns));
  set_text("Text4", field_text(dt / 1000.0));
  set_text("Text5", field_text(dt / 1000.0 * ns));
  resume_next([&] {
    if (state.nb_channels == 0) throw RunTimeError(err::division_by_zero);
    set_text("Text7", field_text(static_cast<double>(state.nb_traces) / state.nb_channels));
  });
  set_text("Text8", field_text(state.nb_channels));
  set_text("Text9", field_text(fldr));
  if (state.nb_channels == 0) state.nb_channels = 1;
}

void Stack_Time::run_batch_text(std::string text) {
  Replace_All(text, "= ", "=");
  Replace_All(text, "  ", " ");
  resume_next([&] { write_whole_file(native_path(state.batch_file), text + "\r\n"); });
  resume_next([&] { files.close_all(); });
  Run_Batch(app, state.batch_file, "", batch_window);
}

void Stack_Time::Process() {
  state.file_in = text("Text1");
  state.file_out = text("Text2");
  if (File_Exists(state.file_out) == 1) delete_file(state.file_out);
  int16_t records = 0, samples = 0, overlap_ms = 0, kept = 0;
  resume_next([&] { state.nb_channels = field_i16(text("Text8")); });
  resume_next([&] { records = field_i16(text("Text7")); });
  resume_next([&] { state.nb_traces = i16_mul(state.nb_channels, records); });
  resume_next([&] { samples = field_i16(text("Text3")); });
  resume_next([&] { state.dt = to_i16(leading_number(text("Text4")) * 1000); });
  resume_next([&] { overlap_ms = field_i16(text("Text6")); });
  // The overlap by time is worked out and goes no further: Text10 counts.
  double overlap_by_time = 0;
  resume_next([&] {
    if (state.dt == 0) throw RunTimeError(err::division_by_zero);
    overlap_by_time = overlap_ms / static_cast<double>(state.dt) * 1000;
  });
  (void)overlap_by_time;
  const double overlap = leading_number(text("Text10"));
  resume_next([&] { kept = to_i16(samples - overlap); });
  const double cut_time = state.dt / 1000.0 * kept / 1000;

  const std::string base = base_of(state.file_in);
  const std::string shortened = base + "_new.su", sorted = base + "_sort.su", temp = base + "_temp.su",
                    temp2 = base + "_temp2.su";
  int32_t record_number = 0;
  resume_next([&] { record_number = field_i32(text("Text9")); });
  const int32_t length = static_cast<int32_t>(kept) * records;
  if (length > longest_trace) {
    InputBoxRequest ask;
    ask.prompt = too_long_prompt;
    ask.default_text = "0";
    if (leading_number(platform.input_box(ask)) == 0) return;
  }

  state.batch_file = platform.application_folder() + native_path("\\work.bat");
  const std::string tools = platform.application_folder() + native_path("\\bin\\");
  run_batch_text(tools + "suwind <" + state.file_in + " >" + shortened + " tmin=0 tmax=" + number_text(cut_time));
  message(platform, "Overlap samples have been removed from then Input file", Icon::information);
  run_batch_text(tools + "susort <" + shortened + " >" + sorted + " tracf fldr");
  message(platform, "Shortened Input file has been sorted by trace number !");

  set_progress_range("ProgressBar1", 1, state.nb_channels + 1);
  state.r4_trace.assign(static_cast<size_t>(std::max<int16_t>(kept, 0)), 0.0f);
  if (File_Exists(state.file_out) == 1) delete_file(state.file_out);
  int16_t long_ns = 0;  // K times R as an int16: 0 from 32768 on
  std::vector<uint8_t> header(su::header_size, 0);
  for (int32_t c = 1; c <= state.nb_channels; ++c) {
    set_progress("ProgressBar1", c);
    platform.process_events();
    // The cut is taken from the input itself: the shortened and sorted
    // files feed nothing further.
    run_batch_text(tools + "suwind <" + state.file_in + " >" + temp + " key=tracf min=" + number_text(c) +
                   " max=" + number_text(c));
    const double waited_from = platform.seconds_now();
    while (platform.seconds_now() - waited_from < 1) {
      platform.process_events();
      platform.wait_ms(50);
    }
    if (File_Exists(temp2) == 1) delete_file(temp2);
    resume_next([&] {
      BinaryFile& in = files.open(1, native_path(state.file_in));
      in.read_block(0, header);
    });
    resume_next([&] { files.close_all(); });
    resume_next([&] { files.open(1, native_path(temp)); });
    resume_next([&] { files.open(2, native_path(temp2)); });
    resume_next([&] { files[2].write_block(0, header); });
    if (length >= longest_trace) {
      message(platform, "Impossible > 36000samples!", Icon::stop);
      resume_next([&] { files.close_all(); });
      return;
    }
    resume_next([&] { long_ns = to_i16(length); });
    resume_next([&] { files[2].write_value<int16_t>(su::word("ns").offset, long_ns); });
    resume_next([&] { files[2].write_value<int16_t>(su::word("dt").offset, state.dt); });
    // Two bytes only: the upper half of tracf stays as the input's first
    // trace had it.
    resume_next([&] { files[2].write_value<int16_t>(su::word("tracf").offset, static_cast<int16_t>(c)); });
    resume_next([&] { files[2].write_value<int32_t>(su::word("fldr").offset, record_number); });
    // The reading stride is K * 4 + 240 whatever the traces hold: with an
    // overlap the reads fall short of the next trace's start.
    const int64_t stride = static_cast<int64_t>(kept) * 4 + su::header_size;
    for (int32_t n = 1; n <= records; ++n) {
      resume_next([&] {
        files[1].read_block((n - 1) * stride + su::header_size, state.r4_trace);
        files[2].write_block((n - 1) * static_cast<int64_t>(kept) * 4 + su::header_size, state.r4_trace);
      });
    }
    resume_next([&] { files.close_all(); });
    resume_next([&] {
      BinaryFile& out = files.open(1, native_path(state.file_out));
      const std::string trace = read_whole_file(native_path(temp2));
      out.write_at(out.length(), trace.data(), trace.size());
      files.close(1);
    });
  }
  resume_next([&] { files.close_all(); });
  for (const auto& work : {shortened, sorted, temp, temp2}) delete_file(work);
  message(platform, "Processing OK, Saved as " + state.file_out, Icon::information);
}

}  // namespace tf
