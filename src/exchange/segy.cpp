#include "exchange/segy.h"

#include <filesystem>

#include "exchange/convert.h"
#include "frame/batch_runner.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/binary_file.h"
#include "viewers/trace_display.h"

namespace tf {

namespace {

const char* const help_lines[] = {
    "SEG-Y to SEISMIC UNIX file conversion",
    "With this module you can convert many SEG-Y field record  ",
    "to an unique SU file. Many options are possible (see SU manual) ",
    "If you cannot use this module try with batch processing  ",
    "using SEGREAD tape=my.sgy >my.su .... ",
    "Try different option. The SGY file size must be ",
    "3600 + nb_traces *( 240 + (number_of_sample_per_trace * 4))",
    "SU file size = nb_traces *( 240 + (number_of_sample_per_trace * 4))",
};

constexpr const char* guidance =
    "Check here the conversion result, if necessary change the parameters CONV, OVER, ENDIAN and re-run TEST, when "
    "OK press CONVERT";
constexpr const char* conversion_ok = " Conversion OK";
constexpr const char* conversion_problem = " Conversion problem...verify parameters";
constexpr const char* test_problem = " Conversion problem... modify ENDIAN, OVER or CONV parameters and re run";
constexpr const char* shell_failure = "Unable to shell application:";

// The SEG-Y disk file: 3200 text and 400 binary bytes, then the traces. The
// first trace's ns and dt are read in the file's byte order.
constexpr int segy_headers = 3600;
constexpr int first_ns_offset = 3714;
constexpr int first_dt_offset = 3716;
constexpr int su_ns_offset = 114;
// Under this many samples the first trace is taken as byte-swapped.
constexpr int16_t swapped_below = 100;
constexpr int probe_seconds = 3;

void delete_file(const std::string& name) {
  std::error_code ec;
  std::filesystem::remove(native_path(name), ec);
}

int64_t length_of(const std::string& name) {
  int64_t length = 0;
  resume_next([&] { length = file_length(native_path(name)); });
  return length;
}

// Traces of a SEG-Y file of `length` bytes, traces of `record` bytes.
double traces_in(int64_t length, int32_t record) {
  if (record == 0) throw RunTimeError(err::division_by_zero);
  return static_cast<double>(length - segy_headers) / record;
}

}  // namespace

SEGY::SEGY(App& owner) : Panel(owner, "SEGY", "SEG-Y to SU") {
  auto& tabs = add(Kind::tabs, "SSTab1");
  tabs.items = {"Parameters", "Display", "Manual"};
  auto on_tab = [](Control& c, int tab) -> Control& {
    c.parent = "SSTab1";
    c.tab = tab;
    return c;
  };
  auto& select = on_tab(add(Kind::button, "Command1", "Press here to select all SEG-Y record to convert to SU"), 0);
  select.tooltip = "Sample rate, trace number and sample/trace must be constant";
  select.on_click = [this] { Select_i(); };
  on_tab(add(Kind::list, "List1"), 0);
  on_tab(add(Kind::text, "Text2", "", " "), 0);
  on_tab(add(Kind::button, "Command4", "Output SU file"), 0).on_click = [this] { Output_File(); };
  auto& ns = on_tab(add(Kind::text, "Text4", "Sample", "1024"), 0);
  ns.tooltip = "number of sample per trace";
  on_tab(add(Kind::text, "Text5", "Channels", "24"), 0);
  on_tab(add(Kind::text, "Text12", "Sample rate", "100"), 0);
  on_tab(add(Kind::text, "Text11", "Records Nb", "1"), 0);
  on_tab(add(Kind::text, "Text1", "Convert from trace", "1"), 0);
  on_tab(add(Kind::text, "Text3", "To trace", "9999"), 0);
  on_tab(add(Kind::text, "Text6", "Conv=", "1"), 0).tooltip = "1=convert to native format";
  on_tab(add(Kind::text, "Text7", "Over=", "0"), 0).tooltip = "quit if bhed format is not equal 1 2 or 3";
  on_tab(add(Kind::text, "Text8", "Endian=", "1"), 0).tooltip = "0= for little-endian machine PC";
  on_tab(add(Kind::text, "Text9", "Display process", "1"), 0).tooltip = "0=no display 1= display SU batch";
  on_tab(add(Kind::check, "Check1", "Delete  single SU file"), 0).tooltip = "if checked, unitary SU files are deleted";
  auto& test = on_tab(add(Kind::button, "Command5", "Test"), 0);
  test.tooltip = "Press here to check conversion parameters";
  test.on_click = [this] { Test(); };
  on_tab(add(Kind::label, "Label12", guidance), 0);
  on_tab(add(Kind::button, "Command2", "Convert"), 0).on_click = [this] { Convert(); };
  on_tab(add(Kind::button, "Command3", "Quick SEGY Conversion"), 0).on_click = [this] { Quick_Conversion(); };
  on_tab(add(Kind::button, "Command6", "Help"), 0).on_click = [this] { Help(); };
  auto& scale = on_tab(add(Kind::text, "Text13", "Amplitude scale", "2"), 1);
  scale.tooltip = "You can change here amplitude scale factor";
  scale.on_change = [this] {
    std::string test_file = program_file("conv_test.su");
    Display_SU(app, *this, test_file);
  };
  auto& ecran = on_tab(add(Kind::picture, "ecran"), 1);
  ecran.picture_width = 480;
  ecran.picture_height = 360;
  ecran.on_mouse_move = [this](double x, double y) { ecran_mouse_move(app, *this, x, y); };
  on_tab(add(Kind::rich_text, "RichTextBox1"), 2).multiline = true;
  add(Kind::text, "Text10", "", "  ");
  add(Kind::progress, "ProgressBar1");
  for (const char* field : {"Text3", "Text4", "Text9", "Text12"}) (*this)[field].key_filter = "0123456789";
  for (const char* field : {"Text6", "Text7", "Text8"}) (*this)[field].key_filter = "01";
}

std::string SEGY::program_file(const std::string& name) {
  return platform.application_folder() + sep + name;
}

void SEGY::enable(const std::string& control, bool enabled) {
  Control& c = (*this)[control];
  c.enabled = enabled;
  changed(c);
}

// A wait by the clock that lets events run.
void SEGY::wait_seconds(double seconds) {
  const double from = platform.seconds_now();
  while (platform.seconds_now() - from < seconds) {
    platform.process_events();
    platform.wait_ms(20);
  }
}

// Starts a batch of the program's folder there; the shell's result.
bool SEGY::shell_batch(const std::string& batch) {
  ShellRequest start;
  start.file = batch;
  start.dir = platform.application_folder();
  return platform.shell_execute(start) != 0;
}

void SEGY::form_load() {
  const std::string manual = platform.application_folder() + native_path("\\manual\\seg.rtf");
  resume_next([&] { set_text("RichTextBox1", read_whole_file(manual)); });
}

void SEGY::form_unload() {
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(platform.application_folder(), ec))
    if (entry.path().filename().string().rfind("tmp.", 0) == 0) std::filesystem::remove(entry.path(), ec);
}

