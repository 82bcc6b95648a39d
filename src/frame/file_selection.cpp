#include "frame/file_selection.h"

#include <filesystem>

#include "frame/conventions.h"
#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "su/binary_file.h"

namespace tf {

Selection cut_at_blanks(const std::string& text) {
  Selection s;
  size_t start = 0;
  while (start < text.size()) {
    size_t blank = text.find(' ', start);
    if (blank == std::string::npos) break;
    if (s.count < selection_capacity) s.items.push_back(text.substr(start, blank - start));
    ++s.count;
    start = blank + 1;
  }
  if (s.items.empty()) s.items.push_back("");
  return s;
}

std::string records_dialog(Platform& platform, const std::string& title, const std::string& filter,
                           const std::string& file_name, const std::string& data_folder) {
  FileDialogRequest dialog;
  dialog.flags = 512;
  dialog.initial_dir = data_folder;
  dialog.title = title;
  dialog.filter = filter;
  dialog.file_name = file_name;
  return platform.file_dialog(dialog);
}

RecordChoice read_record_choice(const std::string& dialog_text, SingleChoice single) {
  RecordChoice choice;
  choice.multiple = dialog_text.find(' ') != std::string::npos;
  // All parsing works on the text with one blank appended.
  const std::string text = dialog_text + " ";
  if (!choice.multiple && single == SingleChoice::listed) {
    choice.entries.push_back(text);
    choice.count = 1;
    choice.name = text;
    Replace_All(choice.name, " ", "");
    return choice;
  }
  auto pieces = cut_at_blanks(text);
  const auto& items = pieces.items;
  choice.folder = items[0];
  for (size_t k = 1; k < items.size(); ++k) choice.entries.push_back(items[0] + sep + items[k]);
  choice.count = pieces.count - 1;
  choice.name = items[0] + sep + (items.size() > 1 ? items[1] : "");
  return choice;
}

std::string su_name(const std::string& name) {
  if (name.size() < 3) throw RunTimeError(err::invalid_call);
  return name.substr(0, name.size() - 3) + "SU";
}

std::string list_entry(const Control& list, int index) {
  if (index < 0 || index >= static_cast<int>(list.items.size())) return "";
  return list.items[static_cast<size_t>(index)];
}

std::string file_system_name(const std::string& name) {
  std::string s = name;
  while (!s.empty() && s.back() == ' ') s.pop_back();
  if (s.find_first_of("*?") != std::string::npos) throw RunTimeError(err::bad_file_number);
  return s;
}

void open_record(FileTable& files, int number, const std::string& name) {
  const std::string path = file_system_name(native_path(name));
  std::error_code ec;
  if (!std::filesystem::is_regular_file(path, ec)) throw RunTimeError(err::file_not_found);
  files.open(number, path);
}

std::string output_name_dialog(Platform& platform, const std::string& initial_dir) {
  FileDialogRequest dialog;
  dialog.title = "SU File name selection";
  dialog.filter = "Seismic File |*.SU|All files|*.*|";
  dialog.file_name = "*.SU";
  dialog.initial_dir = initial_dir;
  return platform.file_dialog(dialog);
}

}  // namespace tf
