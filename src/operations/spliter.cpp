#include "operations/spliter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"

namespace tf {

namespace {
constexpr const char* title = "Cleavit";
const char* const help_lines[] = {
    " Use this small program to divide a large file into smaller files and then rebuild the original one easily.",
    "Files are saved in the current folder with their original file name + an incremental number + their original extension + SPT extension",
    "Original file must have an usual 3 digits extension, like DOC or EXE, any binary or ASCII file can be cut and rebuild!",
    "     Example: MyFile.doc will be divided into MyFile_1_doc.spt + MyFile_2_doc.spt",
};
const char* const sizes[] = {"1440000", "720000", "360000"};
constexpr int32_t small_part = 500000;
constexpr int many_parts = 20;

// "Dir" finds the file: a plain file matches the name.
bool FileExists(const std::string& name) { return File_Exists(name) == 1; }

// What stands behind the first "." of the whole path, folders included; a
// path without one is its own extension.
std::string extension_of(const std::string& path) {
  size_t dot = path.find('.');
  return dot == std::string::npos ? path : path.substr(dot + 1);
}

void delete_file(const std::string& name) {
  std::error_code ec;
  std::filesystem::remove(native_path(name), ec);
}
}  // namespace

std::string part_name(const std::string& file, int number) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%02d", number);
  const std::string stem = file.size() >= 4 ? file.substr(0, file.size() - 4) : std::string();
  return stem + "_" + digits + "_" + extension_of(file) + ".spt";
}

spliter::spliter(App& owner) : Panel(owner, "spliter", "Brenholt File spliter") {
  add(Kind::tabs, "SSTab1").items = {"Split", "Joint"};
  auto on_tab = [](Control& c, int tab) -> Control& {
    c.parent = "SSTab1";
    c.tab = tab;
    return c;
  };
  // Each field stands before the button that fills it.
  on_tab(add(Kind::text, "Text1"), 0);
  auto& pick = on_tab(add(Kind::button, "Command1", "File to Split"), 0);
  pick.tooltip = "Click here to select a file";
  pick.on_click = [this] { choose("File to be splitted", "Text1"); };
  auto& size = on_tab(add(Kind::combo, "Combo1", "File size", sizes[0]), 0);
  size.tooltip = "Select or type the output file size  (bytes)";
  auto& split = on_tab(add(Kind::button, "Command5", "Split"), 0);
  split.tooltip = "Press here to split your file";
  split.on_click = [this] { Split(); };
  on_tab(add(Kind::list, "List2"), 0);
  auto& help = on_tab(add(Kind::text, "Text2"), 0);
  help.multiline = true;
  help.locked = true;

  auto& select = on_tab(add(Kind::button, "Command2", "Select files"), 1);
  select.tooltip = "Click here and select SPT files to be jointed";
  select.on_click = [this] { select_parts(); };
  on_tab(add(Kind::list, "List1"), 1);
  on_tab(add(Kind::text, "Text4"), 1);
  on_tab(add(Kind::text, "Text3"), 1);
  auto& output = on_tab(add(Kind::button, "Command3", "Output file"), 1);
  output.tooltip = "You can select, type a name";
  output.on_click = [this] { choose("File to reconstructed", "Text3"); };
  on_tab(add(Kind::button, "Command4", "Joint files"), 1).on_click = [this] { Joint(); };
}

void spliter::form_load() {
  for (const char* s : sizes) add_item("Combo1", s);
  std::string help = ended_lines(help_lines);
  set_text("Text2", help);
}

Answer spliter::box(const std::string& text, Icon icon, Buttons buttons) {
  return message(platform, text, icon, buttons, title);
}

void spliter::choose(const std::string& dialog_title, const std::string& field) {
  std::string chosen;
  resume_next([&] { chosen = record_dialog(platform, dialog_title, "All files|*.*|", "*.*", state.data_folder, 0); });
  if (chosen == "*.*") {
    set_pointer(Pointer::arrow);
    return;
  }
  set_text(field, chosen);
}

void spliter::select_parts() {
  FileDialogRequest r;
  r.title = "Cleavit file selection";
  r.filter = "Record |*.spt|All files|*.*|";
  r.file_name = "*.spt";
  r.flags = 512;
  std::string chosen;
  resume_next([&] { chosen = platform.file_dialog(r); });
  Affiche_file(chosen);
}

