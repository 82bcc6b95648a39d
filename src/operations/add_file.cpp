#include "operations/add_file.h"

#include <filesystem>

#include "frame/batch_runner.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "operations/su_files.h"
#include "su/su_record.h"

namespace tf {

namespace {
constexpr size_t max_files = 20;
constexpr int single_file_flags = 2048;
constexpr int multiple_selection = 512;
}  // namespace

Add_file::Add_file(App& owner) : Panel(owner, "Add_file", "SU File extraction") {
  add(Kind::option, "Option1", "Add files").tooltip = "Click here to add files (max 20)";
  add(Kind::option, "Option2", "Extract traces").tooltip = "click here to make a trace extraction";
  add(Kind::frame, "Frame2", "Extract traces from file");
  auto& first = add(Kind::text, "Text3", "First trace ", "1");
  first.tooltip = "enter here the first trace to extract";
  auto& last = add(Kind::text, "Text4", "Last trace", "24");
  last.tooltip = "enter here the last  trace to extract";
  for (Control* c : {&first, &last}) {
    c->parent = "Frame2";
    c->key_filter = "0123456789";
  }
  auto& in = add(Kind::text, "Text1", "", " ");
  in.tooltip = "click here to select one or many files (for addition only)";
  in.on_click = in.on_dblclick = [this] { Lecture_file2(); };
  auto& out = add(Kind::text, "Text2", "", " ");
  out.tooltip = "You can change here the name";
  out.on_dblclick = [this] { Choix_Output(); };
  add(Kind::button, "Command3", "Input file ").on_click = [this] { input_file(); };
  add(Kind::button, "Command4", "Output file").on_click = [this] { Choix_Output(); };
  add(Kind::button, "Command2", "START").on_click = [this] { start(); };
  add(Kind::button, "Command1", "Exit/Cancel").on_click = [this] { unload(); };
  add(Kind::progress, "ProgressBar1");
}

// The range fields stand for the traces of the current file.
void Add_file::form_load() {
  set_text("Text1", state.current_file);
  resume_next([&] { set_text("Text2", renamed(state.current_file, 4, "X.SU")); });
  resume_next([&] { state.ns = first_ns(open_existing(files, 1, state.current_file)); });
  resume_next([&] { state.nb_traces = su::trace_count(files[1].length(), state.ns); });
  resume_next([&] { files.close(1); });
  set_text("Text3", "1");
  set_text("Text4", field_text(state.nb_traces));
}

void Add_file::show_range(const std::string& name) {
  resume_next([&] { set_text("Text2", renamed(name, 3, "X.SU")); });
  Read_ns_dt(app, name);
  resume_next([&] { state.nb_traces = su::trace_count(file_length(native_path(name)), state.ns); });
  set_text("Text3", "1");
  set_text("Text4", field_text(state.nb_traces));
}

// The input dialog; its name goes to Text1 and file_in.
std::string Add_file::choose_input(int flags) {
  const std::string name =
      record_dialog(platform, "SU File selection", "SU file |*.SU|All files|*.*|", "*.SU", state.data_folder, 0, flags);
  set_text("Text1", name);
  state.file_in = name;
  return name;
}

void Add_file::Lecture_file2() {
  const bool extraction = checked("Option2");
  const std::string name = choose_input(extraction ? single_file_flags : multiple_selection);
  if (extraction)
    show_range(name);
  else if (checked("Option1"))
    set_text("Text2", state.data_folder + "Addition.su");
}

void Add_file::input_file() { show_range(choose_input(single_file_flags)); }

void Add_file::Choix_Output() {
  const std::string name = output_name_dialog(platform, state.data_folder);
  if (name != "*.SU") set_text("Text2", name);
}

void Add_file::Recherche_Nom() {
  add_names.assign(max_files + 1, "");
  const auto parts = split_parts(state.file_in, max_files);
  for (size_t k = 0; k < parts.size(); ++k) add_names[k + 1] = parts[k];
}

void Add_file::start() {
  state.file_in = text("Text1");
  state.file_out = text("Text2");
  int32_t first = 0, last = 0;
  resume_next([&] { first = field_i32(text("Text3")); });
  resume_next([&] { last = field_i32(text("Text4")); });
  if (state.file_in.empty() || state.file_out.empty()) {
    message(platform, "No file selected");
    return;
  }
  if (state.file_in == state.file_out) {
    message(platform, "Same Input / Output");
    return;
  }
  const std::string out = native_path(state.file_out);
  if (File_Exists(state.file_out) == 1) resume_next([&] { std::filesystem::remove(out); });
  const bool extraction = checked("Option2");
  if (extraction)
    extract_traces(first, last);
  else
    add_files();
  resume_next([&] { files.close_all(); });
  std::string report = state.crlf;
  if (extraction)
    report += "* FILE EXTRACTION MODULE*" + state.crlf + "from " + number_text(first) + " to" + number_text(last);
  else
    report += "* FILE ADDITION MODULE*";
  resume_next([&] {
    message(platform, report + state.crlf + state.file_out + "  has been recorded. Size:" + number_text(file_length(out)));
  });
}

// The first path is copied to the output, each further one joined to it.
void Add_file::add_files() {
  Recherche_Nom();
  size_t count = 0;
  while (count < max_files && !add_names[count + 1].empty()) ++count;
  add_paths.assign(max_files + 1, "");
  if (count == 1) add_paths[1] = add_names[1];
  for (size_t k = 2; k <= count; ++k) add_paths[k - 1] = add_names[1] + sep + add_names[k];
  const int paths = count == 1 ? 1 : static_cast<int>(count) - 1;
  resume_next([&] {
    if (count < 2) throw RunTimeError(380);
    set_progress_range("ProgressBar1", 2, static_cast<int>(count));
  });
  resume_next([&] {
    std::filesystem::copy_file(file_system_name(native_path(add_paths[1])), native_path(state.file_out),
                               std::filesystem::copy_options::overwrite_existing);
  });
  for (int k = 2; k <= paths; ++k) {
    set_progress("ProgressBar1", k);
    Join_Files(app, state.file_out, add_paths[static_cast<size_t>(k)], state.file_out);
  }
}

// Records are copied whole, in order: their counters keep the old values.
void Add_file::extract_traces(int32_t first, int32_t last) {
  int32_t size = 0;
  resume_next([&] { size = su::record_size(state.ns); });
  std::vector<uint8_t> record;
  resume_next([&] {
    if (size < 1) throw RunTimeError(err::subscript);
    record.assign(static_cast<size_t>(size), 0);
  });
  resume_next([&] { open_existing(files, 1, state.file_in); });
  resume_next([&] { files.open(2, file_system_name(native_path(state.file_out))); });
  resume_next([&] { set_progress_range("ProgressBar1", first, last); });
  RecordReader reader(files, 1);
  RecordRun run(files, 2);
  int32_t j = 1;
  for (int32_t i = first; i <= last; ++i, ++j) {
    set_progress("ProgressBar1", i);
    // A trace past the end reads nothing: the record before is written again.
    // Positions are 32-bit: past 2 GB they overflow and the statement is passed over.
    resume_next([&] { reader.get(i32_mul(int64_t{i} - 1, size), record); });
    resume_next([&] { run.put(i32_mul(int64_t{j} - 1, size), record); });
  }
  resume_next([&] { run.flush(); });
}

}  // namespace tf
