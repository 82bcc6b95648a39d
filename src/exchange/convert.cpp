#include "exchange/convert.h"

#include <filesystem>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/binary_file.h"

namespace tf {

namespace {

// What each mode makes of the panel. The output name drops `cut`
// characters of the input, whatever its extension, and adds `suffix`.
struct Mode {
  const char* mode;
  const char* caption;
  void (Convert::*routine)();
  const char* title;
  const char* start_name;
  const char* filter;
  size_t cut;
  const char* suffix;
};

// "KGS2SU" starts its dialog on *.DAT while its filter offers *.SU: kept so.
const Mode modes[] = {
    {"SEGY2SU", " Conversion SEG-Y to SU", &Convert::Convert_SEGY_2_SU, "SEG-Y File selection", "*.SGY",
     "SEG-Y File |*.SGY|All files|*.*|", 3, "SU"},
    {"SU2SEGY", " Conversion SU to SEG-Y", &Convert::Convert_SU_2_SEGY, "SU File selection", "*.SU",
     "SU File |*.SU|All files|*.*|", 2, "SGY"},
    {"SEGD2SU", " Conversion SEG-D to SU ", &Convert::Convert_SEGD_2_SU, "SEG-D File selection", "*.SGD",
     "SEG-D File |*.SGD|All files|*.*|", 3, "SU"},
    {"KGS2SU", " Conversion KGS-FPT to SU", &Convert::Convert_KGS_2_SU, "KGS File selection", "*.DAT",
     "KGS File |*.SU|All files|*.*|", 3, "SU"},
    {"KGSI2SU", " Conversion KGS Integers to SU ", &Convert::Convert_KGSI_2_SU, "KGS Integer File selection", "*.EVD",
     "KGS File |*.EVD|All files|*.*|", 3, "SU"},
    {"SU2KGS", " Conversion SU to KGS_FPT", &Convert::Convert_SU_2_KGS, "SU File selection", "*.SU",
     "SU File |*.SU|All files|*.*|", 2, "DAT"},
};

// The Convert button tries the modes in this order.
const char* const dispatch_order[] = {"SU2KGS", "KGS2SU", "SEGY2SU", "SU2SEGY", "KGSI2SU", "SEGD2SU"};

const Mode* mode_of(const std::string& mode) {
  for (const auto& m : modes)
    if (mode == m.mode) return &m;
  return nullptr;
}

// The output dialog keeps one title and filter in every mode.
constexpr const char* output_title = "KGS Integer File selection";
constexpr const char* output_filter = "SU File |*.SU|All files|*.*|";
constexpr const char* output_start_name = "*.SU";

constexpr const char* design_caption = "Conversion";
constexpr const char* batch_name = "convert.bat";
constexpr const char* shell_failure = "Unable to shell application:";
constexpr const char* segd_failure = "SEGDREAD error";
constexpr const char* converter_title = "Brenholt File converter";
constexpr int converter_box_ms = 3000;

// The little-endian button passes 1: that is the sense the tools are given.
constexpr const char* little_endian = " endian=1 | ";
constexpr const char* other_endian = " endian=0 | ";

void delete_file(const std::string& name) {
  std::error_code ec;
  std::filesystem::remove(native_path(name), ec);
}

}  // namespace

void converter_ok_box(Platform& platform, const std::string& text) {
  MessageBoxRequest box;
  box.text = text;
  box.title = converter_title;
  box.icon = Icon::information;
  box.autoclose_ms = converter_box_ms;
  platform.message_box(box);
}

Convert::Convert(App& owner) : Panel(owner, "Convert", [&] {
  const Mode* m = mode_of(owner.state.conversion_mode);
  return std::string(m ? m->caption : design_caption);
}()) {
  // Each file button is drawn beside its field.
  auto& in = add(Kind::text, "Text1", "", " ");
  in.on_dblclick = [this] { Lecture(); };
  add(Kind::button, "Command3", "Input file").on_click = [this] { Lecture(); };
  auto& out = add(Kind::text, "Text2", "", " ");
  out.on_dblclick = [this] { Choix_out(); };
  add(Kind::button, "Command4", "Output file").on_click = [this] { Choix_out(); };
  add(Kind::button, "Command2", "Convert").on_click = [this] { convert_clicked(); };
  add(Kind::button, "Command1", "Cancel").on_click = [this] { unload(); };
  add(Kind::frame, "Frame1");
  add_in("Frame1", Kind::option, "Option1", "Little Endian").tooltip = "Usual PC format";
  add_in("Frame1", Kind::option, "Option2", "Big Endian").tooltip = "Mainframe type format";
  add(Kind::progress, "ProgressBar1");
}

void Convert::form_load() {
  auto& frame = (*this)["Frame1"];
  frame.visible = state.conversion_mode == "SEGY2SU";
  changed(frame);
  set_text("Text1", state.current_file.empty() ? state.file_in : state.current_file);
}

void Convert::Lecture() {
  const Mode* m = mode_of(state.conversion_mode);
  if (!m) return;
  const std::string name = record_dialog(platform, m->title, m->filter, m->start_name, state.data_folder);
  set_text("Text1", name);
  // A name shorter than the part it loses ends the routine.
  if (name.size() < m->cut) return;
  set_text("Text2", name.substr(0, name.size() - m->cut) + m->suffix);
}

void Convert::Choix_out() {
  set_text("Text2", record_dialog(platform, output_title, output_filter, output_start_name, state.data_folder));
}

void Convert::convert_clicked() {
  set_pointer(Pointer::hourglass);
  platform.set_pointer("Utility", Pointer::hourglass);
  for (const char* mode : dispatch_order)
    if (state.conversion_mode == mode) {
      (this->*mode_of(mode)->routine)();
      break;
    }
  set_pointer(Pointer::arrow);
  platform.set_pointer("Utility", Pointer::arrow);
}

// The checks every routine makes first; false stops it with the panel open.
bool Convert::entry_checks() {
  resume_next([&] { files.close_all(); });
  state.file_in = text("Text1");
  state.file_out = text("Text2");
  if (state.file_in.empty()) {
    message(platform, "File name missing");
    return false;
  }
  if (File_Exists(state.file_in) == 0) {
    message(platform, "Input file " + state.file_in + " does not exist !");
    return false;
  }
  int64_t length = 0;  // a name the length call refuses counts as empty
  resume_next([&] { length = file_length(native_path(state.file_in)); });
  if (length == 0) {
    message(platform, "Input file " + state.file_in + " is empty !");
    return false;
  }
  // Exact text: two spellings of one path pass.
  if (state.file_out == state.file_in) {
    message(platform, "Same Input / Output");
    return false;
  }
  return true;
}

// The composed text goes to convert.bat beside the data as one printed
// line and is started; nobody waits for it.
void Convert::start_convert_batch(const std::string& text, const std::string& failure) {
  const std::string batch = state.data_folder + batch_name;
  resume_next([&] { write_whole_file(native_path(batch), text + "\r\n"); });
  platform.set_pointer("Utility", Pointer::hourglass);
  ShellRequest start;
  start.file = batch;
  start.dir = platform.application_folder();
  if (platform.shell_execute(start) < 32) message(platform, failure);
  platform.set_pointer("Utility", Pointer::cross);
}

void Convert::Convert_SEGY_2_SU() {
  if (!entry_checks()) return;
  delete_file(state.file_out);
  const std::string& tools = state.su_tools_folder;
  const char* endian = checked("Option1") ? little_endian : other_endian;
  start_convert_batch(tools + "SEGYREAD tape=" + state.file_in + endian + tools + "SEGYCLEAN >" + state.file_out,
                      shell_failure);
}

void Convert::Convert_SEGD_2_SU() {
  if (!entry_checks()) return;
  delete_file(state.file_out);
  start_convert_batch(state.su_tools_folder + "SEGDREAD tape=" + state.file_in + " >" + state.file_out, segd_failure);
}

// The SEG-Y is the tool's text and binary headers and the SU file itself,
// joined by a copy: the traces are not rewritten.
void Convert::Convert_SU_2_SEGY() {
  if (!entry_checks()) return;
  Read_ns_dt(app, state.file_in);
  if (File_Exists(state.file_out) == 1) delete_file(state.file_out);
  const std::string& data = state.data_folder;
  const std::string text = state.su_tools_folder + "SEGYHDRS <" + state.file_in + " ns=" + number_text(state.ns) +
                           " dt=" + number_text(state.dt) + " bfile=binary hfile=header" + state.crlf + "copy /b " +
                           data + "header + " + data + "binary + " + state.file_in + " " + state.file_out;
  message(platform, text);
  start_convert_batch(text, shell_failure);
  converter_ok_box(platform);
  unload();
  platform.set_pointer("Utility", Pointer::cross);
}

void Convert::finish_kgs() {
  resume_next([&] { files.close_all(); });
  converter_ok_box(platform);
  unload();
}

}  // namespace tf