void spliter::Affiche_file(std::string& names) {
  Selection pieces = cut_at_blanks(names + " ");
  int count = std::min(pieces.count, selection_capacity);
  if (count >= selection_capacity) box("Maximum 100 files", Icon::information);
  if (count == 1) {
    box("Impossible...", Icon::stop);
    return;
  }
  set_text("Text4", field_text(count - 1));
  for (int i = 1; i < count; ++i) add_item("List1", single_separators(pieces.items[0] + sep + pieces.items[static_cast<size_t>(i)]));
  // The original name from the first part: "MyFile_01_doc.spt" gives
  // "MyFile.doc". The "_" is looked for in the whole path.
  resume_next([&] {
    const std::string first = list_entry((*this)["List1"], 0);
    if (first.size() < 7) throw RunTimeError(err::invalid_call);
    const std::string extension = first.substr(first.size() - 7, 3);
    set_text("Text3", first.substr(0, first.find('_')) + "." + extension);
  });
}

void spliter::Split() {
  const std::string file = text("Text1");
  if (file.size() < 5) return;
  int32_t size = 0;
  resume_next([&] { size = to_i32(leading_number(text("Combo1"))); });
  if (size < small_part && box("He! are you sure to make so small files ?", Icon::none, Buttons::yes_no) != Answer::yes)
    return;
  int64_t length = 0;
  int16_t parts = 0;
  resume_next([&] { length = file_length(native_path(file)); });
  resume_next([&] {
    if (size == 0) throw RunTimeError(err::division_by_zero);
    parts = to_i16(std::floor(static_cast<double>(length) / size) + 1);
  });
  if (parts == 1) {
    box("He! This file is smaller than the request file !", Icon::stop);
    return;
  }
  if (parts > many_parts &&
      box("He! are you sure to make " + number_text(parts) + " files ?", Icon::none, Buttons::yes_no) != Answer::yes)
    return;
  resume_next([&] { files.open(1, native_path(file)); });
  int64_t offset = 0;
  for (int32_t i = 1; i <= parts; ++i) {
    const std::string part = part_name(file, i);
    add_item("List2", part);
    if (FileExists(part)) {
      if (box(part + "file already exists, overwrite ?", Icon::question, Buttons::yes_no) != Answer::yes) return;
      delete_file(part);
    }
    resume_next([&] { files.open(2, native_path(part)); });
    if (i == parts) size = static_cast<int32_t>(length - static_cast<int64_t>(size) * (parts - 1));
    // Each part moves in one piece, as through a buffer of its size.
    resume_next([&] { files[1].copy_to(files[2], offset, 0, std::max(size, 0)); });
    offset = static_cast<int64_t>(i) * size;
    resume_next([&] { files.close(2); });
  }
  resume_next([&] { files.close(1); });
  box(file + " " + number_text(length) + " bytes has been splitted into " + number_text(parts) + " files",
      Icon::information);
}

void spliter::Joint() {
  const std::string output = text("Text3");
  if (FileExists(output)) {
    if (box("This file already exists, overwrite ?", Icon::none, Buttons::yes_no) != Answer::yes) return;
    delete_file(output);
  }
  resume_next([&] { files.open(2, native_path(output)); });
  int16_t parts = 0;
  resume_next([&] { parts = field_i16(text("Text4")); });
  int64_t position = 0;
  for (int32_t i = 1; i <= parts; ++i) {
    const std::string part = list_entry((*this)["List1"], i - 1);
    if (!FileExists(part)) {
      box(part + " does not exists !", Icon::stop);
      resume_next([&] { files.close_all(); });
      return;
    }
    resume_next([&] { files.open(1, native_path(part)); });
    resume_next([&] {
      const int64_t length = files[1].length();
      files[1].copy_to(files[2], 0, position, length);
      position += length;
    });
    resume_next([&] { files.close(1); });
  }
  int64_t length = 0;
  resume_next([&] { length = files[2].length(); });
  resume_next([&] { files.close(2); });
  box(output + " " + number_text(length) + " bytes has been recorded from " + number_text(parts) + " files",
      Icon::information);
}

}  // namespace tf
