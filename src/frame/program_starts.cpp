#include "frame/program_starts.h"

#include <array>
#include <string_view>

#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"

namespace tf {

namespace {
constexpr std::array<ProgramStart, 11> programs{{
    {"Commandp21", "\\RECVIEW.EXE", "999", false, "", Icon::none, FailureRule::below_32, ""},
    {"Option34", "\\RECVIEW.EXE", "999", false, "", Icon::none, FailureRule::below_32, ""},
    {"Commandp22", "\\RECVIEWY.EXE", "999", false, "", Icon::none, FailureRule::below_32, ""},
    {"Command7", "\\shotmap.exe", "", false, "", Icon::none, FailureRule::below_32, ""},
    {"Option26", "\\segd\\tape.exe", "", true, "Download TAPE.EXE from web and put this file in SEGD folder", Icon::stop,
     FailureRule::below_32, ""},
    {"Option27", "\\radview.exe", "", true, "Download RADVIEW.EXE from web and put this file in BIN folder", Icon::none,
     FailureRule::below_32, "Download RADVIEW.EXE from web and put this file in BIN folder"},
    {"Option28", "\\segy\\seisvu.exe", "", true, "Download SeisVU.EXE from web and put this file in SEGD folder", Icon::none,
     FailureRule::below_32, "Download SeisVU.EXE from web and put this file in SEGD folder"},
    {"Option29", "\\SAC_2_SU.EXE", "", false, "", Icon::none, FailureRule::exactly_0, "SAC_2_SU.EXE must be in the VEDRA folder"},
    {"Option30", "\\BinPatch.EXE", "", false, "", Icon::none, FailureRule::exactly_0, "BinPatch must be in the VEDRA\\BIN folder"},
    {"Option31", "\\segd\\SN388_SegY.EXE", "", true, "", Icon::stop, FailureRule::exactly_0,
     "Conv_SN388_SegY.EXE must be in the VEDRA folder"},
    {"Commandp6", "C:\\program files\\The Rename\\rename.exe", "", false, "", Icon::none, FailureRule::exactly_0,
     "RENAME must be in the c:\\program files\\The Rename folder"},
}};

bool names_a_drive(std::string_view program) { return program.size() > 1 && program[1] == ':'; }
}  // namespace

std::string program_path(App& app, const std::string& program) {
  if (names_a_drive(program)) return program;
  return app.platform.application_folder() + native_path(program);
}

bool start_program(App& app, const std::string& control) {
  for (const auto& row : programs) {
    if (control != row.control) continue;
    std::string path = program_path(app, row.program);
    if (row.test_first && File_Exists(path) == 0) {
      std::string text = *row.missing_text ? row.missing_text : path + " option is not available";
      message(app.platform, text, row.missing_icon);
      return false;
    }
    ShellRequest start;
    start.file = path;
    start.params = row.arguments;
    start.dir = app.platform.application_folder();
    int result = app.platform.shell_execute(start);
    bool failed = row.rule == FailureRule::below_32 ? result < 32 : result == 0;
    if (failed) message(app.platform, *row.failure_text ? row.failure_text : "Unable to shell application:" + path);
    return true;
  }
  return true;
}

}  // namespace tf
