#include "vibroseis/vibroseis.h"

#include <filesystem>

#include "frame/batch_runner.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/geometry.h"
#include "su/su_record.h"

namespace tf {

namespace fs = std::filesystem;

namespace {

const char* const info_lines[] = {
    "SEISMIC RECORD CORRELAION",
    "",
    "This module will correlate VibroSeis data  ",
    "Fisrt enter all requested parameters in the module",
    " 1.- All field record are extracted from the SU file  ",
    "2.- The pilot trace is recorded in a separate file",
    "3.- Correlation use SUXCOR.EXE ",
    "4.- Correlared records are grouped in a new SU file",
};
const char* const sample_limit = " SUXCOR does not accept more than 16'000 samples/trace";
const char* const sample_limit_trace_wise = " SUXCOR does not accept more than 16'000 samples / trace";
const char* const working_on = "Working on FLDR ";
const char* const dialog_title = "SU raw data file ";
const char* const dialog_filter = "SU files|*.SU|";
const char* const dialog_start = "*.SU";
const char* const output_ending = "_corr.su  ";

// The correlation tool takes no longer traces.
constexpr int32_t most_samples = 16000;
constexpr int overwrite_prompt = 2;

// Work files of a record, in the input's folder.
const char* const tempo = "tempo.su";
const char* const sweep = "sweep.su";
const char* const uncorrel = "uncorrel.su";
const char* const korrelated = "korrelated.su";

std::string tool(Platform& platform, const char* name) {
  return platform.application_folder() + native_path(std::string("\\bin\\") + name);
}

}  // namespace

struct vibroseis::RunFields {
  int32_t first = 0, last = 0;
  int32_t window = 0;  // samples kept from the correlation
};

vibroseis::vibroseis(App& owner) : Panel(owner, "vibroseis", "VibroSeis correlation") {
  // Each file name with the button that chooses it beside.
  add(Kind::text, "Text1");
  add(Kind::button, "Command1", "Uncorrelated SU file").on_click = [this] { Command1_Click(); };
  add(Kind::text, "Text2");
  add(Kind::button, "Command2", "Correlated SU file").on_click = [this] { Command2_Click(); };
  add(Kind::text, "Text3", "Pilot trace number", "1");
  add(Kind::text, "Text4", "Traces on a gather (including pilot)", "60").key_filter = "0123456789";
  add(Kind::text, "Text5", "Sweep lenght in ms to be used for correlation", "16000").key_filter = "0123456789";
  add(Kind::text, "Text6", "Correlated file length in ms", "2000").key_filter = "0123456789";
  add(Kind::text, "Text7", "Sample rate (microS)", "500").key_filter = "0123456789";
  add(Kind::text, "Text8", "First record (FLDR) to correlate", "1");
  add(Kind::text, "Text9", "Last record (FLDR) to correlate", "1000").key_filter = "0123456789";
  add(Kind::text, "Text10", "Samples / trace", "1024").key_filter = "0123456789";
  add(Kind::text, "Text11").locked = true;
  add(Kind::check, "Check1", "Display SU batch");
  add(Kind::button, "Command3", "Start correlation").on_click = [this] { Command3_Click(); };
  add(Kind::button, "Command4", "INFO").on_click = [this] { Command4_Click(); };
  add(Kind::progress, "ProgressBar1");
}

void vibroseis::form_load() {
  if (File_Exists(state.current_file) == 0) return;
  set_text("Text1", state.current_file);
  lecture_non_correle();
}

// The fields from the headers: first and last record, ns and dt, and the
// channels by the record geometry.
void vibroseis::lecture_non_correle() {
  auto& s = state;
  s.current_file = text("Text1");
  resume_next([&] { files.open(1, file_system_name(native_path(s.current_file))); });
  int32_t first_record = 0, last_record = 0;
  int16_t ns = 0, dt = 0;
  resume_next([&] { files[1].read_value(su::word("fldr").offset, first_record); });
  resume_next([&] { files[1].read_value(su::word("ns").offset, ns); });
  resume_next([&] { files[1].read_value(su::word("dt").offset, dt); });
  if (dt == 0) {
    // No interval: the one of d1, a negative d1 taken as hundredths.
    float d1 = 0;
    resume_next([&] { files[1].read_value(su::word("d1").offset, d1); });
    if (d1 < 0) d1 *= 100;
    resume_next([&] { dt = to_i16(d1); });
  }
  if (dt < 1) dt = 1;
  s.ns = ns;
  s.dt = dt;
  resume_next([&] { s.nb_traces = su::trace_count(files[1].length(), ns); });
  resume_next([&] { s.trace_pos = i32_mul(su::record_size(ns), s.nb_traces - 1); });
  resume_next([&] { files[1].read_value(int64_t{s.trace_pos} + su::word("fldr").offset, last_record); });
  resume_next([&] { files.close_all(); });
  int16_t stack_flag = 0;
  Detect_Geometry(app, s.current_file, s.nb_traces, s.nb_channels, stack_flag);

  resume_next([&] {
    if (s.current_file.size() < 3) throw RunTimeError(err::invalid_call);
    set_text("Text2", s.current_file.substr(0, s.current_file.size() - 3) + output_ending);
  });
  set_text("Text4", field_text(s.nb_channels));
  set_text("Text5", field_text(static_cast<double>(s.ns) * s.dt / 1000));
  set_text("Text6", field_text(static_cast<double>(s.ns) * s.dt / 10000));
  set_text("Text7", field_text(s.dt));
  set_text("Text8", field_text(first_record));
  set_text("Text9", field_text(last_record));
  set_text("Text10", field_text(s.ns));
}

// The file dialog of both buttons; "" on a cancel, which only puts the
// main panel's pointer back.
std::string vibroseis::choose_file(bool save) {
  Folder_Of(platform, state.current_file, state.data_folder);
  FileDialogRequest dialog;
  dialog.save = save;
  if (save) dialog.flags = overwrite_prompt;
  dialog.title = dialog_title;
  dialog.filter = dialog_filter;
  dialog.file_name = dialog_start;
  const std::string chosen = platform.file_dialog(dialog);
  if (chosen != dialog_start) return chosen;
  platform.set_pointer("Utility", Pointer::arrow);
  return "";
}

void vibroseis::Command1_Click() {
  const std::string chosen = choose_file(false);
  if (chosen.empty()) return;
  state.current_file = chosen;
  set_text("Text1", chosen);
  lecture_non_correle();
}

void vibroseis::Command2_Click() {
  const std::string chosen = choose_file(true);
  if (!chosen.empty()) set_text("Text2", chosen);
}

// The fields of a run into SessionState; false (after the box) when the
// sweep has more samples than the tool takes.
bool vibroseis::read_run_fields(RunFields& run, const std::string& samples_field, const char* limit_message) {
  auto& s = state;
  resume_next([&] { files.close_all(); });
  s.current_file = text("Text1");
  s.file_out = text("Text2");
  resume_next([&] { s.nb_channels = field_i16(text("Text4")); });
  resume_next([&] { s.dt = field_i16(text("Text7")); });
  resume_next([&] { run.first = field_i32(text("Text8")); });
  resume_next([&] { run.last = field_i32(text("Text9")); });
  if (samples_field == "Text10") {
    resume_next([&] { s.ns = field_i32(text("Text10")); });
  } else {
    // The sweep length in ms over the interval: its samples.
    resume_next([&] {
      if (s.dt == 0) throw RunTimeError(err::division_by_zero);
      s.ns = to_i32(leading_number(text("Text5")) / s.dt * 1000);
    });
  }
  if (s.ns > most_samples) {
    message(platform, limit_message, Icon::stop);
    return false;
  }
  resume_next([&] {
    if (s.dt == 0) throw RunTimeError(err::division_by_zero);
    run.window = to_i32(leading_number(text("Text6")) / (s.dt / 1000.0));
  });
  resume_next([&] { s.nb_traces = to_i32(static_cast<double>(file_length(file_system_name(native_path(s.current_file)))) / su::record_size(s.ns)); });
  return true;
}

std::string vibroseis::work(const char* name) const { return state.data_folder + name; }

void vibroseis::delete_work_files(std::initializer_list<const char*> names) {
  resume_next([&] { files.close_all(); });
  for (const char* name : names) {
    if (File_Exists(work(name)) == 1) {
      std::error_code ec;
      fs::remove(native_path(work(name)), ec);
    }
  }
}

// The result of a record into the output. The counter is 1 at the first
// record, so the copy at 2 replaces what that record left: with two records
// or more the output begins with the second.
void vibroseis::gather(int16_t counter, const std::string& result) {
  // The file system takes the name without its trailing blanks.
  const std::string output = native_path(file_system_name(state.file_out));
  if (counter == 2) {
    resume_next([&] {
      std::error_code ec;
      fs::copy_file(native_path(result), output, fs::copy_options::overwrite_existing, ec);
      if (ec) throw RunTimeError(err::file_not_found);
    });
  } else {
    Join_Files(app, output, native_path(result), output);
  }
}

// The panel busy: its start button off, the progress over the records,
// the work files in the input's folder, the batch file in the application's.
void vibroseis::begin_run(const RunFields& run, int progress_min) {
  (*this)["Command3"].enabled = false;
  changed((*this)["Command3"]);
  set_pointer(Pointer::hourglass);
  set_progress_range("ProgressBar1", progress_min, run.last - run.first < 1 ? 1 : run.last - run.first);
  Folder_Of(platform, state.current_file, state.data_folder);
  state.batch_file = platform.application_folder() + native_path("\\correlation.bat");
}

void vibroseis::finish() {
  resume_next([&] { files.close_all(); });
  (*this)["Command3"].enabled = true;
  changed((*this)["Command3"]);
  set_pointer(Pointer::arrow);
  message(platform, "Correlation done, " + state.file_out + " has been recorded ", Icon::information);
}

void vibroseis::Command3_Click() {
  auto& s = state;
  RunFields run;
  if (!read_run_fields(run, "Text5", sample_limit)) return;
  begin_run(run, 0);
  delete_work_files({sweep, korrelated, uncorrel, tempo});
  set_text("Text11", working_on + number_text(run.first));

  int16_t counter = 0;
  const std::string suwind = tool(platform, "suwind"), suxcor = tool(platform, "suxcor"), sushw = tool(platform, "sushw");
  for (int32_t record = run.first; record <= run.last; ++record) {
    platform.process_events();
    resume_next([&] { counter = i16_add(counter, 1); });
    set_progress("ProgressBar1", counter);
    set_text("Text11", working_on + number_text(record));

    const std::string& crlf = s.crlf;
    std::string batch = suwind + " <" + s.current_file + ">" + work(tempo) + " key=fldr min=" + number_text(record) +
                        " max=" + number_text(record) + crlf;
    batch += suwind + " <" + work(tempo) + " >" + work(sweep) + " key=tracf min=1 max=1" + crlf;
    batch += suwind + " <" + work(tempo) + " >" + work(uncorrel) + " key=tracf min=2 max=" + number_text(s.nb_channels) + crlf;
    // The window starts where the sweep ends; delrt goes to 0 and the
    // channels are numbered from 1 again.
    batch += suxcor + " <" + work(uncorrel) + " sufile=" + work(sweep) + " |" + suwind + " itmin=" + number_text(s.ns) +
             " itmax=" + number_text(s.ns + run.window) + " | " + sushw + " key=delrt a=0 | " + sushw + " >" +
             work(korrelated) + " key=tracf a=1 b=1" + crlf;
    batch += "pause";
    Replace_All(batch, "= ", "=");
    resume_next([&] { write_whole_file(native_path(s.batch_file), batch); });
    // The next lines read what the commands wrote: the run waits for them.
    Run_Batch(app, s.batch_file, "", checked("Check1") ? 1 : 0, true);
    gather(counter, work(korrelated));
    delete_work_files({sweep, korrelated, uncorrel, tempo});
  }
  finish();
  unload();
}

void vibroseis::correlate_trace_wise() {
  auto& s = state;
  RunFields run;
  if (!read_run_fields(run, "Text10", sample_limit_trace_wise)) return;
  begin_run(run, 1);
  delete_work_files({"tmp1.su", "tmp2.su"});

  int16_t counter = 1;
  int32_t record_size = 0;
  resume_next([&] { record_size = su::record_size(s.ns); });
  std::vector<uint8_t> trace(static_cast<size_t>(record_size > 0 ? record_size : 0));
  const int16_t channels = s.nb_channels;
  for (int32_t t = 1; t <= s.nb_traces; t += channels > 0 ? channels : 1) {
    platform.process_events();
    int32_t fldr = 0;
    resume_next([&] { files.open(1, file_system_name(native_path(s.current_file))); });
    resume_next([&] { files[1].read_value(int64_t{su::trace_position(t, s.ns)} + su::word("fldr").offset, fldr); });
    if (fldr < run.first || fldr > run.last) continue;
    // The pilot into tmp1, the channels behind it into tmp2.
    resume_next([&] { files.open(2, native_path(work("tmp1.su"))); });
    resume_next([&] { files.open(3, native_path(work("tmp2.su"))); });
    resume_next([&] {
      files[1].read_block(su::trace_position(t, s.ns), trace);
      files[2].write_block(0, trace);
    });
    for (int32_t c = 1; c <= channels - 1; ++c) {
      resume_next([&] {
        files[1].read_block(su::trace_position(t + c, s.ns), trace);
        files[3].write_block(int64_t{c - 1} * record_size, trace);
      });
    }
    resume_next([&] { files.close(2); });
    resume_next([&] { files.close(3); });

    const std::string& crlf = s.crlf;
    std::string batch = tool(platform, "suxcor") + " <" + work("tmp1.su") + " >" + work("tmp4.su") + " sufile=" +
                        work("tmp1.su") + " panel=0 first=1" + crlf;
    batch += tool(platform, "suwind") + " <" + work("tmp4.su") + " itmin=" + number_text(s.ns) +
             " itmax=" + number_text(s.ns + run.window) + " | " + tool(platform, "sushw") + " key=delrt a=0 >" +
             work("tmp3.su");
    Replace_All(batch, "= ", "=");
    resume_next([&] { write_whole_file(native_path(s.batch_file), batch); });
    Run_Batch(app, s.batch_file, "", checked("Check1") ? 1 : 0, true);
    message(platform, "Record n\xC2\xB0" + number_text(fldr) + " has been correlated", Icon::exclamation);
    resume_next([&] { counter = i16_add(counter, 1); });
    set_progress("ProgressBar1", counter);
    gather(counter, work("tmp3.su"));
  }
  delete_work_files({"tmp1.su", "tmp2.su", "tmp3.su", "tmp4.su"});
  finish();
}

void vibroseis::Command4_Click() {
  message(platform, ended_lines(info_lines, state.crlf));
}

}  // namespace tf
