#include "frame/file_selection.h"

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

std::string output_name_dialog(Platform& platform, const std::string& initial_dir) {
  FileDialogRequest dialog;
  dialog.title = "SU File name selection";
  dialog.filter = "Seismic File |*.SU|All files|*.*|";
  dialog.file_name = "*.SU";
  dialog.initial_dir = initial_dir;
  return platform.file_dialog(dialog);
}

}  // namespace tf
