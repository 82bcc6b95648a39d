#include "frame/batch_runner.h"

#include <filesystem>
#include <utility>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"

namespace tf {

namespace fs = std::filesystem;

namespace {

constexpr const char* batch_name = "batch.bat";
constexpr const char* shell_failure = "Unable to shell application:";

// Blanks taken out of redirections and paths, one Replace_All pass each, in
// this order. "= " becomes " =": the blank moves in front of the sign.
constexpr std::pair<const char*, const char*> blank_rules[] = {
    {"  ", " "}, {"> ", ">"}, {"< ", "<"}, {"= ", " ="}, {"\\ ", "\\"}, {" \\", "\\"},
};

constexpr const char* profile_file = "Larvex32.INI";
constexpr const char* profile_section = "LARVEX";
constexpr int profile_buffer = 90;

constexpr const char* archiver_missing = "You must install WINZIP ";
constexpr const char* archive_title = "LCM-1 file selection";
constexpr const char* archive_filter = "Record |*.SU|All files|*.*|";
constexpr const char* archive_start_name = "*.SU";
constexpr const char* archive_done = " has been zipped";

// The platform's texts end at their first NUL.
std::string cut_at_nul(const std::string& text) { return text.substr(0, text.find('\0')); }

// The text up to and including a dot, "" when there is none.
std::string through(const std::string& text, size_t dot) {
  return dot == std::string::npos ? std::string() : text.substr(0, dot + 1);
}

}  // namespace

void Run_Batch(App& app, const std::string& command_file, const std::string& arguments, int window_style,
               bool wait_for_end) {
  Platform& platform = app.platform;
  std::string batch_path = platform.application_folder() + sep + batch_name;
  // The main panel's rich text box is the buffer; a file that cannot be
  // loaded leaves the box with the text it held.
  Panel* main_panel = app.panels.loaded("Utility");
  std::string buffer = main_panel ? main_panel->text("RichTextBox1") : std::string();
  resume_next([&] { buffer = read_whole_file(native_path(command_file)); });
  buffer = lower(buffer);
  for (const auto& [find, replacement] : blank_rules) Replace_All(buffer, find, replacement);
  if (main_panel) main_panel->set_text("RichTextBox1", buffer);
  resume_next([&] { write_whole_file(batch_path, buffer); });

  ShellRequest start;
  start.file = batch_path;
  start.params = arguments;
  start.dir = platform.application_folder();
  start.show = window_style;
  start.wait_for_end = wait_for_end;
  if (platform.shell_execute(start) < 32) message(platform, shell_failure + batch_path);
  platform.set_pointer("Utility", Pointer::arrow);
}

std::string Find_Exec_For_Ext(App& app, const std::string& extension) {
  Platform& platform = app.platform;
  std::string folder = platform.temp_folder();
  if (folder.empty()) return "";
  std::string name = cut_at_nul(platform.temp_file_name(folder, "-"));
  if (name.empty()) return "";
  // The name is cut at its first dot: a dot in the folder's path gives a
  // name outside the folder, the rename is refused and nothing is found.
  std::string typed = through(name, name.find('.')) + extension;
  std::error_code ec;
  if (fs::path(typed).parent_path() == fs::path(name).parent_path()) fs::rename(name, typed, ec);
  std::string program = cut_at_nul(platform.find_executable(typed));
  fs::remove(typed, ec);
  return program;
}

void Join_Files(App& app, const std::string& first, const std::string& second, const std::string& output) {
  FileTable& files = app.files;
  int first_number = 0, second_number = 0, output_number = 0;
  auto open_input = [&](int& number, const std::string& name) {
    resume_next([&] {
      if (File_Exists(name) == 0) throw RunTimeError(err::file_not_found);
      number = files.free_number();
      files.open(number, native_path(name));
    });
  };
  open_input(first_number, first);
  open_input(second_number, second);
  resume_next([&] {
    output_number = files.free_number();
    files.open(output_number, native_path(output));
  });
  std::vector<uint8_t> buffer;
  int64_t put_position = 0;
  for (int input : {first_number, second_number}) {
    resume_next([&] { buffer.resize(static_cast<size_t>(files[input].length())); });
    resume_next([&] { files[input].read_block(0, buffer); });
    resume_next([&] {
      files[output_number].write_block(put_position, buffer);
      put_position += static_cast<int64_t>(buffer.size());
    });
  }
  for (int number : {first_number, second_number, output_number}) resume_next([&] { files.close(number); });
}

void Find_Tools_Folder(App& app) {
  Platform& platform = app.platform;
  std::string& folder = app.state.su_tools_folder;
  folder = platform.profile_string(profile_section, "Directory1", "C:\\larvex\\", profile_buffer, profile_file);
  if (File_Exists(folder + "segyread.exe") == 1) return;
  // The second folder of the suite is read and then not used.
  std::string repertoire = platform.profile_string(profile_section, "Repertoire", "C:\\Larvex6\\", profile_buffer, profile_file);
  (void)repertoire;
  folder = platform.application_folder() + sep;
}

void Zip_Files(App& app) {
  Platform& platform = app.platform;
  std::string archiver = Find_Exec_For_Ext(app, "ZIP");
  if (archiver.empty()) {
    message(platform, archiver_missing);
    return;
  }
  std::string chosen = records_dialog(platform, archive_title, archive_filter, archive_start_name, app.state.data_folder);
  Selection pieces = cut_at_blanks(chosen + " ");
  int n = pieces.count;
  // Pieces past the table's end are missing: their statements fail and the
  // name of the piece before is archived again.
  auto piece = [&](int i) -> const std::string& {
    if (i < 0 || i >= static_cast<int>(pieces.items.size())) throw RunTimeError(err::subscript);
    return pieces.items[static_cast<size_t>(i)];
  };
  std::string name, archive;
  auto zip = [&] {
    ShellRequest start;
    start.file = archiver + " -min -a " + archive + name;  // program and arguments in one text
    start.dir = platform.application_folder();
    platform.shell_execute(start);
    message(platform, name + archive_done, Icon::information);
  };
  if (n > 1) {
    for (int i = 1; i <= n - 1; ++i) {
      resume_next([&] { name = piece(0) + piece(i); });
      archive = through(name, name.find('.')) + "ZIP ";
      zip();
    }
  } else {
    resume_next([&] { name = piece(0); });
    archive = through(name, name.rfind('.')) + "ZIP" + " ";
    zip();
  }
}

}  // namespace tf