void SEGY::Select_i() {
  std::string chosen = records_dialog(platform, "SEG-Y file selection", "Record |*.sgy|All files|*.*|", "*.sgy",
                                     state.data_folder, 1);
  Control& list = (*this)["List1"];
  list.items.clear();
  changed(list);
  std::string file;
  if (chosen.find(' ') == std::string::npos) {
    add_item("List1", chosen);
    set_text("Text11", "1");
    Replace_All(chosen, " ", "");
    resume_next([&] { set_text("Text2", su_name(chosen)); });
    file = chosen;
  } else {
    // The folder comes back with its closing separator: the names are
    // joined to it as they stand.
    const Selection pieces = cut_at_blanks(chosen + " ");
    const std::string& folder = pieces.items[0];
    for (size_t i = 1; i < pieces.items.size(); ++i) add_item("List1", folder + pieces.items[i]);
    set_text("Text11", field_text(pieces.count - 1));
    resume_next([&] {
      if (pieces.items.size() < 2) throw RunTimeError(err::subscript);
      std::string name = folder + sep + su_name(pieces.items[1]);
      Replace_All(name, sep + sep, sep);
      set_text("Text2", name);
    });
    file = list_entry(list, 1);
  }
  int16_t samples = 0, interval = 0;
  int64_t length = 0;
  resume_next([&] {
    BinaryFile& in = app.files.open(1, native_path(file));
    length = in.length();
    in.read_value(first_ns_offset, samples);
    in.read_value(first_dt_offset, interval);
  });
  resume_next([&] { app.files.close(1); });
  if (samples < swapped_below) {
    Swap2(samples, samples);
    Swap2(interval, interval);
    set_text("Text4", field_text(samples));
    set_text("Text12", field_text(interval));
  }
  if (samples < 1) {
    // SEGYREAD is asked for the first trace; its ns is read back.
    const std::string tmp_su = program_file("tmp.su");
    const std::string probe = state.su_tools_folder + native_path("\\segyread tape=") + file + " >" + tmp_su +
                              " endian=0 conv=1 over=0 trmax=1 ns=" + number_text(samples);
    const std::string batch = program_file("tmp.bat");
    resume_next([&] { write_whole_file(native_path(batch), probe + "\r\n"); });
    shell_batch(batch);
    message(platform, file + " Bytes are swapped, endian must be set at zero", Icon::information);
    wait_seconds(probe_seconds);
    resume_next([&] {
      BinaryFile& tmp = app.files.open(2, native_path(tmp_su));
      tmp.read_value(su_ns_offset, samples);
    });
    resume_next([&] { app.files.close(2); });
    resume_next([&] { state.nb_traces = to_i32(traces_in(length, int32_t{samples} * 4 + 240)); });
    set_text("Text6", "0");
    set_text("Text7", "1");
    set_text("Text8", "0");
  } else {
    // The record size is worked out in 16 bits: 8132 samples and more
    // overflow and leave the trace count as it was.
    resume_next([&] { state.nb_traces = to_i32(traces_in(length, i16_add(i16_mul(samples, 4), 240))); });
    set_text("Text3", field_text(state.nb_traces));
    set_text("Text6", "1");
    set_text("Text7", "0");
    set_text("Text8", "0");
  }
  set_text("Text5", field_text(state.nb_traces));
  resume_next([&] { set_text("Text3", field_text(to_i32(leading_number(text("Text11")) * state.nb_traces))); });
}

