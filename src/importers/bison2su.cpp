#include "importers/bison2su.h"

#include "frame/batch_runner.h"
#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "importers/ascii2su.h"
#include "su/binary_file.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    "Bison 2 to SU Translation",
    " This module can convert BISON 2 file to SU format ",
    " using BISON2SU.EXE ",
    "You must convert files one by one, then add SU files ",
    "More informations are found in SU modules VEDRA\\SRC\\THIRDPARTY\\BISON2SU ",
};
const char* const batch_name = "convert.bat";
}  // namespace

Bison2su::Bison2su(App& owner) : Panel(owner, "Bison2su", "Bison2 conversion using Bison2SU") {
  // Each path field stands beside the button that fills it.
  add(Kind::text, "Text1", "", " ").on_dblclick = [this] { Choix_IP(); };
  add(Kind::button, "Command1", "Input file").on_click = [this] { Choix_IP(); };
  add(Kind::text, "Text2", "", " ").on_dblclick = [this] { Choix_OP(); };
  add(Kind::button, "Command2", "Output file").on_click = [this] { Choix_OP(); };
  add(Kind::check, "Check1", "Swap bite");
  add(Kind::button, "Command3", "Convert").on_click = [this] { Convert(); };
  add(Kind::button, "Command4", "Exit").on_click = [this] { unload(); };
  add(Kind::button, "Command5", "Info").on_click = [this] { info(); };
}

void Bison2su::Choix_IP() {
  FileDialogRequest dialog;
  dialog.title = "Bison file selection";
  dialog.filter = "Bison 2 |*.DAT";
  state.file_in = platform.file_dialog(dialog);
  set_text("Text1", state.file_in);
  resume_next([&] { set_text("Text2", su_name(state.file_in)); });
  state.file_out = text("Text2");
}

// The name chosen here is not taken: the output is proposed from the input
// again, and another name is typed into Text2.
void Bison2su::Choix_OP() {
  FileDialogRequest dialog;
  dialog.title = "SU file selection";
  dialog.filter = "SU file |*.SU|All files|*.*|";
  dialog.file_name = "*.SU";
  platform.file_dialog(dialog);
  resume_next([&] { set_text("Text2", su_name(state.file_in)); });
  state.file_out = text("Text2");
}

void Bison2su::info() {
  message(platform, ended_lines(help_lines, state.crlf));
}

// With failing statements skipped. The batch file is written and left for
// the operator: the shell is asked to open a file name that nothing fills,
// and the box tells only what the shell answered.
void Bison2su::Convert() {
  state.file_out = text("Text2");
  if (state.file_out.empty()) return;
  ask_to_kill_output(platform, state.file_out);
  Find_Tools_Folder(app);
  const std::string swap = checked("Check1") ? " swap >" : " >";
  const std::string command = state.su_tools_folder + "Bison2SU <" + text("Text1") + swap + text("Text2");
  const std::string folder = platform.application_folder();
  resume_next([&] { write_whole_file(folder + sep + batch_name, command + state.crlf); });
  ShellRequest start;
  start.dir = folder;
  start.file = "";  // the batch path never reaches the shell
  if (platform.shell_execute(start) >= 32)
    message(platform, " Conversion OK", Icon::information);
  else
    message(platform, " Conversion problem...verify parameters", Icon::stop);
  resume_next([&] { files.close_all(); });
  set_pointer(Pointer::arrow);
}

}  // namespace tf
