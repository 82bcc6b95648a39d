#include "exchange/su2sgy.h"

#include <filesystem>

#include "exchange/convert.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "su/su_record.h"

namespace tf {

namespace {
// The help says " buff=" where the command line passes " buffer=".
const char* const help_lines[] = {
    "Optional parameter:",
    "",
    " buff=1 for buffered device (9-track reel tape drive)",
    " buff=0 possibly useful for 8mm EXABYTE drive",
    " conv=1 =0 dont convert to IBM format",
    " trmin=1 first trace to write",
    " trmax=INT_MAX  last trace to write",
    " endian=1   =0 for little-endian machines (PCs, DEC,etc...)",
    " errmax=0   allowable number of consecutive tape IO errors",
};
constexpr const char* batch_name = "\\convert.bat";
constexpr const char* started = " Conversion OK";
constexpr const char* not_started = " Conversion problem...verify parameters";
}  // namespace

SU2SGY::SU2SGY(App& owner) : Panel(owner, "SU2SGY", "SU to SEGY ") {
  // Each file button is drawn beside its field.
  add(Kind::text, "Text1", "", " ");
  add(Kind::button, "Command3", "Input file").on_click = [this] { input_file(); };
  add(Kind::text, "Text2", "", " ");
  add(Kind::button, "Command4", "Output file").on_click = [this] { output_file(); };
  add(Kind::text, "Text3", "Trace minimum", "1");
  add(Kind::text, "Text4", "Trace maximum", "10000");
  add(Kind::text, "Text5", "Buffered (0 or 1)", "1").key_filter = "01";
  add(Kind::text, "Text6", "convert (0= dont convert to IBM)", "1").key_filter = "01";
  add(Kind::text, "Text7", "Maximum errors", "0");
  add(Kind::text, "Text8", "Endian (0 for PC)", "0").key_filter = "01";
  add(Kind::button, "Command2", "Convert").on_click = [this] { convert(); };
  add(Kind::button, "Command5", "Info").on_click = [this] { info(); };
  add(Kind::button, "Command1", "Cancel").on_click = [this] { unload(); };
}

// The trace count is shown as the division gives it: a short last record
// leaves a fraction.
void SU2SGY::input_file() {
  const std::string name =
      record_dialog(platform, "SU file selection", "SU file |*.SU*|All files|*.*|", "*.SU", state.data_folder);
  set_text("Text1", name);
  state.file_in = name;
  resume_next([&] {
    if (name.size() < 2) throw RunTimeError(err::invalid_call);
    set_text("Text2", name.substr(0, name.size() - 2) + "SGY");
  });
  int16_t ns = 0;
  resume_next([&] { open_record(files, 1, name); });
  resume_next([&] { files[1].read_value(su::word("ns").offset, ns); });
  resume_next([&] { files[1].read_value(su::word("dt").offset, state.dt); });
  resume_next([&] {
    const int16_t record = i16_add(i16_mul(ns, 4), su::header_size);
    if (record == 0) throw RunTimeError(err::division_by_zero);
    set_text("Text4", field_text(static_cast<double>(files[1].length()) / record));
  });
  resume_next([&] { files.close_all(); });
}

void SU2SGY::output_file() {
  set_text("Text2", record_dialog(platform, "SEG-Y file selection", "SEGY |*.SGY*|All files|*.*|", "*.SGY",
                                  state.data_folder));
}

// The fields go into the command line as typed.
void SU2SGY::convert() {
  state.file_in = text("Text1");
  if (state.file_in.empty()) return;
  const std::string output = text("Text2");
  if (File_Exists(output) == 1) {
    if (message(platform, output + " already exists, delete this file ?", Icon::question, Buttons::yes_no) ==
        Answer::no)
      return;
    std::error_code ec;
    std::filesystem::remove(native_path(output), ec);
  }
  const std::string& crlf = state.crlf;
  const std::string folder = platform.application_folder();
  const std::string headers = folder + native_path("\\bin\\SEGYHDRS") + " <" + state.file_in + crlf;
  const std::string write = folder + native_path("\\bin\\SEGYWRITE") + " <" + state.file_in + " tape=" + output +
                            " conv=" + text("Text6") + " trmin=" + text("Text3") + " trmax=" + text("Text4") +
                            " endian=" + text("Text8") + " buffer=" + text("Text5") + " errmax=" + text("Text7") +
                            crlf + "pause";
  // Two printed texts, each ended by its own line break.
  const std::string batch = folder + native_path(batch_name);
  resume_next([&] { write_whole_file(batch, headers + "\r\n" + write + "\r\n"); });
  ShellRequest start;
  start.file = batch;
  start.dir = folder;
  // Only a result of 0 counts as a failure here.
  if (platform.shell_execute(start) != 0) {
    message(platform, started, Icon::information);
    set_pointer(Pointer::arrow);
  } else {
    message(platform, not_started, Icon::stop);
  }
  resume_next([&] { files.close_all(); });
}

void SU2SGY::info() {
  message(platform, ended_lines(help_lines, state.crlf), Icon::information);
}

}  // namespace tf