void SEGY::Test() {
  enable("Command5", false);
  set_pointer(Pointer::hourglass);
  resume_next([&] { files.close_all(); });
  std::string test_file = program_file("conv_test.su");
  delete_file(test_file);
  const std::string entry = list_entry((*this)["List1"], 0);
  std::string line = platform.application_folder() + native_path("\\bin\\SEGYREAD tape=") + entry + " >" +
                     test_file + " conv=" + text("Text6") + " over=" + text("Text7") + " endian=" + text("Text8");
  Replace_All(line, "  ", " ");
  line += state.crlf + "pause";
  const std::string batch = program_file("convert.bat");
  resume_next([&] { write_whole_file(native_path(batch), line + "\r\n"); });
  if (!shell_batch(batch)) message(platform, test_problem, Icon::stop);
  resume_next([&] { files.close_all(); });
  wait_seconds(1);
  enable("Command5", true);
  enable("Command2", true);
  set_pointer(Pointer::arrow);
  Display_SU(app, *this, test_file);
}

void SEGY::Convert() {
  int16_t record_count = 0;
  resume_next([&] { record_count = to_i16(leading_number(text("Text11"))); });
  set_pointer(Pointer::hourglass);
  Find_Tools_Folder(app);
  state.file_out = text("Text2");
  if (!state.file_out.empty() && File_Exists(state.file_out) == 1) {
    if (message(platform, "Outfile name already exists, kill this file ?", Icon::question, Buttons::yes_no) ==
        Answer::yes) {
      delete_file(state.file_out);
    } else {
      InputBoxRequest ask;
      ask.prompt = "Enter a new output file name";
      ask.default_text = state.file_out;
      state.file_out = single_separators(platform.input_box(ask));
      set_text("Text2", state.file_out);
    }
  }
  // Both trace limits or none; " ns=" only for a count.
  double first = 0, last = 0;
  resume_next([&] { first = round_half_even(leading_number(text("Text1"))); });
  resume_next([&] { last = round_half_even(leading_number(text("Text3"))); });
  const std::string limits =
      first == 0 || last == 0 ? "" : " trmin=" + number_text(first) + " trmax=" + number_text(last);
  const std::string numbers = leading_number(text("Text4")) == 0 ? "" : " ns=" + text("Text4");
  if (record_count != 1) {
    convert_records(record_count, numbers, limits);
    return;
  }
  const std::string line = platform.application_folder() + native_path("\\bin\\SEGYREAD tape=") +
                           list_entry((*this)["List1"], 0) + " conv=" + text("Text6") + " over=" + text("Text7") +
                           " endian=" + text("Text8") + numbers + limits + " | " + state.su_tools_folder +
                           "SEGYCLEAN >" + state.file_out + state.crlf + "pause";
  const std::string batch = program_file("convert.bat");
  resume_next([&] { write_whole_file(native_path(batch), line + "\r\n"); });
  if (shell_batch(batch)) {
    message(platform, conversion_ok, Icon::information);
    set_pointer(Pointer::arrow);
    platform.set_pointer("Utility", Pointer::arrow);
  } else {
    message(platform, conversion_problem, Icon::stop);
  }
  resume_next([&] { files.close_all(); });
}

