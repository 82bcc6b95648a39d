#include "operations/extract.h"

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "operations/su_files.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const dialog_title = "Eismic Unix File selection";
const char* const output_ending = "_ext.su";

std::string& extract_cell(Control& grid, int row) {
  if (row < 0 || row >= static_cast<int>(grid.cells.size()) || grid.cells[static_cast<size_t>(row)].size() < 2)
    throw RunTimeError(381);  // subscript out of range of the grid
  return grid.cells[static_cast<size_t>(row)][1];
}
}  // namespace

Extract::Extract(App& owner) : Panel(owner, "Extract", "Extract SU traces") {
  add(Kind::grid, "Grid").on_click = [this] { grid_click(); };
  add(Kind::text, "Text1");
  add(Kind::text, "Text2");
  auto& first = add(Kind::text, "Text4", "First trace to extract", "1");
  first.key_filter = "0123456789";
  first.on_change = [this] { regrid(); };
  add(Kind::text, "Text3", "Step ", "0").on_change = [this] { regrid(); };
  add(Kind::button, "Command1", "Input file").on_click = [this] { input_file(); };
  add(Kind::button, "Command2", "Output file").on_click = [this] { output_file(); };
  add(Kind::button, "Command3", "Extract").on_click = [this] { extract(); };
  add(Kind::progress, "ProgressBar1");
}

// The default step of 0 is never seen by regrid: loading fires no change.
void Extract::form_load() {
  set_text("Text1", state.current_file);
  resume_next([&] { set_text("Text2", renamed(state.current_file, 3, output_ending)); });
  fill_grid(state.current_file);
}

void Extract::input_file() {
  FileDialogRequest dialog;
  dialog.title = dialog_title;
  // The two filters of the panel differ, as they always have.
  dialog.filter = "File SU |*.SU|All|*.*2|";
  dialog.file_name = "*.SU";
  const std::string name = platform.file_dialog(dialog);
  set_text("Text1", name);
  resume_next([&] { set_text("Text2", renamed(name, 3, output_ending)); });
  fill_grid(name);
}

void Extract::output_file() {
  FileDialogRequest dialog;
  dialog.title = dialog_title;
  dialog.filter = "File SU |*.SU|All|*.*|";
  dialog.file_name = "*.SU";
  std::string name = platform.file_dialog(dialog);
  if (!lower(name).ends_with(output_ending)) resume_next([&] { name = renamed(name, 3, output_ending); });
  set_text("Text2", name);
}

// One row a trace: its number and "no".
void Extract::fill_grid(const std::string& name) {
  resume_next([&] {
    int16_t ns = 0, dt = 0;
    first_ns_dt(open_existing(files, 1, name), ns, dt);
    state.ns = ns;
    state.dt = dt;
  });
  resume_next([&] { traces = su::trace_count(files[1].length(), state.ns); });
  resume_next([&] { files.close_all(); });
  auto& grid = (*this)["Grid"];
  const size_t rows = static_cast<size_t>(std::max(traces, 0)) + 1;
  grid.cells.assign(rows, {"", "no"});
  grid.cell_colors.assign(rows, {-1, plain_color});
  grid.cells[0] = {"trace", "Extract"};
  grid.cell_colors[0] = {-1, -1};
  for (size_t i = 1; i < rows; ++i) grid.cells[i][0] = field_text(static_cast<int64_t>(i));
  changed(grid);
}

void Extract::mark(int row, bool yes) {
  auto& grid = (*this)["Grid"];
  extract_cell(grid, row) = yes ? "yes" : "no";
  grid.cell_colors[static_cast<size_t>(row)][1] = yes ? mark_color : plain_color;
}

void Extract::regrid() {
  auto& grid = (*this)["Grid"];
  const int last_row = static_cast<int>(grid.cells.size()) - 1;
  for (int row = 1; row <= last_row; ++row) mark(row, false);
  int16_t start = 0, step = 0;
  resume_next([&] { start = field_i16(text("Text4")); });
  resume_next([&] { step = field_i16(text("Text3")); });
  // A counted loop of 16 bits: it ends past the last row, or when the
  // counter overflows. A step of 0 never ends; events are let through so
  // that the program can still be ended.
  for (int k = start; step < 0 ? k >= last_row : k <= last_row; k += step) {
    resume_next([&] { mark(k - 1 + 1, true); });
    if (step == 0) platform.process_events();
    if (k + step > INT16_MAX || k + step < INT16_MIN) break;
  }
  changed(grid);
}

// A click toggles the Extract cell of the clicked row; its back takes the
// mark's colour on "yes" and keeps it on "no" until the next regrid.
void Extract::grid_click() {
  auto& grid = (*this)["Grid"];
  resume_next([&] {
    std::string& cell = extract_cell(grid, grid.row);
    if (cell == "no") {
      mark(grid.row, true);
    } else if (cell == "yes") {
      cell = "no";
    }
  });
  changed(grid);
}

void Extract::extract() {
  state.file_in = text("Text1");
  state.file_out = text("Text2");
  std::string out = native_path(state.file_out);
  resume_next([&] { out = file_system_name(out); });
  resume_next([&] { files.close_all(); });
  resume_next([&] { state.ns = first_ns(open_existing(files, 1, state.file_in)); });
  resume_next([&] { traces = su::trace_count(files[1].length(), state.ns); });
  resume_next([&] { size_samples(state.r4_trace, state.ns); });
  resume_next([&] { files.close_all(); });

  resume_next([&] { open_existing(files, 1, state.file_in); });
  resume_next([&] { files.open(2, out); });
  int32_t size = 0;
  std::vector<uint8_t> record;
  resume_next([&] {
    size = su::record_size(state.ns);
    record.assign(static_cast<size_t>(std::max(size, 0)), 0);
  });
  auto& grid = (*this)["Grid"];
  RecordReader reader(files, 1);
  RecordRun run(files, 2);
  int64_t j = 0;
  for (int32_t i = 1; i <= traces; ++i) {
    bool marked = false;
    resume_next([&] { marked = extract_cell(grid, i) == "yes"; });
    if (!marked) continue;
    set_progress("ProgressBar1", i);
    resume_next([&] { reader.get(i32_mul(size, int64_t{i} - 1), record); });
    resume_next([&] { run.put(i32_mul(size, j), record); });
    ++j;
  }
  resume_next([&] { run.flush(); });
  resume_next([&] { files.close_all(); });
  resume_next([&] {
    message(platform, state.file_out + " " + number_text(file_length(out)) + " has been created ", Icon::information);
  });
}

}  // namespace tf
