#include "viewers/editor.h"

#include "frame/file_selection.h"
#include "frame/helpers.h"
#include "frame/paths.h"

namespace tf {

namespace {
// Toolbar buttons behind one blank button: key and tooltip.
const std::vector<std::vector<std::string>> toolbar_buttons{
    {"", ""},
    {"open", "Open an history file"},
    {"save", "Record the history file"},
    {"print", "Print the history file"},
    {"stop", "Exit file editor"},
};
const char* const dialog_title = "Text selection";
// Print dialog flags: return a device context, no page numbers, and the
// range to print.
constexpr int return_dc = 0x100, no_page_numbers = 0x8, all_pages = 0x0, selection_only = 0x1;
}  // namespace

std::string line_count_text(const std::string& text) {
  int64_t lines = 1;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
    if (text[i] == '\r' || text[i] == '\n') ++lines;
  }
  return "Lines:" + number_text(lines);
}

editor::editor(App& owner) : Panel(owner, "editor", "Brenholt text editor") {
  auto menu = [this](const char* name, const char* caption) { add(Kind::menu, name, caption); };
  auto entry = [this](const char* name, const char* caption, const char* menu, std::function<void()> action) {
    auto& e = add(Kind::menu_item, name, caption);
    e.parent = menu;
    e.on_click = std::move(action);
  };
  menu("File", "File");
  entry("open", "Open", "File", [this] { open_Click(); });
  entry("save", "Save", "File", [this] { save_Click(); });
  entry("save_as", "Save as", "File", [this] { save_Click(); });  // both ask for the name
  menu("Utility", "Utility");
  entry("Find", "Find text", "Utility", [this] { Find_Click(); });
  entry("Replacement", "Replace text", "Utility", [this] { Replacement_Click(); });
  entry("Font", "Font selection", "Utility", [this] { Font_Click(); });
  entry("Print", "Print", "Utility", [this] { Print_Click(); });
  add(Kind::toolbar, "Toolbar1").on_click = [this] { Toolbar1_ButtonClick(); };
  auto& text = add(Kind::rich_text, "RichTextBox1");
  text.multiline = true;
  add(Kind::label, "Label3");
}

void editor::form_load() {
  if (File_Exists(state.editor_file) == 0) {
    message(platform, state.editor_file + " file does not exists ");
  } else {
    load_text(state.editor_file);
    set_caption("Label3", line_count_text(text("RichTextBox1")));
  }
  set_panel_caption("Brenholt text editor: " + state.editor_file);
  auto& bar = (*this)["Toolbar1"];
  for (const auto& button : toolbar_buttons) bar.items.push_back(button[0]);
  bar.cells = toolbar_buttons;
  changed(bar);
}

void editor::load_text(const std::string& file) {
  resume_next([&] {
    std::string loaded = read_whole_file(native_path(file));
    set_text("RichTextBox1", loaded);
    set_selection("RichTextBox1", 0, 0);
  });
}

void editor::open_Click() {
  state.editor_file = record_dialog(platform, dialog_title, "SU history File |*.TXT|ll files|*.*|", "*.TXT",
                                    state.data_folder, 0);
  load_text(state.editor_file);
}

void editor::save_Click() {
  FileDialogRequest ask;
  ask.save = true;
  ask.initial_dir = state.data_folder;
  ask.title = dialog_title;
  ask.filter = "SU Batch File |*.BAT|Text files|*.txt|All files|*.*|";
  ask.file_name = "*.TXT";
  state.editor_file = platform.file_dialog(ask);
  // Plain text, whatever the box shows; a cancel writes a file of the
  // dialog's start name.
  resume_next([&] { write_whole_file(native_path(state.editor_file), text("RichTextBox1")); });
}

void editor::Find_Click() {
  InputBoxRequest ask;
  ask.title = "SU Batch editor";
  ask.prompt = "Type the text to find";
  const std::string wanted = platform.input_box(ask);
  if (wanted.empty()) return;
  // From the character after the start of the selection, without wrapping
  // round: the same text again moves to the next match.
  auto& box = (*this)["RichTextBox1"];
  const size_t from = static_cast<size_t>(box.sel_start) + 1;
  const size_t found = from > box.text.size() ? std::string::npos : box.text.find(wanted, from);
  if (found == std::string::npos) {
    platform.beep();
    return;
  }
  set_selection("RichTextBox1", static_cast<int>(found), static_cast<int>(wanted.size()));
}

void editor::Replacement_Click() {
  InputBoxRequest ask;
  ask.prompt = "Enter text to be replaced";
  const std::string old_text = platform.input_box(ask);
  ask.prompt = "Enter new text ";
  const std::string new_text = platform.input_box(ask);
  std::string all = text("RichTextBox1");
  Replace_All(all, old_text, new_text);
  set_text("RichTextBox1", all);
  set_selection("RichTextBox1", 0, 0);
}

void editor::Font_Click() {
  auto& box = (*this)["RichTextBox1"];
  FontChoice font = box.font;
  if (!platform.font_dialog(font)) return;
  box.font = font;
  changed(box);
}

void editor::Print_Click() {
  auto& box = (*this)["RichTextBox1"];
  PrintDialogRequest ask;
  ask.selection = box.sel_length > 0;
  ask.flags = return_dc | no_page_numbers | (ask.selection ? selection_only : all_pages);
  platform.print_dialog(ask);  // a cancel prints all the same
  // One job: the empty text that starts the page, then the selection or
  // the whole text.
  platform.print_text(ask.selection ? box.text.substr(static_cast<size_t>(box.sel_start), static_cast<size_t>(box.sel_length))
                                    : box.text);
}

void editor::Toolbar1_ButtonClick() {
  auto& bar = (*this)["Toolbar1"];
  const std::string key = bar.items.at(static_cast<size_t>(bar.list_index));
  if (key == "open") open_Click();
  if (key == "save") save_Click();
  if (key == "print") Print_Click();
  if (key == "stop") unload();
}

}  // namespace tf