// One batch a record, SEGYREAD into tempo.su, ending by a copy of Fin.tmp
// to the record's marker. Once the marker is there, add.bat joins the
// piece to the output and deletes the marker, while the next record's
// batch already runs.
void SEGY::convert_records(int16_t record_count, const std::string& numbers, const std::string& limits) {
  if (File_Exists(state.file_out) == 1 &&
      message(platform, "Output file name already exists, new file will be appended ?", Icon::none,
              Buttons::ok_cancel) == Answer::cancel) {
    set_pointer(Pointer::arrow);
    return;
  }
  set_progress_range("ProgressBar1", 1, record_count);
  const Control& list = (*this)["List1"];
  const double expected = static_cast<double>(length_of(list_entry(list, 0)) - segy_headers) * std::abs(record_count);
  const std::string& tools = state.su_tools_folder;
  const std::string tempo = program_file("tempo.su");
  const std::string fin = program_file("Fin.tmp");
  resume_next([&] { write_whole_file(native_path(fin), ""); });
  std::string marker;
  for (int16_t i = 1; i <= record_count && i > 0; ++i) {
    set_progress("ProgressBar1", i);
    set_text("Text10", "Convert file " + number_text(i));
    marker = program_file(number_text(i) + ".tmp");
    std::erase(marker, ' ');
    const std::string entry = list_entry(list, i - 1);
    if (File_Exists(entry) == 0) {
      message(platform, entry + " does not exist, squip to next file");
      continue;
    }
    const std::string convert_text = tools + "SEGYREAD tape=" + entry + " conv=" + text("Text6") + " over=" +
                                     text("Text7") + " endian=" + text("Text8") + numbers + limits + " | " + tools +
                                     "SEGYCLEAN >" + tempo + "\r\n" + "Copy " + fin + " " + marker + "\r\n";
    const std::string convert_bat = program_file("convert.bat");
    resume_next([&] { write_whole_file(native_path(convert_bat), convert_text); });
    if (!shell_batch(convert_bat)) {
      message(platform, conversion_problem, Icon::stop);
      resume_next([&] { files.close_all(); });
      return;
    }
    while (File_Exists(marker) == 0) {
      platform.process_events();
      platform.wait_ms(20);
    }
    std::string add_text = "copy/b " + state.file_out + "+" + tempo + " " + state.file_out + "\r\n";
    if (checked("Check1")) add_text += "del " + tempo + "\r\n";
    add_text += "del " + marker + "\r\n";
    const std::string add_bat = program_file("add.bat");
    resume_next([&] { write_whole_file(native_path(add_bat), add_text); });
    ShellRequest start;
    start.file = add_bat;
    start.dir = platform.application_folder();
    if (platform.shell_execute(start) < 32) message(platform, shell_failure);
  }
  while (!marker.empty() && File_Exists(marker) == 1) {
    platform.process_events();
    platform.wait_ms(20);
  }
  const int64_t length = length_of(state.file_out);
  converter_ok_box(platform, static_cast<double>(length) == expected
                                 ? state.file_out + " has been recorded OK size:" + number_text(length)
                                 : " You must check file and file size");
  set_pointer(Pointer::arrow);
  platform.set_pointer("Utility", Pointer::arrow);
}

// The headers are cut off here; suswapfiles, as the line is written, reads
// the original and writes over the cut copy.
void SEGY::Quick_Conversion() {
  message(platform, " This module remove the SEGY File Header (3200 + 400 bytes)  and swap all bytes",
          Icon::information);
  const std::string input =
      record_dialog(platform, "File to be splitted", "All files|*.*|", "*.*", state.data_folder);
  if (input.size() < 5) {
    set_pointer(Pointer::arrow);
    return;
  }
  const std::string output = input.substr(0, input.size() - 4) + ".su";
  state.crlf = "\r\n";
  resume_next([&] {
    BinaryFile& in = files.open(1, native_path(input));
    std::vector<uint8_t> traces(static_cast<size_t>(std::max<int64_t>(in.length() - segy_headers, 0)));
    in.read_block(segy_headers, traces);
    files.open(2, native_path(output)).write_block(0, traces);
  });
  resume_next([&] { files.close_all(); });
  const std::string line = state.su_tools_folder + native_path("\\vedra\\suswapfiles <") + input + " >" + output;
  const std::string batch = program_file("convert.bat");
  resume_next([&] { write_whole_file(native_path(batch), line + "\r\n"); });
  if (shell_batch(batch)) message(platform, conversion_ok);
  else message(platform, conversion_problem);
}

void SEGY::Output_File() { set_text("Text2", output_name_dialog(platform, state.data_folder)); }

void SEGY::Help() {
  message(platform, ended_lines(help_lines, state.crlf), Icon::information);
}

}  // namespace tf
