#include "frame/file_selection.h"

#include <filesystem>

#include "frame/conventions.h"
#include "frame/helpers.h"
#include "frame/panel.h"
#include "frame/paths.h"
#include "su/binary_file.h"

namespace tf {

namespace {
// Pieces of `text` from `start`, each ending at a blank, kept up to
// `capacity` and counted beyond it unless `stop_at_capacity`; gives where
// the walk ended.
size_t walk_blanks(const std::string& text, Selection& s, int capacity, bool stop_at_capacity) {
  size_t start = 0;
  while (start < text.size()) {
    if (stop_at_capacity && s.count >= capacity) break;
    size_t blank = text.find(' ', start);
    if (blank == std::string::npos) break;
    if (s.count < capacity) s.items.push_back(text.substr(start, blank - start));
    ++s.count;
    start = blank + 1;
  }
  return start;
}
}  // namespace

Selection cut_at_blanks(const std::string& text) {
  Selection s;
  walk_blanks(text, s, selection_capacity, false);
  if (s.items.empty()) s.items.push_back("");
  return s;
}

Selection take_pieces(std::string& text, int capacity) {
  Selection s;
  const size_t end = walk_blanks(text, s, capacity, true);
  text.erase(0, end);
  // What follows the last blank, when there is any, is the last piece; it
  // stays in the text.
  if (!text.empty() && s.count < capacity) {
    s.items.push_back(text);
    ++s.count;
  }
  return s;
}

std::string record_dialog(Platform& platform, const std::string& title, const std::string& filter,
                          const std::string& file_name, const std::string& data_folder, int filter_index, int flags) {
  FileDialogRequest dialog;
  dialog.flags = flags;
  dialog.initial_dir = data_folder;
  dialog.title = title;
  dialog.filter = filter;
  dialog.file_name = file_name;
  dialog.filter_index = filter_index;
  return platform.file_dialog(dialog);
}

std::string records_dialog(Platform& platform, const std::string& title, const std::string& filter,
                           const std::string& file_name, const std::string& data_folder, int filter_index) {
  return record_dialog(platform, title, filter, file_name, data_folder, filter_index, 512);
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

std::string case_blind_name(const std::string& name) {
  std::error_code ec;
  if (name.empty() || std::filesystem::exists(name, ec)) return name;
  std::filesystem::path found;
  for (const auto& part : std::filesystem::path(name)) {
    std::filesystem::path next = found / part;
    if (!found.empty() && !std::filesystem::exists(next, ec)) {
      const std::string wanted = lower(part.string());
      for (const auto& entry : std::filesystem::directory_iterator(found, ec))
        if (lower(entry.path().filename().string()) == wanted) {
          next = entry.path();
          break;
        }
    }
    found = next;
  }
  return std::filesystem::exists(found, ec) ? found.string() : name;
}

std::string output_name_dialog(Platform& platform, const std::string& initial_dir, const std::string& title,
                               const std::string& filter) {
  FileDialogRequest dialog;
  dialog.title = title;
  dialog.filter = filter;
  dialog.file_name = "*.SU";
  dialog.initial_dir = initial_dir;
  return platform.file_dialog(dialog);
}

}  // namespace tf
