#include "importers/sisforme.h"

#include <iterator>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "frame/record_selection.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    "SEISMIC FILE CONVERSION",
    "This module will convert nearly any kind of seismic file  ",
    "to SU format if you know the file structure. ",
    "See your seismograph manual or ask to the factory",
    "Use this module if you don't find Seismograph files on the panel",
    "Header values will not be recorded in the SU file !!!",
    " 1- Select the all the files of your line",
    " 2- Enter the sample rate (1/1000 ms) ",
    " 3- Enter the number of samples per trace  ",
    " 4- Enter the number of traces per record  ",
    " 5- Enter the record header size  ",
    " 6- Enter the trace header size ",
    "The result will be a single SU file with all the selected inpu files",
    "For OYO McSeis 170 enter 24 channel, 1024 samples, Long Integers",
};
const char* const type_options[] = {"Option1", "Option2", "Option3", "Option4"};
// The selection walk keeps a table of 900 texts.
constexpr int piece_capacity = 900;
}  // namespace

sisforme::sisforme(App& owner) : Panel(owner, "sisforme", "Brenholt Seismic file converter") {
  add(Kind::button, "Command5", "Press here to select Seismic files").on_click = [this] { Select_i(); };
  add(Kind::button, "Command3", "Input file").on_click = [this] { Select_i(); };
  // Read into file_in at Convert, and nothing else.
  add(Kind::text, "Text1", "", " ").tooltip = "click here and find the first ABEM file to convert";
  add(Kind::grid, "Grid1");
  add(Kind::text, "Text3", "Trace number per record", " 24").tooltip = "Correct here the trace number if necesssary";
  add(Kind::text, "Text4", "Number of sample", "1024").tooltip = "Correct hre the number of sample per trace";
  add(Kind::text, "Text5", "Sample rate (microS)", "480").tooltip = "Don't forget the sample rate !!!";
  add(Kind::text, "Text6", "Number of files to convert", "1").tooltip = "Type here the number of file to convert";
  add(Kind::text, "Text7", "File Header size", "2048").tooltip =
      "Enter here the header size (bytes) preceeding traces values";
  add(Kind::text, "Text8", "Trace header size", "0").tooltip = "Enter here the header size (bytes) preceeding every trace";
  add(Kind::label, "Label7", "Input file size");
  add(Kind::label, "Label8", " ");
  add(Kind::text, "Text9", "File size with your values", "0").tooltip =
      "Size of the file with your parameters, must be equals to the input file size";
  add(Kind::frame, "Frame1", "Data type");
  const char* const type_captions[] = {"Integer 2 bytes", "Integer 4 bytes", "Floating 4 bytes", "ASCII"};
  for (size_t i = 0; i < std::size(type_options); ++i) add_in("Frame1", Kind::option, type_options[i], type_captions[i]);
  (*this)["Option2"].value = 1;
  add(Kind::button, "Command6", "Compute Header size").on_click = [this] { Calcul_gd_file(); };
  add(Kind::button, "Command4", "Output file").on_click = [this] { Outputfile(); };
  auto& out = add(Kind::text, "Text2", "", " ");
  out.tooltip = "This will be the SU file";
  out.on_dblclick = [this] { Outputfile(); };
  add(Kind::button, "Command1", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command2", "Info").on_click = [this] { info(); };
  add(Kind::progress, "ProgressBar1").visible = false;
  // Option1_Click to Option3_Click, Text3_Change, Text7_Change and
  // Text8_Change do nothing.
}

void sisforme::Select_i() {
  resume_next([&] {
    state.file_in = records_dialog(platform, "ES1225 file selection", "Record |*.a*|All files|*.*|", "*.*",
                                   state.data_folder);
  });
  // The walk consumes file_in: with several files it keeps only the last
  // name, without its folder.
  Affiche_file(state.file_in);
  resume_next([&] { set_caption("Label8", field_text(file_length(file_system_name(state.file_in)))); });
}

// Row 0 of the grid: the folder in column 0, the names after it.
void sisforme::Affiche_file(std::string& selection) {
  Control& grid = (*this)["Grid1"];
  auto& row = grid.cells.empty() ? grid.cells.emplace_back() : grid.cells[0];
  const Selection pieces = take_pieces(selection, piece_capacity);
  const auto& items = pieces.items;
  int count = pieces.count - 1;
  if (count > 0) {
    row.resize(items.size());
    for (size_t r = 0; r < items.size(); ++r) row[r] = items[r];
    changed(grid);
    resume_next([&] { set_text("Text2", items[0] + sep + su_name(items[1])); });
  } else if (count == 0) {
    count = 1;
    const std::string& path = items[0];
    const size_t last_sep = path.rfind(sep_char);
    const size_t cut = last_sep == std::string::npos ? 0 : last_sep + 1;
    row.resize(2);
    row[0] = path.substr(0, cut);
    row[1] = path.substr(cut);
    changed(grid);
    resume_next([&] { set_text("Text2", su_name(path)); });
  }
  set_text("Text6", field_text(count));
}

int sisforme::sample_width() {
  if (checked("Option1")) return 2;
  if (checked("Option4")) return 0;
  return 4;
}

// The file header size that the file's length leaves, and beside it the
// length that the values typed so far give.
void sisforme::Calcul_gd_file() {
  resume_next([&] { state.nb_channels = field_i16(text("Text3")); });
  resume_next([&] { state.ns = field_i32(text("Text4")); });
  resume_next([&] { state.dt = field_i16(text("Text5")); });
  resume_next([&] { (void)field_i16(text("Text6")); });  // the file count: read, of no use here
  const double header = leading_number(text("Text7")), trace_header = leading_number(text("Text8"));
  // ASCII counts four bytes a sample here.
  const int width = checked("Option1") ? 2 : 4;
  double channels_bytes = 0;
  resume_next([&] { channels_bytes = (i32_mul(width, state.ns) + trace_header) * state.nb_channels; });
  set_text("Text9", field_text(channels_bytes + header));
  resume_next([&] {
    set_text("Text7", field_text(static_cast<double>(file_length(file_system_name(state.file_in))) - channels_bytes));
  });
}

void sisforme::Outputfile() {
  set_text("Text2", output_name_dialog(platform, state.data_folder, "Output File selection"));
}

void sisforme::info() {
  std::string text = help_lines[0];
  for (size_t i = 1; i < std::size(help_lines); ++i) text += state.crlf + help_lines[i];
  message(platform, text);
}

void sisforme::Convert() {
  // Every failing statement shows the conversion error box and runs again.
  auto step = [this](const std::function<void()>& statement) { retry_statement(platform, statement); };
  set_pointer(Pointer::hourglass);
  int16_t file_count = 0;
  double header = 0, trace_header = 0;  // H and T stay floating
  step([&] { state.nb_channels = field_i16(text("Text3")); });
  step([&] { state.ns = field_i32(text("Text4")); });
  step([&] { state.dt = field_i16(text("Text5")); });
  step([&] { file_count = field_i16(text("Text6")); });
  header = leading_number(text("Text7"));
  trace_header = leading_number(text("Text8"));
  const int32_t ns = state.ns;
  const int width = sample_width();
  step([&] {
    if (ns < 1) throw RunTimeError(err::subscript);  // indices 1 to ns
    if (width == 2) dim_array(state.i2_trace, ns);
    if (checked("Option2") || checked("Option4")) dim_array(state.i4_trace, ns);
    dim_array(state.r4_trace, ns);  // the ASCII option leaves it zero
  });
  state.file_in = text("Text1");
  state.file_out = text("Text2");
  set_visible("ProgressBar1", true);
  step([&] { set_progress_range("ProgressBar1", 1, i16_mul(file_count, state.nb_channels)); });
  set_progress("ProgressBar1", 1);
  step([&] { files.close_all(); });
  // An existing output is written over in place: a longer one keeps its tail.
  step([&] { files.open(2, file_system_name(state.file_out)); });
  if (file_count > 99) {
    file_count = 99;
    message(platform, "Maximum 99 records");
  }

  su::RecordImage image(files, 2);
  const auto& row = (*this)["Grid1"].cells;
  auto cell = [&](int column) {
    return row.empty() || column >= static_cast<int>(row[0].size()) ? std::string() : row[0][static_cast<size_t>(column)];
  };
  for (int16_t f = 1; f <= file_count; step([&] { f = i16_next(f); })) {
    step([&] { open_record(files, 1, cell(0) + sep + cell(f)); });
    for (int16_t c = 1; c <= state.nb_channels; step([&] { c = i16_next(c); })) {
      step([&] { set_progress("ProgressBar1", i16_mul(f, c)); });
      double position = 0;
      step([&] { position = header + c * trace_header + i32_mul(i16_mul(c - 1, width), ns); });
      if (position < 0) {
        // The files stay open and the pointer stays an hourglass.
        message(platform, "Verify your parameters...", Icon::stop);
        return;
      }
      const auto at = static_cast<int64_t>(round_half_even(position));
      const auto samples = static_cast<size_t>(ns);
      if (checked("Option1")) {
        step([&] { files[1].read_at(at, &state.i2_trace[1], 2 * samples); });
        for (size_t k = 1; k <= samples; ++k) state.r4_trace[k] = state.i2_trace[k];
      } else if (checked("Option2")) {
        step([&] { files[1].read_at(at, &state.i4_trace[1], 4 * samples); });
        for (size_t k = 1; k <= samples; ++k) state.r4_trace[k] = static_cast<float>(state.i4_trace[k]);
      } else if (checked("Option3")) {
        step([&] { files[1].read_at(at, &state.r4_trace[1], 4 * samples); });
      }
      int16_t trace = 0;
      step([&] { trace = i16_add(i16_mul(f - 1, state.nb_channels), c - 1); });
      step([&] { state.trace_pos = i32_mul(trace, su::record_size(ns)); });
      image.move_to(state.trace_pos);
      su::put_record_header(image, f, c, ns, state.dt, true);
      image.put_block(su::header_size, &state.r4_trace[1], samples);
      // A trace at a time: the image stays small enough to be quick.
      step([&] { image.flush(); });
    }
    step([&] { files.close(1); });
  }
  step([&] { files.close(2); });
  set_visible("ProgressBar1", false);
  set_pointer(Pointer::arrow);
  message(platform, "OK, Conversion done");
}

}  // namespace tf
