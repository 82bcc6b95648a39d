#include "operations/add_su_files.h"

#include <filesystem>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"
#include "operations/su_files.h"
#include "su/su_record.h"

namespace tf {

namespace {
const char* const help_lines[] = {
    "How to append files",
    "1.- You select all SU files using Alt+Ctrl button when you click   ",
    "2.- You can add all files of a same seismic line together",
    "3.- Files MUST HAVE THE SAME SIZE, same sample number and same channels    ",
    "4.- If necessary you can convert the file to SEG-Y using conversion module  ",
    "    ",
};
constexpr size_t selection_parts = 900;
}  // namespace

Add_SU_files::Add_SU_files(App& owner) : Panel(owner, "Add_SU_files", "Add Seismic Unix files") {
  add(Kind::button, "Command1", "Press here to select  SU files").on_click = [this] { select_files(); };
  add(Kind::list, "List1");
  add(Kind::text, "Text2");
  add(Kind::text, "Text4", "Number of samples / trace", "1024").tooltip = "number of sample per trace";
  add(Kind::text, "Text5", "Number of traces per shot", "24");
  add(Kind::text, "Text9", "Number of files", "1").tooltip = "0=no display 1= display SU batch";
  add(Kind::check, "Check1", "Delete  single SU file").tooltip = "if checked, unitary SU files are deleted";
  add(Kind::button, "Command2", "Append SU files").on_click = [this] { append_files(); };
  add(Kind::button, "Command6", "?").on_click = [this] { help(); };
  add(Kind::text, "Text10", "", "  ");
  add(Kind::progress, "ProgressBar1");
}

void Add_SU_files::select_files() {
  FileDialogRequest dialog;
  dialog.flags = 512;
  dialog.initial_dir = state.data_folder;
  dialog.title = "SU file to convert selection";
  dialog.filter = "Record |*.su|All files|*.*|";
  dialog.file_name = "*.su";
  dialog.filter_index = 1;
  resume_next([&] { state.file_in = platform.file_dialog(dialog); });
  Affiche_file(state.file_in);
}

// A single part is the whole path of the one file; several are the folder
// and the names. A name with a blank is cut like the rest.
static void Affiche_file_parts(const std::vector<std::string>& parts, std::string& folder, std::vector<std::string>& names) {
  if (parts.size() == 1) {
    names = parts;
    return;
  }
  folder = parts[0];
  names.assign(parts.begin() + 1, parts.end());
}

void Add_SU_files::Affiche_file(const std::string& selection) {
  std::string folder;
  std::vector<std::string> names;
  Affiche_file_parts(split_parts(selection, selection_parts), folder, names);
  file_count = static_cast<int16_t>(names.size());
  auto& list = (*this)["List1"];
  list.items.clear();
  list.list_index = -1;
  changed(list);
  // The one file of a single selection is its full path already.
  auto joined = [&](const std::string& name) {
    std::string path = names.size() == 1 ? name : folder + sep + name;
    Replace_All(path, sep + sep, sep);
    return path;
  };
  for (const auto& name : names) add_item("List1", joined(name));
  resume_next([&] { set_text("Text2", joined(renamed(names.front(), 3, "_raw.su"))); });
  resume_next([&] { state.ns = first_ns(open_existing(files, 1, list_entry(list, 0))); });
  resume_next([&] { state.nb_traces = su::trace_count(files[1].length(), state.ns); });
  resume_next([&] { files.close(1); });
  set_text("Text4", field_text(state.ns));
  set_text("Text5", field_text(state.nb_traces));
  set_text("Text9", field_text(file_count));
}

// The pointer of this panel and of the main panel.
void Add_SU_files::pointers(Pointer pointer) {
  set_pointer(pointer);
  platform.set_pointer("Utility", pointer);
}

void Add_SU_files::append_files() {
  pointers(Pointer::hourglass);
  state.file_out = text("Text2");
  const std::string out = native_path(state.file_out);
  if (File_Exists(state.file_out) == 1) {
    if (message(platform, state.file_out + " file already exists, append new files ?", Icon::question,
                Buttons::yes_no) == Answer::no) {
      pointers(Pointer::arrow);
      return;
    }
    // Keeping the old output appends the new files after what it holds.
    if (message(platform, "Erase " + state.file_out + " ?", Icon::question, Buttons::yes_no) == Answer::yes)
      resume_next([&] {
        std::error_code ec;
        if (!std::filesystem::remove(out, ec)) throw RunTimeError(err::file_not_found);
      });
  }
  const auto& list = (*this)["List1"];
  const int count = static_cast<int>(list.items.size());
  resume_next([&] {
    if (count < 1) throw RunTimeError(380);  // a bar with its maximum below its minimum
    set_progress_range("ProgressBar1", 1, count);
  });
  for (int i = 1; i <= count; ++i) {
    const std::string entry = list_entry(list, i - 1);
    set_progress("ProgressBar1", i);
    set_text("Text10", "Adding file " + number_text(i));
    resume_next([&] { files.open(2, file_system_name(out)); });
    // A source that can't be opened adds nothing.
    resume_next([&] { open_existing(files, 1, entry); });
    resume_next([&] { append_whole(files[1], files[2]); });
    resume_next([&] { files.close(1); });
    resume_next([&] { files.close(2); });
    if (checked("Check1"))
      resume_next([&] {
        std::error_code ec;
        if (!std::filesystem::remove(file_system_name(native_path(entry)), ec)) throw RunTimeError(err::file_not_found);
      });
  }
  resume_next([&] {
    message(platform, state.file_out + " has been recorded OK size:" + number_text(file_length(out)), Icon::information);
  });
  pointers(Pointer::arrow);
}

void Add_SU_files::help() {
  message(platform, ended_lines(help_lines, state.crlf), Icon::information);
}

}  // namespace tf
